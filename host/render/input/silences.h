// Silence that a cue sheet puts between stretches of its audio, PREGAP and POSTGAP, or that is
// taken out of it.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "host/render/input/audio_input.h"

namespace velmor::render {

/// The frames of all of `silences`.
int64_t framesOf(const std::vector<Silence>& silences);

/// `source` with the silences in it; its `info().frames` counts them. What lies beyond its end
/// follows it.
std::unique_ptr<AudioInput> withSilences(std::unique_ptr<AudioInput> source,
                                         std::vector<Silence> silences);

/// `source` without `cuts`, which are ascending, apart and inside it.
std::unique_ptr<AudioInput> withoutCuts(std::unique_ptr<AudioInput> source,
                                        std::vector<Silence> cuts);

/// The file of `info` with its silences and without its cuts: what `info` describes.
std::unique_ptr<AudioInput> openLaidOut(const InputInfo& info, Dither dither);

}  // namespace velmor::render
