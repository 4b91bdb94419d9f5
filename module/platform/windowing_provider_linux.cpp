#include <dlfcn.h>

#include "module/platform/windowing_provider.h"

QuelmLookupFn platformFindWindowingProvider() {
  const auto provider =
      reinterpret_cast<QuelmProviderFn>(dlsym(RTLD_DEFAULT, "quelmGetAPPAPIFunc"));
  return provider ? provider() : nullptr;
}
