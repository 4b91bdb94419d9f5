#include "tools/mac/loader/mac_process.h"

#include <dlfcn.h>

namespace loader {

namespace {

class OrdinaryMac final : public MacProcess {};

}  // namespace

MacProcess& theProcess() {
  static OrdinaryMac ordinary;
  const auto find = reinterpret_cast<VelmorMacProcessFn>(dlsym(RTLD_DEFAULT, "velmorMacProcess"));
  MacProcess* const scripted = find ? find() : nullptr;
  return scripted ? *scripted : ordinary;
}

}  // namespace loader
