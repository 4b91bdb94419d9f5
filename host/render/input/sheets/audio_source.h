// Where the audio of an album comes from: a file that was named, or those of a cue sheet.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "disc/audio/raw_samples.h"
#include "disc/failure.h"
#include "host/render/input/marks/tags.h"
#include "host/render/input/sheets/sheet_marks.h"

namespace velmor::render {

/// What a cue sheet says of one of its files, in the place of what that says itself.
struct SheetPart {
  Tags tags;  ///< the disc's
  FileMarks marks;
  /// For messages; with the first file of the sheet alone.
  std::vector<std::string> warnings;
};

struct AudioSource {
  std::string path;
  disc::RawSamples raw = disc::RawSamples::kNone;
  int number = 1;                  ///< of the input as it was given, from 1
  std::optional<SheetPart> sheet;  ///< nothing for a file that was named itself
};

/// Whether the name is that of a cue sheet.
bool isSheetName(const std::string& path);

/// The sources that inputs stand for, in their order: each file itself, each sheet's files. Throws
/// `Failure` for a sheet that cannot be read or is none.
std::vector<AudioSource> sourcesOf(const std::vector<std::string>& inputs);

}  // namespace velmor::render
