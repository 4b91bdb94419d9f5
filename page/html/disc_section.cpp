#include "disc/text/line_of_text.h"
#include "page/drawing/disc_drawing.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"
#include "page/markup/markup.h"

namespace velmor::page {

namespace {

/// Why there is nothing, or not all, to be seen.
std::string problems(const PageView& view) {
  std::string html;
  for (const PageImage& image : view.disc.images)
    if (!image.problem.empty())
      html += "<p class=\"missing\">" + foreign(disc::printable(image.path.filename().string())) +
              " was not looked into: " + escaped(disc::printable(image.problem)) + ".</p>\n";
  if (view.measured.outline.broke_off)
    html += "<p class=\"missing\">Reading broke off: what is missing is drawn as silence.</p>\n";
  return html;
}

}  // namespace

std::string discSection(const PageView& view) {
  std::string html = discDrawing(view) + problems(view);
  if (html.empty()) html = "<p class=\"missing\">There is no audio to be seen.</p>\n";
  return section("disc", "The disc", html);
}

}  // namespace velmor::page
