// What was done to the inputs' samples on their way to the disc.
#pragma once

#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/module/renderer.h"

namespace velmor::render {

/// What was done to an input that was read: "16 bit: exact", "rounded from 24 bit", "TPDF dither",
/// "resampled from 48000 Hz, TPDF dither", ….
std::string treatmentOf(const InputInfo& info, const InputOutcome& outcome);

/// The same as one word for programs: "exact", "rounded" or "dithered".
std::string treatmentWord(const InputInfo& info, const InputOutcome& outcome);

/// Prints it for all inputs on standard output, those of the same treatment on one line.
void printTreatments(const Album& album, const std::vector<InputOutcome>& inputs);

/// One warning for each input that clips: how often, and where and by how much at its worst.
std::vector<std::string> clippingWarnings(const Album& album,
                                          const std::vector<InputOutcome>& inputs);

/// The place of a clipped sample in seconds of its own input; `frame` counts from the render's
/// start.
double secondsInInput(const Album& album, size_t input, int64_t frame);

}  // namespace velmor::render
