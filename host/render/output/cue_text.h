// A look at the sheet that the module has written.
#pragma once

#include <string>
#include <vector>

namespace velmor::render {

struct CueTextTrack {
  std::string title, performer, songwriter, isrc;
};

struct CueText {
  std::vector<CueTextTrack> tracks;
  bool complete = false;  ///< ends with the last track's INDEX 01, line end included
};

/// Reads a sheet of the module's own shape, to tell whether it was written to its end; not a
/// general parser, which is `disc::parseSheet`.
CueText readCueText(const std::string& path);

}  // namespace velmor::render
