// Doubles to 16-bit samples.
//
// A sample x becomes floor(x * 32768 + 0.5), saturated to -32768 and 32767; NaN becomes silence. No
// dither. Every form below gives the same samples to the bit.
#pragma once

#include <cstdint>

/// Converts `frames` frames of two contiguous channels to interleaved samples at `out` (2 x
/// `frames`; any alignment). The channels may be the same.
using ConvertFramesFn = void (*)(const double* left, const double* right, int frames, int16_t* out);

void convertFramesPlain(const double* left, const double* right, int frames, int16_t* out);
/// Only while `roundsToNearest()`.
void convertFramesSse2(const double* left, const double* right, int frames, int16_t* out);
/// Only while `roundsToNearest()`, and on processors with `processorHasAvx2()`.
void convertFramesAvx2(const double* left, const double* right, int frames, int16_t* out);

/// Whether processor and system support AVX2 and FMA, which came together.
bool processorHasAvx2();

/// Whether the processor rounds to the nearest number on this thread. Every thread begins that way,
/// but somebody in the host's process may have changed it.
bool roundsToNearest();

/// Converts by the fastest form that this processor allows as it is set. Frame i of a channel is at
/// `left[i * spacing]`.
void convertFrames(const double* left, const double* right, int spacing, int frames, int16_t* out);
