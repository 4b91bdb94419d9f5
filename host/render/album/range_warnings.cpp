#include "host/render/album/range_warnings.h"

#include <cmath>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/album/mark_names.h"

namespace velmor::render {

namespace {

int64_t audioEnd(const Album& album) {
  return album.inputs.back().start + album.inputs.back().info.frames;
}

double frameOf(double seconds) {
  return std::round(seconds * disc::kSampleRate);
}

std::string clockTimeOf(int64_t frame) {
  return disc::clockTime(disc::secondsOf(frame));
}

/// Whether the user will miss the mark: it was given on the command line or in a label track, and
/// its kind counts in this mode.
bool isMissed(const Mark& mark, const Options& options, TrackMode mode) {
  if (mark.given_by.empty()) return false;
  if (isTag(mark.name)) return true;
  if (mode == kTracksFromRegions) return mark.end.has_value();
  return mode == kTracksFromMarkers && !mark.end &&
         namesTrack(mark.name, options.hash_markers_only);
}

std::string shownMark(const Mark& mark) {
  return disc::inQuotes(mark.name) + " (" + mark.given_by + ")";
}

void warnOfMarks(const std::vector<std::string>& shown, const std::string& of_one,
                 const std::string& of_several, Album& album) {
  if (shown.empty()) return;
  album.warnings.push_back(disc::listed(shown) + (shown.size() == 1 ? of_one : of_several));
}

}  // namespace

void warnBeyondAudio(const Options& options, const std::vector<Mark>& marks, Album& album) {
  const int64_t end = audioEnd(album);
  const auto end_frame = static_cast<double>(end);
  if (options.end && frameOf(*options.end) > end_frame) {
    album.warnings.push_back("--end lies at " + disc::clockTime(*options.end) +
                             ", but the inputs end at " + clockTimeOf(end) +
                             ", and so does the render");
  }
  std::vector<std::string> beyond;
  std::vector<std::string> cut;
  for (const Mark& mark : marks) {
    if (!isMissed(mark, options, album.track_mode)) continue;
    if (frameOf(mark.start) >= end_frame) {
      beyond.push_back(shownMark(mark));
    } else if (mark.end && frameOf(*mark.end) > end_frame + disc::kFramesPerSector) {
      cut.push_back(shownMark(mark));
    }
  }
  const std::string place = " beyond the end of the audio at " + clockTimeOf(end);
  warnOfMarks(beyond, " lies" + place + " and is left out; look at the time",
              " lie" + place + " and are left out; look at the times", album);
  warnOfMarks(cut, " reaches" + place + " and is cut there; look at the time",
              " reach" + place + " and are cut there; look at the times", album);
}

void warnOutsideRange(const Options& options, const std::vector<Mark>& left_out, Album& album) {
  const auto end_frame = static_cast<double>(audioEnd(album));
  std::vector<std::string> outside;
  for (const Mark& mark : left_out) {
    if (isMissed(mark, options, album.track_mode) && frameOf(mark.start) < end_frame) {
      outside.push_back(shownMark(mark));
    }
  }
  const std::string place = " outside the part from " + clockTimeOf(album.render_start) + " to " +
                            clockTimeOf(album.render_end);
  const std::string advice = " left out; --start and --end set that part";
  warnOfMarks(outside, " lies" + place + " and is" + advice, " lie" + place + " and are" + advice,
              album);
}

}  // namespace velmor::render
