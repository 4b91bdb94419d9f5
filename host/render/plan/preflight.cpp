#include "host/render/plan/preflight.h"

#include <strings.h>

#include <algorithm>

#include "disc/text/encoding.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/album/disc_fields.h"
#include "host/render/album/mark_names.h"
#include "host/render/plan/preflight_codes.h"
#include "host/render/plan/preflight_pauses.h"
#include "host/render/plan/preflight_starts.h"

namespace velmor::render {

namespace {

void checkTracks(const SinkConfig& config, const TrackPlan& plan, PreflightFindings& findings) {
  if (config.track_mode == kTracksFromRegions && plan.written.empty()) {
    findings.errors.push_back(
        "there is no region with audio in the render range, so the image would be empty; add one "
        "with --region, or choose --track-mode markers");
  }
  if (plan.tracks.size() > disc::kMostTracks) {
    findings.errors.push_back("the marks make " + std::to_string(plan.tracks.size()) +
                              " tracks, but a CD holds 99; take some marks away");
  }
  const int64_t last = plan.tracks.back().frames / disc::kFramesPerSector;
  if (last < disc::kShortestTrackSectors && !plan.written.empty()) {
    findings.warnings.push_back(
        "the last track lasts " +
        disc::clockTime(static_cast<double>(last) / disc::kSectorsPerSecond) +
        ", but a CD track needs 4 seconds; a plant may refuse it");
  }
}

void checkLength(const TrackPlan& plan, bool allow_overlong, PreflightFindings& findings) {
  const int64_t sectors = plan.image_frames / disc::kFramesPerSector;
  if (sectors > disc::kLongestTimeSectors) {
    findings.errors.push_back(
        "the disc would last " + disc::msfText(sectors) +
        " (MM:SS:FF), but the times of a disc end at 99:59:74; make two discs "
        "of it with --start and --end");
  } else if (sectors > disc::kLongestDiscSectors && !allow_overlong) {
    findings.errors.push_back("the disc would last " + disc::msfText(sectors) +
                              " (MM:SS:FF), longer than any 80-minute disc; make two discs of it "
                              "with --start and --end, or give --allow-overlong if the blank is "
                              "known to hold it");
  } else if (sectors > disc::kSectorsOf79Minutes57) {
    findings.warnings.push_back("the disc lasts " + disc::msfText(sectors) +
                                " (MM:SS:FF), longer than the 79:57 that an 80-minute disc holds");
  } else if (sectors > disc::kSectorsOf74Minutes) {
    findings.warnings.push_back("the disc lasts " + disc::msfText(sectors) +
                                " (MM:SS:FF), longer than the 74 minutes that every plant takes");
  }
}

void checkText(const std::string& what, const std::string& text, PreflightFindings& findings) {
  if (disc::countCharacters(text) <= disc::kMostCharacters) return;
  findings.warnings.push_back(what + " is longer than the 80 characters that all readers take");
}

void checkFields(const HostProject& project, PreflightFindings& findings) {
  for (const auto& [key, value] : project.metadata) {
    checkText("the " + fieldForPeople(key), value, findings);
  }
  for (const Mark& mark : project.marks) {
    if (mark.end || !isTag(mark.name)) continue;
    checkText("the tag " + disc::inQuotes(mark.name.substr(0, 40)), mark.name.substr(5), findings);
    if (mark.name.size() == 5 && strcasecmp(mark.name.c_str(), "ISRC=") != 0) {
      findings.warnings.push_back("the tag " + disc::inQuotes(mark.name) +
                                  " is empty, which some readers refuse");
    }
  }
}

void checkNames(const TrackPlan& plan, PreflightFindings& findings) {
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    checkText("the title of track " + std::to_string(i + 1), plan.tracks[i].title, findings);
  }
}

}  // namespace

PreflightFindings checkBeforeRender(const SinkConfig& config, const HostProject& project,
                                    const TrackPlan& plan, bool allow_overlong) {
  PreflightFindings findings;
  checkTracks(config, plan, findings);
  checkLength(plan, allow_overlong, findings);
  checkStarts(config, plan, findings);
  checkPauses(plan, findings);
  checkNames(plan, findings);
  checkFields(project, findings);
  checkCodes(project, plan, findings);
  return findings;
}

}  // namespace velmor::render
