#include <algorithm>

#include "disc/units/disc_units.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

constexpr const char* kLevelsHead =
    "<table class=\"levels\">\n<thead><tr><th>Track</th><th class=\"text\">Title</th>"
    "<th>Loudness <small>LUFS</small></th><th>True peak <small>dBTP</small></th>"
    "<th>Sample peak <small>dBFS</small></th><th>Clipped <small>runs</small></th>"
    "<th>Silent start <small>s</small></th><th>Silent end <small>s</small></th>"
    "<th>DC offset <small>% left, right</small></th></tr></thead>\n";
constexpr int kLargestSample = 32768;

std::string seconds(int64_t frames) {
  return decimal(disc::secondsOf(frames), 3);
}

std::string clippedText(const ClippedCount& count) {
  if (count.runs == 0 && !count.more) return "0";
  return (count.more ? "over " : "") + std::to_string(count.runs) + " <small>up to " +
         std::to_string(count.longest) + " samples</small>";
}

/// Of full scale, with as many digits as show half a step of 16 bits.
std::string offsetText(double of_full_scale) {
  return signedDecimal(100.0 * of_full_scale, 3);
}

std::string levelCells(const Loudness& loudness, int peak) {
  return cell("LUFS", lufsText(loudness), "num") +
         cell("dBTP", truePeakText(loudness), loudness.true_peak > 1.0 ? "num loud" : "num") +
         cell("Peak dBFS", decimal(decibels(static_cast<double>(peak) / kLargestSample), 2), "num");
}

std::string trackRow(const PageView& view, size_t t) {
  const TrackOutline& track = *view.measured.outline.tracks[t];
  const ClippedCount& clipped = view.measured.clipped[t];
  return "<tr>" + cell("Track", trackLink(view, t), "num track") +
         cell("Title", shownTitle(view.disc.tracks[t]), "text") +
         levelCells(view.measured.loudness[t].value(), track.peak) +
         cell("Clipped", clippedText(clipped), clipped.runs > 0 ? "num loud" : "num") +
         cell("Silent start", seconds(track.silent_at_start), "num") +
         cell("Silent end", seconds(track.silent_at_end), "num") +
         cell("DC %", offsetText(track.offset_left) + ", " + offsetText(track.offset_right),
              "num") +
         "</tr>\n";
}

std::string wholeRow(const PageView& view) {
  int peak = 0;
  ClippedCount all;
  for (size_t t = 0; t < view.disc.tracks.size(); ++t) {
    if (!view.measured.outline.tracks[t]) continue;
    peak = std::max(peak, view.measured.outline.tracks[t]->peak);
    all.runs += view.measured.clipped[t].runs;
    all.longest = std::max(all.longest, view.measured.clipped[t].longest);
    all.more = all.more || view.measured.clipped[t].more;
  }
  return "<tr class=\"sum\"><td></td>" + cell("Title", "All tracks", "text") +
         levelCells(*view.measured.whole, peak) +
         cell("Clipped", clippedText(all), all.runs > 0 ? "num loud" : "num") +
         "<td colspan=\"3\"></td></tr>\n";
}

}  // namespace

std::string levelsSection(const PageView& view) {
  std::string rows;
  for (size_t t = 0; t < view.disc.tracks.size(); ++t)
    if (view.measured.outline.tracks[t] && view.measured.loudness[t]) rows += trackRow(view, t);
  if (rows.empty() || !view.measured.whole) return {};
  return section("levels", "Levels",
                 kLevelsHead + ("<tbody>\n" + rows) + wholeRow(view) + "</tbody></table>\n");
}

}  // namespace velmor::page
