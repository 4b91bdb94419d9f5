// The checks, one group each. Each looks at a disc and adds what it finds; none changes anything.
#pragma once

#include <string_view>

#include "check/image/opened_disc.h"
#include "check/report/findings.h"

namespace velmor::check {

/// Where the rules of syntax and layout come from.
inline constexpr std::string_view kSheetRules = "CDRWIN cue sheet rules";

/// Do all lines end in a carriage return alone? Most readers find one line then.
inline bool endsInReturnsAlone(const disc::Sheet& sheet) {
  return sheet.ends.cr > 0 && sheet.ends.lf + sheet.ends.crlf == 0;
}

/// Lines that are no commands, values that do not end, line ends, byte-order mark.
void checkSyntax(const Disc& disc, Findings& findings);
/// How lines are written: small letters, blanks and tabs, quotes, the place of a command.
void checkForm(const Disc& disc, Findings& findings);
/// Digits of times and indices, PREGAP and POSTGAP, indices above 01.
void checkTimes(const Disc& disc, Findings& findings);
/// REM lines that some reader goes by.
void checkRemarks(const Disc& disc, Findings& findings);
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
/// What readers make of the FILEs: several of them, their types and names.
void checkFiles(const Disc& disc, Findings& findings);
/// What the samples show: clipping, silence, starts inside a sector.
void checkAudio(const Disc& disc, Findings& findings);
/// What the sound shows: bytes in the wrong order, a silent channel, pauses that are none, joins.
void checkSound(const Disc& disc, Findings& findings);

}  // namespace velmor::check
