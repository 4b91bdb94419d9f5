// A module that needs a host function which no terminal host has.
#include "abi/host_functions.h"

extern "C" [[gnu::visibility("default")]] int VelmorPluginEntry(HINSTANCE /*instance*/,
                                                                velmor_plugin_info_t* info) {
  return info && info->lookup_fn("OpenTheMixer") ? 1 : 0;
}
