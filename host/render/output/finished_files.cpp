#include "host/render/output/finished_files.h"

#include <algorithm>
#include <filesystem>

#include "disc/failure.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"
#include "host/render/module/write_failure.h"

namespace velmor::render {

namespace {

void checkImage(const std::string& path, uint64_t bytes, const TrackPlan& plan,
                int64_t counted_frames) {
  if (counted_frames != plan.counted_frames) {
    throw Failure("the module has written " + disc::counted(counted_frames, "frame") + " where " +
                  std::to_string(plan.counted_frames) +
                  " belong on the disc; use the module that came with this program");
  }
  if (bytes != static_cast<uint64_t>(plan.image_frames) * disc::kBytesPerFrame) {
    const std::string limit = fileSizeLimitMet(path);
    throw Failure("the image is not complete: " +
                  (limit.empty() ? "its last write did not reach the disk; free some space on it "
                                   "and render again"
                                 : limit));
  }
}

/// Texts of the disc that the sheet has lines for.
size_t discTextsOf(const HostProject& project) {
  size_t count = 0;
  for (const char* const key : {"CUE:DISC_REM", "CUE:DISC_TITLE", "CUE:DISC_PERFORMER",
                                "CUE:DISC_SONGWRITER", "CUE:DISC_CATALOG"}) {
    count += std::any_of(project.metadata.begin(), project.metadata.end(),
                         [key](const auto& field) { return field.first == key; })
                 ? 1
                 : 0;
  }
  return count;
}

/// The module leaves out a text that it has no memory for, and says nothing.
void checkTexts(const CueText& sheet, const HostProject& project, const TrackPlan& plan) {
  bool lacks = sheet.disc_lines != discTextsOf(project);
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    lacks = lacks || (sheet.tracks[i].title.empty() && !plan.tracks[i].title.empty());
  }
  if (!lacks) return;
  throw Failure(
      "the cue sheet lacks a title or another text: there was not enough memory for it; close "
      "other programs and render again");
}

}  // namespace

FinishedFiles readFinishedFiles(const std::string& sheet_path, const std::string& image_path,
                                const HostProject& project, const TrackPlan& plan,
                                int64_t counted_frames) {
  FinishedFiles files;
  files.image_bytes = std::filesystem::file_size(image_path);
  checkImage(image_path, files.image_bytes, plan, counted_frames);
  files.sheet = readCueText(sheet_path);
  if (!files.sheet.complete || files.sheet.tracks.size() != plan.tracks.size()) {
    throw Failure(
        "the cue sheet is not complete: its last write did not reach the disk; free "
        "some space on it and render again");
  }
  checkTexts(files.sheet, project, plan);
  files.sheet_bytes = std::filesystem::file_size(sheet_path);
  return files;
}

}  // namespace velmor::render
