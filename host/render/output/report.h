// The report on standard output when a render is done.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/render/album/album.h"
#include "host/render/burn/burn_dialog_driver.h"
#include "host/render/module/renderer.h"
#include "host/render/output/cue_text.h"
#include "host/render/output/ddp_set.h"
#include "host/render/output/html_page.h"
#include "host/render/output/portable_sheet.h"
#include "host/render/plan/mark_fates.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct RenderReport {
  const Album& album;
  const TrackPlan& plan;
  const std::vector<MarkFate>& marks;
  const CueText& sheet;
  const RenderOutcome& outcome;
  std::string sheet_path, image_path;
  uint64_t sheet_bytes = 0;
  uint64_t image_bytes = 0;
  std::vector<std::string> warnings;
  const BurnResult* burn = nullptr;         ///< null when nothing was to be burned
  const PortableSheet* portable = nullptr;  ///< null when none was wanted
  const DdpSet* ddp = nullptr;              ///< likewise
  const MadeAlong* page = nullptr;          ///< likewise
};

/// Prints the track list, the files and what was done to the inputs, for people.
void printReport(const RenderReport& report);
/// Prints the same as one JSON object.
void printJsonReport(const RenderReport& report);
/// Prints a failure as a JSON object.
void printJsonFailure(const std::string& sentence);

}  // namespace velmor::render
