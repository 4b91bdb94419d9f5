// The vector forms of the conversion for x86-64.
#pragma once

#include "module/sink/sample_conversion.h"

/// Only while `roundsToNearest()`.
void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out);
/// Only while `roundsToNearest()`, and on processors with `processorHasAvx2()`.
void convertFramesAvx2(const double* left, const double* right, int frames, int16_t* out);

/// Whether processor and system support AVX2 and FMA, which came together.
bool processorHasAvx2();

/// Whether the processor rounds to the nearest number on this thread. Every thread begins that way,
/// but somebody in the host's process may have changed it.
bool roundsToNearest();
