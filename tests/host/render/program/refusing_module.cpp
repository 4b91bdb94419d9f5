// A module of another interface version: it looks nothing up and says no.
#include "abi/exports.h"

int VelmorPluginEntry(HINSTANCE, velmor_plugin_info_t*) {
  return 0;
}
int QUELM_dllMain() {
  return 1;
}
