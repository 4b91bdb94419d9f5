// The module's burn engine, which no host reaches but through the dialog: a door for tests.
#pragma once

#include "abi/quelm_types.h"

using ListRecordersFn = void (*)(HWND combo);
/// Burns the image at `path`.
using BurnImageFn = void (*)(void* device, int track_count, const int* track_byte_offsets,
                             const char* path, bool eject, bool test_burn);
