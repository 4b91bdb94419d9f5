// Cuts a session's audio into tracks by the album's sheet.
//
// The burn engine hands over one stretch of the image per track, from INDEX 01 to the next
// INDEX 01. So a pause would count as the end of the track before it, and the silence before
// track 1 as music. The audio is right; only the cuts are not those of the sheet.
#pragma once

#include <vector>

#include "disc/failure.h"
#include "host/recording/interface/recording_service.h"
#include "host/recording/session/session_plan.h"

namespace velmor::recording {

/// Makes the tracks of `plan` those of `layout`; the sources and their order stay. Throws `Failure`
/// when the layout is not of this audio, or when a track is shorter than four seconds.
void cutByLayout(SessionPlan& plan, const std::vector<TrackPlace>& layout);

}  // namespace velmor::recording
