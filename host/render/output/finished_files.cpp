#include "host/render/output/finished_files.h"

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

}  // namespace

FinishedFiles readFinishedFiles(const std::string& sheet_path, const std::string& image_path,
                                const TrackPlan& plan, int64_t counted_frames) {
  FinishedFiles files;
  files.image_bytes = std::filesystem::file_size(image_path);
  checkImage(image_path, files.image_bytes, plan, counted_frames);
  files.sheet = readCueText(sheet_path);
  if (!files.sheet.complete || files.sheet.tracks.size() != plan.tracks.size()) {
    throw Failure(
        "the cue sheet is not complete: its last write did not reach the disk; free "
        "some space on it and render again");
  }
  files.sheet_bytes = std::filesystem::file_size(sheet_path);
  return files;
}

}  // namespace velmor::render
