// The checks, one group each. Each looks at a disc and adds what it finds; none changes anything.
#pragma once

#include <string_view>

#include "check/image/opened_disc.h"
#include "check/report/findings.h"

namespace velmor::check {

/// Where the rules of syntax and layout come from.
inline constexpr std::string_view kSheetRules = "CDRWIN cue sheet rules";

/// Lines that are no commands, values that do not end, line ends, byte-order mark.
void checkSyntax(const Disc& disc, Findings& findings);
/// TITLE, PERFORMER, SONGWRITER: quotes, length, encoding, room in CD-TEXT.
void checkTexts(const Disc& disc, Findings& findings);
/// CATALOG and ISRC: form, check digit, uniqueness.
void checkCodes(const Disc& disc, Findings& findings);
/// What each track says that it is: mode and flags.
void checkTracks(const Disc& disc, Findings& findings);
/// Track numbers, index times and their order, lengths of tracks and disc.
void checkLayout(const Disc& disc, Findings& findings);
/// The FILEs: there, of a known kind, whole, long enough for the indices.
void checkImages(const Disc& disc, Findings& findings);
/// What the samples show: clipping, silence, starts inside a sector.
void checkAudio(const Disc& disc, Findings& findings);
/// What the sound shows: bytes in the wrong order, a silent channel, pauses that are none, joins.
void checkSound(const Disc& disc, Findings& findings);

}  // namespace velmor::check
