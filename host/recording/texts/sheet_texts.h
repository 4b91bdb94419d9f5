// The texts and codes of a finished cue sheet.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "disc/failure.h"

namespace velmor::recording {

/// As they stand in the sheet; empty when absent.
struct TextFields {
  std::string title, performer, songwriter;
};

struct SheetTrack {
  TextFields texts;
  std::string isrc;
};

struct SheetTexts {
  TextFields disc;
  std::string catalog;
  std::vector<SheetTrack> tracks;
};

/// Reads the sheet's lines and passes over what it does not know. It is made for the sheets that
/// our own renders write: values stand in quotes and may contain quotes; a line of 4095 characters
/// has been cut and lacks its end. A byte-order mark and bare values are understood too.
SheetTexts parseSheetTexts(std::string_view sheet);

/// The same from a file; throws `Failure` when it cannot be read or has no tracks.
SheetTexts readSheetTexts(const std::string& path);

}  // namespace velmor::recording
