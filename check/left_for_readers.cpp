#include "check/left_for_readers.h"

#include "check/check.h"
#include "check/report/report_text.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/line_of_text.h"

namespace velmor::check {

std::vector<std::string> leftForReaders(const std::string& text,
                                        const std::filesystem::path& target) {
  CheckOptions options;
  options.samples = false;
  std::vector<std::string> left;
  for (const Finding& f : check(disc::parseSheet(text), target, options).findings) {
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
