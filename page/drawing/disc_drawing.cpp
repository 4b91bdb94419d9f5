#include "page/drawing/disc_drawing.h"

#include <algorithm>
#include <map>

#include "check/report/findings.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "page/drawing/wave_path.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

constexpr int kDiscColumns = 1200;
/// What a number above a track takes, in percent of the disc.
constexpr double kRoomForNumber = 2.4;
constexpr double kRoomOnPhone = 7.0;
/// Findings that lie closer, in columns, share a mark to click on.
constexpr int64_t kOneMark = 12;

class Drawer {
 public:
  explicit Drawer(const PageView& view)
      : m_view(view),
        m_begin(view.measured.outline.begin),
        m_all(static_cast<double>(view.measured.outline.swings.size())) {}

  std::string run() {
    return "<figure class=\"disc\">\n" + numbers() + "<svg viewBox=\"0 0 " +
           std::to_string(kDiscColumns) + ' ' + std::to_string(2 * kHalfHeight) +
           "\" preserveAspectRatio=\"none\" role=\"img\" aria-label=\"The sound of the whole "
           "disc\">\n" +
           pauses() + "<path class=\"wave\" d=\"" +
           wavePath(m_view.measured.outline, {m_begin, m_view.measured.outline.end()},
                    {kDiscColumns, 1}) +
           "\"/>\n" + data() + cuts() + findingLines() + "</svg>\n" + findingMarks() + axis() +
           "</figure>\n";
  }

 private:
  double sectorsFrom(int64_t sector) const { return static_cast<double>(sector - m_begin); }
  std::string column(int64_t sector) const {
    return decimal(sectorsFrom(sector) * kDiscColumns / m_all, 1);
  }
  std::string left(int64_t sector) const { return percent(sectorsFrom(sector), m_all); }

  /// Where tracks are short, not every one has room for its number.
  std::string numbers() const {
    std::string html = "<div class=\"numbers\">";
    double taken = 0.0, taken_on_phone = 0.0;
    for (size_t t = 0; t < m_view.disc.tracks.size(); ++t) {
      const PageTrack& track = m_view.disc.tracks[t];
      if (!track.place) continue;
      const double at = 100.0 * sectorsFrom(track.place->begin) / m_all;
      if (at < taken || at > 100.0 - kRoomForNumber) continue;
      const bool on_phone = at >= taken_on_phone && at <= 100.0 - kRoomOnPhone;
      html += "<a href=\"#track-" + std::to_string(t + 1) +
              "\" style=\"left:" + left(track.place->begin) + "%\"" +
              (on_phone ? "" : " class=\"narrow\"") + '>' + std::to_string(track.number) + "</a>";
      taken = at + kRoomForNumber;
      if (on_phone) taken_on_phone = at + kRoomOnPhone;
    }
    return html + "</div>\n";
  }

  std::string rectangle(const std::string& kind, const Stretch& stretch) const {
    return "<rect class=\"" + kind + "\" x=\"" + column(stretch.begin) + "\" y=\"0\" width=\"" +
           decimal(static_cast<double>(stretch.sectors()) * kDiscColumns / m_all, 1) +
           "\" height=\"" + std::to_string(2 * kHalfHeight) + "\"/>\n";
  }

  std::string pauses() const {
    std::string svg;
    for (const PageTrack& track : m_view.disc.tracks) {
      if (!track.place) continue;
      const int64_t from = std::max(track.place->begin - track.pause, m_begin);
      if (from < track.place->begin) svg += rectangle("pause", {from, track.place->begin});
    }
    return svg;
  }

  /// What a player that takes data for sound would play is hidden.
  std::string data() const {
    std::string svg;
    for (const PageTrack& track : m_view.disc.tracks)
      if (track.place && !track.is_audio) svg += rectangle("data", *track.place);
    return svg;
  }

  std::string cuts() const {
    std::string d;
    for (const PageTrack& track : m_view.disc.tracks)
      if (track.place)
        d += 'M' + column(track.place->begin) + " 0V" + std::to_string(2 * kHalfHeight);
    return d.empty() ? "" : "<path class=\"cut\" d=\"" + d + "\"/>\n";
  }

  std::string findingLines() const {
    std::string svg;
    for (size_t f = 0; f < m_view.places.size(); ++f) {
      if (!m_view.places[f]) continue;
      const check::Severity severity = m_view.disc.findings[f].severity;
      svg += "<path id=\"mark-" + std::to_string(f + 1) + "\" class=\"mark " +
             std::string(check::severityName(severity)) + "\" d=\"M" + column(*m_view.places[f]) +
             " 0V" + std::to_string(2 * kHalfHeight) + "\"/>\n";
    }
    return svg;
  }

  /// What can be clicked on, the most serious of those that lie close together.
  std::string findingMarks() const {
    std::map<int64_t, size_t> worst;
    std::map<int64_t, int> count;
    for (size_t f = 0; f < m_view.places.size(); ++f) {
      if (!m_view.places[f]) continue;
      const auto spot =
          static_cast<int64_t>(sectorsFrom(*m_view.places[f]) * kDiscColumns / m_all) / kOneMark;
      worst.emplace(spot, f);
      ++count[spot];
    }
    std::string html = "<div class=\"marks\">";
    for (const auto& [spot, f] : worst)
      html += "<a class=\"" + std::string(check::severityName(m_view.disc.findings[f].severity)) +
              "\" href=\"#finding-" + std::to_string(f + 1) +
              "\" style=\"left:" + left(*m_view.places[f]) + "%\" title=\"" +
              escaped(disc::msfText(std::max<int64_t>(*m_view.places[f], 0))) +
              (count[spot] > 1 ? ", " + std::to_string(count[spot]) + " findings" : "") +
              "\">\u25B2</a>";
    return html + "</div>\n";
  }

  std::string axis() const {
    const double minutes = m_all / disc::kSectorsPerSecond / 60.0;
    int step = 10;
    if (minutes < 30) step = 5;
    if (minutes < 8) step = 1;
    std::string html = "<div class=\"axis\">";
    for (int minute = 0; minute <= static_cast<int>(minutes - step * 0.1); minute += step)
      html += "<span style=\"left:" + left(int64_t{minute} * 60 * disc::kSectorsPerSecond) +
              "%\">" + std::to_string(minute) + (minute == 0 ? " min" : "") + "</span>";
    return html + "</div>\n";
  }

  const PageView& m_view;
  const int64_t m_begin;
  const double m_all;
};

}  // namespace

std::string discDrawing(const PageView& view) {
  return view.measured.outline.swings.empty() || view.disc.runs.empty() ? "" : Drawer(view).run();
}

}  // namespace velmor::page
