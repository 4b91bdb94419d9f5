#include <algorithm>
#include <cstdlib>

#include "disc/units/disc_time.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

constexpr const char* kPqHead =
    "<table class=\"pq\">\n<thead><tr><th>Track</th><th>Index</th><th>Start</th><th>Sector</th>"
    "<th>On disc</th><th>Pause</th><th>Length</th><th>ISRC</th><th>Flags</th>"
    "<th class=\"text\">Title and performer</th></tr></thead>\n";

/// The times of a sector, in all the ways in which people count.
std::string timeCells(int64_t sector) {
  return cell("Start", timeText(sector), "num") +
         cell("Sector", (sector < 0 ? "\u2212" : "") + std::to_string(std::abs(sector)), "num") +
         cell("On disc", timeText(sector - kFirstSector), "num");
}

std::string namesOf(const PageTrack& track) {
  std::string html = "<span class=\"title\">" + shownTitle(track) + "</span>";
  if (!track.performer.empty())
    html += " <span class=\"performer\">" + foreign(track.performer) + "</span>";
  if (!track.is_audio) html += " <small>" + escaped(track.mode) + "</small>";
  return html;
}

std::string mainCells(const PageTrack& track) {
  return cell("Pause", track.pause > 0 ? disc::msfText(track.pause) : "", "num") +
         cell("Length", track.place ? disc::msfText(track.place->sectors()) : "", "num") +
         cell("ISRC", foreign(track.isrc), "code") + cell("Flags", foreign(track.flags), "code") +
         cell("Title", namesOf(track), "text");
}

std::string row(const PageTrack& track, const PageIndex& index) {
  const bool is_main = index.number == 1;
  return std::string("<tr class=\"") + (is_main ? "main" : "more") + "\">" +
         cell("Track", is_main ? std::to_string(track.number) : "", "num track") +
         cell("Index", disc::twoDigits(std::max(index.number, 0)), "num") +
         timeCells(index.sector) + (is_main ? mainCells(track) : "<td colspan=\"5\"></td>") +
         "</tr>\n";
}

/// A track of which nobody knows where it starts.
std::string unplacedRow(const PageTrack& track) {
  return "<tr class=\"main\">" + cell("Track", std::to_string(track.number), "num track") +
         "<td colspan=\"4\"></td>" + mainCells(track) + "</tr>\n";
}

std::string trackRows(const PageTrack& track, size_t t) {
  std::string rows;
  bool has_main = false;
  for (const PageIndex& index : track.indices) {
    rows += row(track, index);
    has_main = has_main || index.number == 1;
  }
  if (!has_main) rows += unplacedRow(track);
  return "<tbody id=\"track-" + std::to_string(t + 1) + "\">\n" + rows + "</tbody>\n";
}

std::string leadOut(const PageDisc& disc) {
  if (!disc.end_known) return {};
  return "<tbody><tr class=\"main\">" + cell("Track", "AA", "num track") +
         cell("Index", "01", "num") + timeCells(disc.end) + "<td colspan=\"4\"></td>" +
         cell("Title", "Lead-out", "text") + "</tr></tbody>\n";
}

}  // namespace

std::string pqSection(const PageView& view) {
  if (view.disc.tracks.empty()) return {};
  std::string html = kPqHead;
  for (size_t t = 0; t < view.disc.tracks.size(); ++t) html += trackRows(view.disc.tracks[t], t);
  return section("pq", "Tracks", html + leadOut(view.disc) + "</table>\n");
}

}  // namespace velmor::page
