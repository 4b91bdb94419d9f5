// The functions of the windowing layer that this layer really performs, under the layer's own
// names.
//
// Signatures and behaviour are those of the public Win32 functions of the same names. One thread.
#pragma once

#include "abi/quelm_types.h"

namespace velmor::windowing::functions {

void Sleep(int milliseconds);

}  // namespace velmor::windowing::functions
