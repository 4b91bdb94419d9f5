#include "page/html/document.h"

#include "disc/version.h"
#include "page/html/sections.h"
#include "page/html/style.h"
#include "page/markup/markup.h"

namespace velmor::page {

std::string documentText(const PageView& view) {
  const std::string& title = view.disc.title.empty() ? view.disc.name : view.disc.title;
  std::string html =
      "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
      "<meta http-equiv=\"Content-Security-Policy\" "
      "content=\"default-src 'none'; style-src 'unsafe-inline'\">\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
      "<meta name=\"generator\" content=\"velmor_cd ";
  html += std::string(disc::kVersion) + "\">\n<title>" + escaped(title) + "</title>\n<style>" +
          kStyle + "</style>\n</head>\n<body>\n";
  for (const auto part : {headSection, discSection, pqSection, levelsSection, findingsSection,
                          edgesSection, readersSection, notesSection})
    html += part(view);
  return html + "<footer>Made by velmor_cd " + disc::kVersion + "</footer>\n</body>\n</html>\n";
}

}  // namespace velmor::page
