// Silence that a cue sheet puts between stretches of its audio: PREGAP and POSTGAP.
#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "host/render/input/audio_input.h"

namespace velmor::render {

/// Where an input ends, whatever its length.
inline constexpr int64_t kAtTheEnd = std::numeric_limits<int64_t>::max();

/// The frames of all of `silences`.
int64_t framesOf(const std::vector<Silence>& silences);

/// `source` with the silences in it; its `info().frames` counts them. What lies beyond its end
/// follows it.
std::unique_ptr<AudioInput> withSilences(std::unique_ptr<AudioInput> source,
                                         std::vector<Silence> silences);

}  // namespace velmor::render
