#include "page/drawing/track_drawing.h"
#include "page/html/pieces.h"
#include "page/html/sections.h"

namespace velmor::page {

std::string edgesSection(const PageView& view) {
  std::string html;
  for (size_t t = 0; t < view.disc.tracks.size(); ++t) {
    const std::string drawn = trackDrawing(view, t);
    if (drawn.empty()) continue;
    html += "<article class=\"strip\"><h3>" + trackLink(view, t) + ' ' +
            shownTitle(view.disc.tracks[t]) + "</h3>\n" + drawn + "</article>\n";
  }
  return section("edges", "Starts and ends", html);
}

}  // namespace velmor::page
