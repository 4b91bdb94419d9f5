// The tracks of a cue sheet as marks in its files.
#pragma once

#include <string>
#include <vector>

#include "disc/failure.h"
#include "disc/sheet/sheet.h"
#include "host/render/input/marks/mark.h"
#include "host/render/input/marks/tags.h"
#include "host/render/input/sheets/silence.h"

namespace velmor::render {

/// What a sheet says of one of its files; seconds of the file with its silences.
struct FileMarks {
  /// One where a track's INDEX 01 lies (track 1 begins with the first file, its pause behind the
  /// mark), and tags for its performer, songwriter and ISRC.
  std::vector<Mark> marks;
  std::vector<double> pauses;  ///< as `InputInfo::pauses`
  std::vector<Silence> silences;
};

struct SheetMarks {
  std::vector<FileMarks> of_files;  ///< one for each file of the sheet
  Tags disc;                        ///< its texts: the title is `album`, the performer `artist`
  /// One clause for each kind of thing that marks cannot say.
  std::vector<std::string> warnings;
};

/// `name` is what messages call the sheet. Throws `Failure` for a sheet without tracks, with a data
/// track, or with a track that has no INDEX 01.
SheetMarks marksOfSheet(const disc::Sheet& sheet, const std::string& name);

/// Brings the catalogue number to its bare form, or leaves it out when it is none, with a clause in
/// `warnings`. `name` is what messages call the sheet.
void checkCatalogue(Tags& tags, const std::string& name, std::vector<std::string>& warnings);

}  // namespace velmor::render
