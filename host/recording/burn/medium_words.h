// Discs in the words of messages: what lies in the drive, whether it can be burned, what became of
// it. All texts are clauses in lower case without a full stop.
#pragma once

#include <string>

#include "disc/failure.h"
#include "host/recording/burn/recorder.h"

namespace velmor::recording {

/// "a blank CD-R, 79:57:00 free".
std::string describeMedium(const DiscInDrive& medium);

enum class MediumVerdict { kReady, kNeedsBlanking };

/// Throws `Failure` when the disc cannot take a burn; a rewritable one may be blanked first where
/// `may_overwrite`.
MediumVerdict judgeMedium(const DiscInDrive& medium, bool may_overwrite);

/// Throws `Failure` when an image of `sectors` sectors is longer than `room` sectors. A `room` of 0
/// is unknown, and nothing is thrown.
void checkRoom(int64_t room, int64_t sectors);

/// What became of a disc on which a burn did not go to its end.
std::string stateAfterFailure(const DiscInDrive& medium, bool simulated);

/// What became of a disc that was burned well.
std::string stateAfterSuccess(const DiscInDrive& medium, bool simulated, bool keep_open);

}  // namespace velmor::recording
