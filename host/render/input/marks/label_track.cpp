#include "host/render/input/marks/label_track.h"

#include <algorithm>
#include <optional>

#include "disc/audio/readable_file.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/utf8.h"
#include "host/render/input/marks/mark_parsing.h"

namespace velmor::render {
namespace {

/// Some hundred thousand labels; what is larger is a file of another kind.
constexpr int64_t kLargestLabelFile = int64_t{16} << 20;

bool startsWith(std::string_view text, std::string_view with) {
  return text.substr(0, with.size()) == with;
}

std::string_view withoutSpaces(std::string_view text) {
  while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

/// Takes the next line off `text`; lines end with LF, CR LF or CR.
std::string_view takeLine(std::string_view& text) {
  const size_t end = text.find_first_of("\r\n");
  const std::string_view line = text.substr(0, end);
  if (end == std::string_view::npos) {
    text = {};
  } else {
    text.remove_prefix(end + (startsWith(text.substr(end), "\r\n") ? 2 : 1));
  }
  return line;
}

/// Takes the next field off `line`; nothing when the line is used up.
std::optional<std::string_view> takeField(std::optional<std::string_view>& line) {
  if (!line) return std::nullopt;
  const size_t tab = line->find('\t');
  const std::string_view field = line->substr(0, tab);
  if (tab == std::string_view::npos) {
    line.reset();
  } else {
    line->remove_prefix(tab + 1);
  }
  return field;
}

/// Seconds with a decimal point or, as some systems' settings write it, a comma.
std::optional<double> secondsIn(std::string_view field) {
  std::string digits(withoutSpaces(field));
  if (digits.find(':') != std::string::npos) return std::nullopt;
  std::replace(digits.begin(), digits.end(), ',', '.');
  try {
    return parseTime(digits);
  } catch (const Failure&) {
    return std::nullopt;
  }
}

class LabelReader {
 public:
  LabelReader(LabelTrack& track, const std::string& name) : m_track(track), m_name(name) {}

  void take(std::string_view line) {
    ++m_line;
    // A line with a backslash holds the frequencies of the label before.
    if (startsWith(line, "\\") || withoutSpaces(line).empty()) return;
    std::optional<std::string_view> rest = line;
    const std::string_view first = takeField(rest).value_or("");
    const std::optional<double> start = secondsIn(first);
    if (!start) return warn("does not begin with a time in seconds");
    if (!rest) return warn("has no tab after its start");
    Mark mark;
    mark.start = *start;
    const std::optional<std::string_view> second = takeField(rest);
    const std::optional<double> end = secondsIn(*second);
    if (end && rest && *end < *start) return warn("ends before it starts");
    if (end && *end >= *start) {
      if (*end > *start) mark.end = end;
      add(std::move(mark), rest.value_or(""));
    } else if (rest) {
      warn("has no end in seconds after its start");
    } else {
      add(std::move(mark), *second);  // a start and a text, as older files have it
    }
  }

 private:
  void add(Mark mark, std::string_view name) {
    mark.name = disc::asLineOfText(name);
    mark.given_by = place();
    m_track.marks.push_back(std::move(mark));
    if (!disc::isUtf8(name)) {
      report("has a name that is not UTF-8 and was read as Windows-1252; save the labels as UTF-8");
    }
  }
  void warn(const char* what) {
    report(std::string(what) + " and was left out; write START, END and NAME with tabs between");
  }
  void report(const std::string& what) { m_track.warnings.push_back(place() + " " + what); }
  std::string place() const { return "line " + std::to_string(m_line) + " of " + m_name; }

  LabelTrack& m_track;
  const std::string& m_name;
  size_t m_line = 0;
};

bool isCueSheet(const std::string& text) {
  return !disc::parseSheet(text).tracks.empty();
}

}  // namespace

LabelTrack parseLabelTrack(std::string_view text, const std::string& name) {
  LabelTrack track;
  if (startsWith(text, "\xff\xfe") || startsWith(text, "\xfe\xff")) {
    track.warnings.push_back("line 1 of " + name + " begins a text in UTF-16; save it as UTF-8");
    return track;
  }
  if (startsWith(text, "\xef\xbb\xbf")) text.remove_prefix(3);
  LabelReader reader(track, name);
  while (!text.empty()) reader.take(takeLine(text));
  if (track.marks.empty() && track.warnings.empty())
    track.warnings.push_back(name + " has no labels");
  return track;
}

LabelTrack readLabelTrack(const std::string& path) {
  const disc::ReadableFile file(path);
  if (file.size() > kLargestLabelFile) {
    throw Failure(disc::inQuotes(path) +
                  " is too large for a label track; name the exported text file");
  }
  const std::string text = file.contents();
  if (isCueSheet(text)) {
    throw Failure(disc::inQuotes(path) +
                  " is a cue sheet and no label track; give it as an input, without its audio");
  }
  return parseLabelTrack(text, disc::inQuotes(path));
}

}  // namespace velmor::render
