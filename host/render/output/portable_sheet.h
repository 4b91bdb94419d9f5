// The second sheet of a render, for the readers that do not take the module's, and what the checker
// says of both.
#pragma once

#include <string>
#include <vector>

#include "check/check.h"
#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "host/render/album/album.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct PortableSheet {
  std::string path;
  std::string failure;               ///< why there is none, for a message; empty when it was made
  std::vector<std::string> changes;  ///< against the module's sheet, one sentence each
  check::Report of_sheet;            ///< the checker on the module's sheet
  check::Report of_portable;         ///< and on the second one; empty when it was not made
};

/// Makes the second sheet from the finished pair in its working place, with the starts that the
/// plan knows and the date and genre of `album` as remarks, and checks both sheets; shows progress
/// when `show_progress`. What the disc does not allow is a `failure`; throws `Failure` when the
/// pair cannot be read, `Interrupted` when asked to stop.
PortableSheet makePortableSheet(const OutputPair& output, const Album& album, const TrackPlan& plan,
                                bool show_progress);

/// Prints what was changed, the errors of the module's sheet, and the report on the second one, on
/// standard output.
void printPortableSheet(const PortableSheet& portable);
/// The same as the text of one JSON object.
std::string portableSheetJson(const PortableSheet& portable);
/// The exit status for it: 1, after the reason was printed on standard error, when the sheet was
/// not made, otherwise 0. What the checker says of the disc makes no difference.
int portableStatus(const PortableSheet& portable);

}  // namespace velmor::render
