// The texts and codes of a cue sheet alone.
#pragma once

#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/sheet/sheet.h"

namespace velmor::disc {

/// As they stand in the sheet; empty when absent.
struct TextFields {
  std::string title, performer, songwriter, composer, arranger, message;
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

/// What the parsed sheet says; where a text was given twice, the first counts.
SheetTexts textsOf(const Sheet& sheet);

/// The texts of a sheet's file. Throws `Failure` when it cannot be read or has no tracks.
SheetTexts readSheetTexts(const std::string& path);

}  // namespace velmor::disc
