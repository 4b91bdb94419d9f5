#include "page/drawing/track_drawing.h"

#include <algorithm>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "page/drawing/wave_path.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

constexpr int kTrackColumns = 300;
/// Of the first and last seconds every sector is a column.
constexpr int64_t kEdgeSectors = int64_t{2} * disc::kSectorsPerSecond;

std::string figure(const std::string& kind, const std::string& label, const std::string& caption,
                   int columns, const std::string& drawn) {
  return "<figure class=\"" + kind + "\"><svg viewBox=\"0 0 " + std::to_string(columns) + ' ' +
         std::to_string(2 * kHalfHeight) +
         "\" preserveAspectRatio=\"none\" role=\"img\" aria-label=\"" + label + "\">" + drawn +
         "</svg><figcaption>" + caption + "</figcaption></figure>\n";
}

std::string wave(const Outline& outline, const Stretch& stretch, const WaveShape& shape) {
  return "<path class=\"wave\" d=\"" + wavePath(outline, stretch, shape) + "\"/>";
}

/// Where the sound begins or ends, when that is not at the edge.
std::string soundLine(int64_t silent_frames, const Stretch& stretch, bool at_start) {
  const int64_t silent = silent_frames / disc::kFramesPerSector;
  if (silent <= 0 || silent >= stretch.sectors()) return {};
  const std::string x = std::to_string(at_start ? silent : stretch.sectors() - silent);
  return "<path class=\"sound\" d=\"M" + x + " 0V" + std::to_string(2 * kHalfHeight) + "\"/>";
}

std::string edgeFigure(const Outline& outline, const Stretch& stretch, int64_t silent_frames,
                       bool at_start) {
  const int gain = gainFor(outline, stretch);
  const auto columns = static_cast<int>(stretch.sectors());
  const double seconds = static_cast<double>(stretch.sectors()) / disc::kSectorsPerSecond;
  const std::string label = (at_start ? "First " : "Last ") +
                            (stretch.sectors() == kEdgeSectors ? "2" : decimal(seconds, 1)) + " s";
  const bool silent = silent_frames >= stretch.sectors() * disc::kFramesPerSector;
  const std::string scale = silent     ? ", silent"
                            : gain > 1 ? ", enlarged \u00D7" + std::to_string(gain)
                                       : "";
  return figure(
      "edge", label, label + scale, columns,
      wave(outline, stretch, {columns, gain}) + soundLine(silent_frames, stretch, at_start));
}

}  // namespace

std::string trackDrawing(const PageView& view, size_t track) {
  const Outline& outline = view.measured.outline;
  if (!outline.tracks[track]) return {};
  const Stretch place = *view.disc.tracks[track].place;
  const int64_t edge = std::min(kEdgeSectors, place.sectors());
  const int columns = static_cast<int>(std::min<int64_t>(kTrackColumns, place.sectors()));
  return figure("whole", "The whole track", disc::msfText(place.sectors()), columns,
                wave(outline, place, {columns, 1})) +
         edgeFigure(outline, {place.begin, place.begin + edge},
                    outline.tracks[track]->silent_at_start, true) +
         edgeFigure(outline, {place.end - edge, place.end}, outline.tracks[track]->silent_at_end,
                    false);
}

}  // namespace velmor::page
