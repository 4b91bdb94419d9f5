#include <algorithm>
#include <cstdlib>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

using check::Severity;

int64_t countOf(const PageView& view, Severity severity) {
  const auto& all = view.disc.findings;
  return std::count_if(all.begin(), all.end(),
                       [severity](const auto& finding) { return finding.severity == severity; });
}

std::string fact(const std::string& name, const std::string& html, const std::string& kind = {}) {
  if (html.empty()) return {};
  return "<div" + (kind.empty() ? "" : " class=\"" + kind + '"') + "><dt>" + name + "</dt><dd>" +
         html + "</dd></div>\n";
}

std::string verdict(const PageView& view) {
  const int64_t errors = countOf(view, Severity::kError);
  const int64_t warnings = countOf(view, Severity::kWarning);
  const bool ready = errors == 0 && !(view.strict && warnings > 0);
  return std::string("<p class=\"verdict ") + (ready ? "good" : "bad") + "\"><strong>" +
         (ready ? "Ready" : "Not ready") + "</strong> <a href=\"#findings\">" +
         disc::counted(errors, "error") + ", " + disc::counted(warnings, "warning") + ", " +
         disc::counted(countOf(view, Severity::kNote), "note") + "</a></p>\n";
}

std::string roomText(int64_t capacity, int64_t length, const std::string& disc) {
  return disc::msfText(std::abs(capacity - length)) +
         (length <= capacity ? " left on " : " too long for ") + disc;
}

/// One bar for both: it ends with the longer disc, and a line shows where the shorter one ends.
std::string room(const PageView& view) {
  if (!view.disc.end_known) return {};
  const int64_t length = std::max<int64_t>(view.disc.end, 0);
  const double whole = static_cast<double>(std::max(length, disc::kLongestDiscSectors));
  const auto part = [whole](int64_t sectors) {
    return percent(static_cast<double>(sectors), whole);
  };
  const std::string kind = length > disc::kLongestDiscSectors   ? "over"
                           : length > disc::kSectorsOf74Minutes ? "long"
                                                                : "fits";
  return "<svg class=\"room\" viewBox=\"0 0 100 10\" preserveAspectRatio=\"none\" role=\"img\" "
         "aria-label=\"Room on the disc\"><rect class=\"all\" width=\"100\" height=\"10\"/>"
         "<rect class=\"used " +
         kind + "\" width=\"" + part(length) + "\" height=\"10\"/><path class=\"limit\" d=\"M" +
         part(disc::kSectorsOf74Minutes) + " 0V10M" + part(disc::kLongestDiscSectors) +
         " 0V10\"/></svg><span>" + roomText(disc::kSectorsOf74Minutes, length, "74 minutes") +
         "</span> <span>" + roomText(disc::kLongestDiscSectors, length, "80 minutes") + "</span>";
}

std::string lengthText(const PageView& view) {
  if (!view.disc.end_known) return "not known";
  const int64_t length = std::max<int64_t>(view.disc.end, 0);
  return disc::msfText(length) + " <small>" + std::to_string(length) + " sectors</small>";
}

std::string imageFacts(const PageView& view) {
  std::string html;
  const bool several = view.disc.images.size() > 1;
  for (size_t i = 0; i < view.disc.images.size(); ++i) {
    const PageImage& image = view.disc.images[i];
    html += fact(several ? "Image " + std::to_string(i + 1) : "Image",
                 foreign(disc::printable(image.path.filename().string())) +
                     (image.exists ? " <small>" + std::to_string(image.bytes) + " bytes</small>"
                                   : " <em>missing</em>"),
                 "wide");
    const auto& digests = view.measured.digests[i];
    if (!digests) continue;
    html += fact("MD5", "<code>" + digests->md5 + "</code>", "wide");
    html += fact("SHA-256", "<code>" + digests->sha256 + "</code>", "wide");
  }
  return html;
}

std::string levelFacts(const PageView& view) {
  const auto& whole = view.measured.whole;
  if (!whole) return {};
  return fact("Loudness", lufsText(*whole) + " <small>LUFS</small>") +
         fact("True peak", truePeakText(*whole) + " <small>dBTP</small>");
}

std::string idFacts(const PageView& view) {
  const auto& ids = view.measured.ids;
  if (!ids) return {};
  return fact("MusicBrainz disc id", "<code>" + ids->musicbrainz + "</code>", "wide") +
         fact("freedb disc id", "<code>" + ids->freedb + "</code>", "wide");
}

std::string tracksText(const PageView& view) {
  const auto data = std::count_if(view.disc.tracks.begin(), view.disc.tracks.end(),
                                  [](const PageTrack& track) { return !track.is_audio; });
  std::string text = std::to_string(view.disc.tracks.size() + view.disc.tracks_left_out);
  if (data > 0) text += " <small>" + std::to_string(data) + " of data</small>";
  if (view.disc.tracks_left_out > 0) text += " <small>the first 99 are shown</small>";
  return text;
}

}  // namespace

std::string headSection(const PageView& view) {
  const PageDisc& disc = view.disc;
  const std::string title = disc.title.empty() ? disc.name : disc.title;
  return "<header>\n<div class=\"names\">\n<p class=\"kind\">" +
         std::string(disc.of_set ? "DDP 2.00 master" : "CD master") + " \u00B7 PQ sheet</p>\n<h1>" +
         foreign(title) + "</h1>\n" +
         (disc.performer.empty() ? ""
                                 : "<p class=\"performer\">" + foreign(disc.performer) + "</p>\n") +
         "</div>\n" + verdict(view) + "</header>\n<dl class=\"facts\">\n" +
         fact("Catalogue number (MCN)", disc.catalogue.empty() ? "none" : foreign(disc.catalogue)) +
         fact("Tracks", tracksText(view)) + fact("Length", lengthText(view)) + levelFacts(view) +
         fact("Room", room(view), "wide") +
         fact(disc.of_set ? "Set" : "Sheet", foreign(disc.name), "wide") +
         fact("Master identifier", foreign(disc.master_id), "wide") + imageFacts(view) +
         idFacts(view) + "</dl>\n";
}

}  // namespace velmor::page
