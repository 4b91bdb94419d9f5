#include "page/html/pieces.h"

#include <cmath>

#include "disc/units/disc_time.h"
#include "page/markup/markup.h"

namespace velmor::page {

std::string timeText(int64_t sector) {
  return sector < 0 ? "\u2212" + disc::msfText(-sector) : disc::msfText(sector);
}

std::string cell(std::string_view name, const std::string& html, std::string_view kind) {
  const std::string shown_kind = kind.empty() ? "" : " class=\"" + std::string(kind) + '"';
  return "<td data-name=\"" + std::string(name) + '"' + shown_kind + '>' + html + "</td>";
}

std::string trackLink(const PageView& view, size_t index) {
  return "<a href=\"#track-" + std::to_string(index + 1) + "\">" +
         std::to_string(view.disc.tracks[index].number) + "</a>";
}

std::string shownTitle(const PageTrack& track) {
  return track.title.empty() ? "Track " + std::to_string(track.number) : foreign(track.title);
}

std::string lufsText(const Loudness& loudness) {
  return decimal(loudness.lufs, 1);
}

std::string truePeakText(const Loudness& loudness) {
  return signedDecimal(decibels(loudness.true_peak), 1);
}

double decibels(double level) {
  return 20.0 * std::log10(level);
}

std::string section(const std::string& id, const std::string& heading, const std::string& html) {
  if (html.empty()) return {};
  return "<section id=\"" + id + "\"><h2>" + heading + "</h2>\n" + html + "</section>\n";
}

}  // namespace velmor::page
