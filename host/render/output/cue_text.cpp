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

}  // namespace

CueText readCueText(const std::string& path) {
  static const std::regex kTrackLine("  TRACK [0-9]{2,} AUDIO\r");
  static const std::regex kIndexLine("    INDEX 01 [0-9]{2,}:[0-9]{2}:[0-9]{2}\r");
  std::ifstream file(path, std::ios::binary);
  CueText sheet;
  std::string line;
  while (std::getline(file, line)) {
    sheet.complete = false;
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
