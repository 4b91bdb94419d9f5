#include <dlfcn.h>

#include "module/platform/windowing_provider.h"

QuelmLookupFn platform_find_windowing_provider() {
  const auto provider =
      reinterpret_cast<QuelmProviderFn>(dlsym(RTLD_DEFAULT, "quelmGetAPPAPIFunc"));
  return provider ? provider() : nullptr;
}
