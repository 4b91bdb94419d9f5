#include "check/left_for_readers.h"

#include <algorithm>
#include <utility>

#include "check/check.h"
#include "check/report/report_text.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/line_of_text.h"

namespace velmor::check {

namespace {

/// With what readers refuse as a habit of theirs too, of which a report speaks only to who chose
/// them.
std::vector<Finding> foundIn(const disc::Sheet& sheet, const std::filesystem::path& target) {
  CheckOptions options;
  options.samples = false;
  std::vector<Finding> found = check(sheet, target, options).findings;
  for (int i = 0; i < kReaders; ++i) options.readers.push_back(static_cast<Reader>(i));
  for (Finding& f : check(sheet, target, options).findings) {
    const bool is_told = std::any_of(found.begin(), found.end(),
                                     [&](const Finding& told) { return told.rule == f.rule; });
    if (!is_told && !f.refused.empty()) found.push_back(std::move(f));
  }
  return found;
}

}  // namespace

std::vector<std::string> leftForReaders(const std::string& text,
                                        const std::filesystem::path& target) {
  std::vector<std::string> left;
  for (const Finding& f : foundIn(disc::parseSheet(text), target)) {
    // That sheet and image need one name for libcdio is said where the files are named.
    if (f.rule == "image-named-otherwise" || (f.refused.empty() && f.damaged.empty())) continue;
    std::string line = "Not mended";
    if (f.track > 0) line += ", track " + std::to_string(f.track);
    line += ": " + f.what + '.';
    if (!f.refused.empty()) line += " Refused by " + readerList(f.refused) + '.';
    if (!f.damaged.empty())
      line += " With " + readerList(f.damaged) + ": " + std::string(f.damage) + '.';
    left.push_back(disc::printable(line));
  }
  return left;
}

}  // namespace velmor::check
