// The module's two exported functions.
#pragma once

#include "abi/host_functions.h"

/// Binds the module to the host. 1: bound and registered; 0: not, or `info` was null (the host
/// unloads).
extern "C" __attribute__((visibility("default"))) int VelmorPluginEntry(HINSTANCE instance,
                                                                        velmor_plugin_info_t* info);

/// A hook the windowing layer may call; 1.
extern "C" __attribute__((visibility("default"))) int QUELM_dllMain();
