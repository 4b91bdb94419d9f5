// A cue sheet as it stands in its file: every value with its line, nothing judged. The module
// writes such files in module/sink/cue_sheet.h; what a drive is sent under the same name is in
// tools/emulated_drive/disc/cue_sheet.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "disc/units/disc_time.h"

namespace velmor::disc {

/// A value of a command, byte for byte between its outer quotes (or trimmed, when it has none).
struct Text {
  std::string bytes;
  int line = 0;             ///< 1 and up
  bool quoted = false;      ///< it began with a double quote
  bool closed = true;       ///< the quote it began with was closed on the same line
  bool text_after = false;  ///< more text stands behind its closing quote
};

struct Index {
  int number = -1;  ///< 0 to 99; -1: not a number
  Msf time;
  size_t file = 0;  ///< which FILE of the sheet the time counts from
  int line = 0;
};

/// The texts and codes that a disc or a track can have.
struct Fields {
  std::optional<Text> title, performer, songwriter, composer, arranger, message;
};

struct Track {
  int number = -1;               ///< as written; -1: not a number
  std::string mode;              ///< upper case, "AUDIO"; empty when missing
  bool lower_case_mode = false;  ///< it has small letters in the sheet
  int line = 0;
  Fields fields;
  std::optional<Text> isrc, flags;
  std::optional<Msf> pregap, postgap;
  bool pregap_behind_index = false;  ///< the PREGAP stands behind an INDEX
  std::vector<Index> indices;

  bool isAudio() const { return mode == "AUDIO"; }
  const Index* index(int wanted) const {
    for (const Index& i : indices)
      if (i.number == wanted) return &i;
    return nullptr;
  }
};

struct File {
  Text name;
  std::string type;  ///< upper case, "BINARY"; empty when missing
};

/// What the parser met and could not place.
enum class SyntaxKind {
  kUnknownCommand,  ///< `what` is its first word
  kMisplaced,       ///< a command before the TRACK or FILE that it needs
  kRepeated,        ///< a second value for what has one already; the first one counts
  kBadNumber,       ///< a track or index number or a time that is none
  kLineBreak,       ///< a quoted value goes on in the next line
  kUnclosed,        ///< a quoted value without its closing quote
  kCutLine,         ///< the line was cut at 4095 bytes and the next command follows without an end
  kTextAfterValue,  ///< more text behind a closed value
};

struct SyntaxProblem {
  SyntaxKind kind = SyntaxKind::kUnknownCommand;
  int line = 0;
  int track = 0;  ///< 0: not within a track
  std::string what;
  bool same_value = false;  ///< of kRepeated: it says what the first one said
};

struct LineEnds {
  size_t crlf = 0, lf = 0, cr = 0;
};

struct Sheet {
  std::string bytes;  ///< as they stand in the file, but for a byte-order mark
  bool byte_order_mark = false;
  bool binary_bytes = false;  ///< zero bytes: UTF-16, or not a text at all
  LineEnds ends;
  bool no_last_line_end = false;  ///< the last line stops with the file
  int lower_case_file_type = 0;   ///< first line with a FILE's type in small letters; 0: none
  size_t longest_line = 0;        ///< bytes
  Fields fields;
  std::optional<Text> catalog, cd_text_file;
  std::vector<Text> remarks;
  std::vector<File> files;
  std::vector<Track> tracks;  ///< the first `kMostTracksKept`
  size_t tracks_in_all = 0;   ///< TRACK lines
  std::vector<SyntaxProblem> problems;
  size_t problems_left_out = 0;  ///< beyond the first `kMostProblems`
};

inline constexpr size_t kMostProblems = 200;
/// Ten times what a disc can have. A file of TRACK lines alone holds millions, and to keep them all
/// takes gigabytes and many seconds for a sheet that is refused at its hundredth.
inline constexpr size_t kMostTracksKept = 1000;

}  // namespace velmor::disc
