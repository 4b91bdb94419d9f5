#include "check/report/report_text.h"
#include "disc/text/line_of_text.h"
#include "page/html/client_words.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

std::string sentence(const std::string& text) {
  std::string shown = disc::printable(text);
  if (!shown.empty() && shown[0] >= 'a' && shown[0] <= 'z')
    shown[0] = static_cast<char>(shown[0] - 'a' + 'A');
  return escaped(shown) + (shown.ends_with('.') ? "" : ".");
}

std::string linkTo(const std::string& id, const std::string& html) {
  return "<a href=\"#" + id + "\">" + html + "</a>";
}

/// The track and the place, each a link to where it is on the page.
std::string whereabouts(const PageView& view, size_t f) {
  const check::Finding& finding = view.disc.findings[f];
  const bool has_track =
      finding.track > 0 && static_cast<size_t>(finding.track) <= view.disc.tracks.size();
  std::string html =
      has_track
          ? linkTo("track-" + std::to_string(finding.track),
                   "Track " + std::to_string(
                                  view.disc.tracks[static_cast<size_t>(finding.track) - 1].number))
          : linkTo("disc", "The disc");
  if (view.places[f])
    html += " \u00B7 " + linkTo("mark-" + std::to_string(f + 1), "at " + timeText(*view.places[f]));
  if (!finding.file.empty())
    html += " \u00B7 " + foreign(disc::printable(finding.file)) +
            (finding.line > 0 ? ", packet " + std::to_string(finding.line) : "");
  else if (finding.line > 0)
    html += " \u00B7 line " + std::to_string(finding.line) + " of the sheet";
  return html;
}

std::string readersOf(const check::Finding& finding) {
  std::string text;
  if (!finding.refused.empty()) text += " Refused by " + check::readerList(finding.refused) + '.';
  if (!finding.damaged.empty())
    text +=
        " With " + check::readerList(finding.damaged) + ": " + std::string(finding.damage) + '.';
  if (!finding.source.empty()) text += " Rule: " + std::string(finding.source) + '.';
  return escaped(text);
}

std::string article(const PageView& view, size_t f) {
  const check::Finding& finding = view.disc.findings[f];
  const std::string severity(check::severityName(finding.severity));
  const std::string_view words = clientWords(finding.rule);
  return "<li id=\"finding-" + std::to_string(f + 1) + "\" class=\"" + severity +
         "\"><p class=\"words\"><span class=\"severity\">" + severity + "</span> " +
         (words.empty() ? sentence(finding.what) : escaped(words)) + "</p>\n<p class=\"where\">" +
         whereabouts(view, f) + "</p>\n<p class=\"what\">" + sentence(finding.what) +
         readersOf(finding) + " <code>" + escaped(finding.rule) + "</code></p>\n" +
         (finding.action.empty() ? ""
                                 : "<p class=\"action\">" + sentence(finding.action) + "</p>\n") +
         "</li>\n";
}

}  // namespace

std::string findingsSection(const PageView& view) {
  std::string html;
  for (size_t f = 0; f < view.disc.findings.size(); ++f) html += article(view, f);
  return section("findings", "Findings",
                 html.empty() ? "<p>Nothing was found.</p>\n" : "<ol>\n" + html + "</ol>\n");
}

}  // namespace velmor::page
