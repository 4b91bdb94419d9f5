#include "page/album/shown_text.h"

#include "disc/text/line_of_text.h"
#include "disc/text/utf8.h"

namespace velmor::page {

namespace {

/// Bytes; a hostile sheet has texts of megabytes.
constexpr size_t kLongestText = 2000;

}  // namespace

std::string shownText(std::string_view bytes) {
  const std::string line = disc::printable(disc::asLineOfText(bytes.substr(0, 2 * kLongestText)));
  const std::string_view shown = disc::beginningOf(line, kLongestText);
  return std::string(shown) + (shown.size() < line.size() ? "…" : "");
}

}  // namespace velmor::page
