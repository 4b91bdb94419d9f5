#include "host/render/output/cue_text.h"

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

namespace velmor::render {

namespace {

/// The text between the first and the last quote of a line that begins with `key`, if it does.
bool takeField(const std::string& line, const std::string& key, std::string& value) {
  if (line.rfind("    " + key + " \"", 0) != 0) return false;
  const size_t from = line.find('"') + 1;
  const size_t to = line.rfind('"');
  if (to > from) value = line.substr(from, to - from);
  return true;
}

/// A stream whose file cannot be read to its end has no line more.
bool hasLine(std::ifstream& file, std::string& line) {
  try {
    return static_cast<bool>(std::getline(file, line));
  } catch (const std::ios_base::failure&) {
    return false;
  }
}

}  // namespace

CueText readCueText(const std::string& path) {
  static const std::regex kTrackLine("  TRACK [0-9]{2,} AUDIO\r");
  static const std::regex kIndexLine("    INDEX 01 [0-9]{2,}:[0-9]{2}:[0-9]{2}\r");
  std::ifstream file;
  file.exceptions(std::ios::badbit);  // lets a want of memory through, which the stream would keep
  file.open(path, std::ios::binary);
  CueText sheet;
  size_t lines = 0;
  for (std::string line; hasLine(file, line);) {
    sheet.complete = false;
    if (line.rfind("FILE \"", 0) == 0) sheet.disc_lines = lines;
    ++lines;
    if (std::regex_match(line, kTrackLine)) {
      sheet.tracks.emplace_back();
    } else if (!sheet.tracks.empty()) {
      CueTextTrack& track = sheet.tracks.back();
      if (takeField(line, "TITLE", track.title) || takeField(line, "PERFORMER", track.performer) ||
          takeField(line, "SONGWRITER", track.songwriter) || takeField(line, "ISRC", track.isrc)) {
        continue;
      }
      sheet.complete = !file.eof() && std::regex_match(line, kIndexLine);
    }
  }
  return sheet;
}

}  // namespace velmor::render
