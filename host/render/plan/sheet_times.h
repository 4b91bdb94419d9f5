// The times that the module's sheet gives for a track, which are coarser than the image.
//
// A host never links the module, so this repeats its rule on purpose; the rule's home is
// module/sink/cue_sheet.cpp.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// The sector of track `track` (from 0; the plan has it) in the sheet's INDEX 01: its start cut to
/// milliseconds first and to sectors then.
int64_t startSectorInSheet(const TrackPlan& plan, size_t track);

/// The sector in which its audio truly starts, behind its pause.
int64_t exactStartSector(const TrackPlan& plan, size_t track);

/// The sector of its INDEX 00, nothing when the sheet has none. `config` is what the plan was made
/// with.
std::optional<int64_t> gapSectorInSheet(const SinkConfig& config, const TrackPlan& plan,
                                        size_t track);

/// The sector in which the pause begins that the input's sheet gives the track; nothing when it
/// gives none. Track 1's begins with the image.
std::optional<int64_t> ownGapSector(const TrackPlan& plan, size_t track);

/// The sector of INDEX 00 where INDEX 01 is the exact start; nothing where the track has no pause
/// or it would be no sector long. A pause that the input's sheet gives is as long as there; one of
/// the module's keeps its sheet's length, but for track 1's, which begins with the image. The
/// portable sheet follows the same rule: check/portable/start_times.cpp.
std::optional<int64_t> exactGapSector(const SinkConfig& config, const TrackPlan& plan,
                                      size_t track);

}  // namespace velmor::render
