// The parts of the look at a disc before its render, and how they write their sentences.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "host/render/plan/preflight.h"

namespace velmor::render {

/// Where the sheet puts the tracks.
void checkStarts(const SinkConfig& config, const TrackPlan& plan, Findings& findings);

/// The catalogue number and the ISRCs: their form, and whether each ISRC reaches a track.
void checkCodes(const HostProject& project, const TrackPlan& plan, Findings& findings);

/// "track 2", or "tracks 2, 4 and 7"; counted from 0 in `tracks`, which is not empty.
std::string tracksListed(const std::vector<size_t>& tracks);

}  // namespace velmor::render
