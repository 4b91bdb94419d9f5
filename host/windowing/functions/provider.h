// Where a plug-in finds the windowing layer.
#pragma once

#include "abi/quelm_provider.h"

/// The layer's lookup function. Found by modules in the process's dynamic symbol table under this
/// name; a program that links `velmor_windowing` exports it without further ado.
extern "C" QuelmLookupFn quelmGetAPPAPIFunc();
