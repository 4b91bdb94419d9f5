#include "tests/module/plugin/scripted_provider.h"

namespace plugin_class_test {
namespace {

QuelmLookupFn g_lookup = nullptr;

}  // namespace

void provide(QuelmLookupFn lookup) {
  g_lookup = lookup;
}

// Made on first use: the import logs before this file's own objects are there.
std::vector<std::string>& loggedLines() {
  static std::vector<std::string> lines;
  return lines;
}

}  // namespace plugin_class_test

// What the import looks up among the symbols of the process.
extern "C" {
QuelmLookupFn quelmGetAPPAPIFunc();
QuelmLookupFn quelmGetAPPAPIFunc() {
  return plugin_class_test::g_lookup;
}
void __wrap_platformSystemLog(const char* line);
void __wrap_platformSystemLog(const char* line) {
  plugin_class_test::loggedLines().emplace_back(line);
}
}
