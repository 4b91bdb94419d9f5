// The texts of the sheet that the module has written, and whether the sheet is whole.
#pragma once

#include <string>
#include <vector>

namespace velmor::render {

struct CueTextTrack {
  std::string title, performer, songwriter, isrc;
};

struct CueText {
  std::vector<CueTextTrack> tracks;
  size_t disc_lines = 0;  ///< before FILE: title, performer and the others of the disc
  bool complete = false;  ///< ends with the last track's INDEX 01, line end included
};

/// Reads the sheet at `path`, line by line in the exact shape that the module gives it: any other
/// shape means that the sheet is damaged, so this is not the tolerant `disc::parseSheet`. A sheet
/// that cannot be read has no tracks and is not complete.
CueText readCueText(const std::string& path);

}  // namespace velmor::render
