// What becomes of every mark: no mark that the user or a file has set is dropped in silence.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/plan/preflight_findings.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

enum class MarkUse {
  kTrack,  ///< begins the track or, track 1, names it
  kTag,    ///< gives the track a performer, songwriter or ISRC
  kNone
};

struct MarkFate {
  Mark mark;  ///< seconds of the timeline
  MarkUse use = MarkUse::kNone;
  std::optional<size_t> track;  ///< from 0; nothing when the mark is of no use
  std::string why;              ///< why it is of none, as a clause
};

/// Those of the album's project, ascending, and then those that are not in it. `plan` was made from
/// the project. `hash_only`: only names with a "#" make tracks.
std::vector<MarkFate> fatesOf(const Album& album, const TrackPlan& plan, bool hash_only);

/// A warning for each reason for which marks make no track. Those beyond the audio or outside the
/// rendered part are not among them: the album has warned of these.
void warnOfLostMarks(const std::vector<MarkFate>& fates, PreflightFindings& findings);

}  // namespace velmor::render
