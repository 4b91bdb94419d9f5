// A cue sheet in the making: a good one, to be spoilt in one place, with the disc that it means.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/check/reader_runs.h"

namespace velmor::check::test {

/// One line of the sheet.
struct DraftLine {
  std::string id;    ///< "title2", "index2.1": the value and its track
  std::string text;  ///< with its indentation, without its end
};

/// A file that lies beside the sheet, made of a part of the one image.
struct DraftFile {
  std::string name;
  int64_t first_sector = 0, sectors = 0;
  bool wave = false;        ///< behind the header of a WAVE file
  bool big_endian = false;  ///< the most significant byte first
};

struct Draft {
  std::string name;  ///< what was done to it
  std::vector<DraftLine> lines;
  LoadedDisc truth;
  std::vector<DraftFile> files;
  std::string line_end = "\r\n";
  std::string before = {};     ///< bytes in front of the first line
  bool last_line_ends = true;  ///< with `line_end`
  bool silence_added = false;  ///< by PREGAP or POSTGAP

  /// The line of that id, or null.
  DraftLine* line(const std::string& id);
  /// Where the line stands; the count of lines when it is nowhere.
  size_t at(const std::string& id) const;
  /// A new line behind that of `id`, or in front of all for an empty one. False: there is none.
  bool add(const std::string& behind, const DraftLine& line);
  std::string text() const;
};

/// A disc of 20 s that every reader takes: three tracks with codes and texts, the second with a
/// flag and a pause.
Draft goodDraft();
/// The same of a WAVE file.
Draft goodWaveDraft();

inline constexpr int64_t kDraftSectors = 1500;

/// Writes sheet and files into `folder`.
SheetOnDisk writeDraft(const Draft& draft, const std::filesystem::path& folder);

}  // namespace velmor::check::test
