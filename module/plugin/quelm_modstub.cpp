#include "module/plugin/quelm_modstub.h"

#include <cstdio>
#include <cstring>

#include "abi/quelm_functions.h"
#include "abi/quelm_provider.h"
#include "module/platform/system_log.h"
#include "module/platform/windowing_provider.h"

namespace {

struct ImportedFunction {
  const char* name;
  void* pointer;  ///< address of the function pointer that receives it
};

constexpr ImportedFunction kImports[] = {
#define QUELM_TYPED(name, ...) {#name, &(name)},
#define QUELM_OPAQUE(name) {#name, &(name)},
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
};
static_assert(sizeof(kImports) / sizeof(kImports[0]) == 364);

/// The host's lookup function; null, with a line in the system log, when there is none of our
/// version.
QuelmLookupFn findLookup() {
  const QuelmLookupFn lookup = platformFindWindowingProvider();
  if (!lookup) {
    platformSystemLog("QUELM API provider not found\n");
    return nullptr;
  }
  if (reinterpret_cast<intptr_t>(lookup(nullptr)) != kQuelmApiVersion) {
    platformSystemLog("QUELM API provider returned incorrect version\n");
    return nullptr;
  }
  return lookup;
}

void logMissing(const char* name) {
  char line[256];
  snprintf(line, sizeof(line), "QUELM API not found: %s\n", name);
  platformSystemLog(line);
}

}  // namespace

intptr_t dummyFunc() {
  return 0;
}

QuelmAPPInitializer::QuelmAPPInitializer() {
  const QuelmLookupFn lookup = findLookup();
  for (const ImportedFunction& import : kImports) {
    void* function = lookup ? lookup(import.name) : nullptr;
    if (lookup && !function) logMissing(import.name);
    if (!function) function = reinterpret_cast<void*>(&dummyFunc);
    memcpy(import.pointer, &function, sizeof(function));
  }
}
