// A module that starts well and registers nothing.
#include "abi/exports.h"

int VelmorPluginEntry(HINSTANCE, velmor_plugin_info_t* info) {
  return info && info->lookup_fn("GetMainHwnd") ? 1 : 0;
}
int QUELM_dllMain() {
  return 1;
}
