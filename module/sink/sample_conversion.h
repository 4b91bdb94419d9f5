// Doubles to 16-bit samples.
//
// A sample x becomes floor(x * 32768 + 0.5), saturated to -32768 and 32767; NaN becomes silence. No
// dither. Every form gives the same samples to the bit.
#pragma once

#include <cstdint>
#include <span>

/// Converts `frames` frames of two contiguous channels to interleaved samples at `out` (2 x
/// `frames`; any alignment). The channels may be the same.
using ConvertFramesFn = void (*)(const double* left, const double* right, int frames, int16_t* out);

void convertFramesPlain(const double* left, const double* right, int frames, int16_t* out);

/// A form for the vector unit of one kind of processor.
struct VectorForm {
  const char* name;
  ConvertFramesFn convert;  ///< only while `vectorFormsAreExact()`
  bool runs_here;           ///< this very processor has that unit
};

/// The forms for the kind of processor that the module is built for, the fastest first; the last
/// one runs on every processor of the kind. One file for each kind defines them, and is compiled
/// for that kind alone.
std::span<const VectorForm> vectorForms();
/// Whether the vector forms give what the plain one gives, as the processor is set on this thread.
bool vectorFormsAreExact();

/// Converts by the fastest form that this processor allows as it is set. Frame i of a channel is at
/// `left[i * spacing]`.
void convertFrames(const double* left, const double* right, int spacing, int frames, int16_t* out);
