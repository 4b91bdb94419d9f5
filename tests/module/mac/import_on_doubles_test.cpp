// The import on macOS, run on GNUstep: each case in a process of its own, since the module imports
// while it is being loaded and its classes can be registered once per process.
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "tests/fake_host/windowing_layer.h"
#include "tests/module/mac/doubles/objective_c_calls.h"

namespace {

using doubles::Application;
using fake_host::WindowingLayer;

struct Case {
  const char* name;
  Application application = Application::kDelegateWithProvider;
  bool has_lookup = true;
  intptr_t version = 256;
  std::set<std::string> withheld = {};
  std::vector<std::string> lines = {};  ///< of the log
  size_t lookups = 0;
};

// Loads the module; prints what the log and the provider saw, where the parent can compare it.
[[noreturn]] void loadAndReport(const Case& c) {
  doubles::setUpProcess(c.application);
  WindowingLayer layer;
  layer.has_lookup = c.has_lookup;
  layer.version = c.version;
  layer.withheld = c.withheld;
  void* const handle = dlopen(VELMOR_GNUSTEP_MODULE, RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) {
    std::cerr << dlerror() << '\n';
    std::_Exit(1);
  }
  const auto& lines = doubles::theFrameworks().log_lines;
  if (lines != c.lines) std::cerr << "log: " << testing::PrintToString(lines) << '\n';
  if (layer.lookups.size() != c.lookups) std::cerr << "lookups: " << layer.lookups.size() << '\n';
  const bool hook_answers = reinterpret_cast<int (*)()>(dlsym(handle, "QUELM_dllMain"))() == 1;
  std::_Exit(lines == c.lines && layer.lookups.size() == c.lookups && hook_answers ? 0 : 1);
}

class Import : public testing::TestWithParam<Case> {};

TEST_P(Import, LogsWhatIsMissingAndNeverStopsTheModule) {
  EXPECT_EXIT(loadAndReport(GetParam()), testing::ExitedWithCode(0), "^$");
}

const std::vector<std::string> kNotFound = {"QUELM API provider not found\n"};
const std::vector<std::string> kWrongVersion = {"QUELM API provider returned incorrect version\n"};

INSTANTIATE_TEST_SUITE_P(
    Hosts, Import,
    testing::Values(
        Case{.name = "WithEverything", .lookups = 365},
        Case{.name = "WithoutApplicationObject",
             .application = Application::kMissing,
             .lines = kNotFound},
        Case{.name = "WithoutDelegate",
             .application = Application::kWithoutDelegate,
             .lines = kNotFound},
        Case{.name = "WhoseDelegateHasNoProvider",
             .application = Application::kDelegateWithoutProvider,
             .lines = kNotFound},
        Case{.name = "WhoseProviderAnswersNull", .has_lookup = false, .lines = kNotFound},
        Case{.name = "OfVersion255", .version = 255, .lines = kWrongVersion, .lookups = 1},
        Case{.name = "OfVersion257", .version = 257, .lines = kWrongVersion, .lookups = 1},
        Case{.name = "LackingThreeNames",
             .withheld = {"lstrcpyn", "SendMessage", "GetMonitorInfo"},
             .lines = {"QUELM API not found: lstrcpyn\n", "QUELM API not found: SendMessage\n",
                       "QUELM API not found: GetMonitorInfo\n"},
             .lookups = 365}),
    [](const auto& host) { return std::string(host.param.name); });

}  // namespace
