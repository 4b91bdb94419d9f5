// A disc as every reader takes it, with a list of what was changed to make it so.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace velmor::disc {

struct PlainFields {
  std::string title, performer, songwriter;  ///< ASCII; empty: no line
  /// What only a sheet that was made from a set has, in UTF-8 as its other texts.
  std::string composer, arranger, message;
};

struct PlainIndex {
  int number = 1;
  int64_t sector = 0;  ///< within its file
  size_t file = 0;
};

struct PlainTrack {
  int number = 1;
  std::string mode;
  PlainFields fields;
  std::string isrc;                 ///< bare, or empty
  std::string flags;                ///< "DCP PRE", or empty
  int64_t pregap = 0, postgap = 0;  ///< sectors of silence that are in no file
  std::vector<PlainIndex> indices;
};

struct PlainFile {
  std::string name, type;
  int64_t sectors = 0;  ///< of its samples; 0: not known
};

struct PortableDisc {
  std::vector<std::string> remarks;  ///< one line each
  std::string catalog;               ///< 13 digits, or empty
  PlainFields fields;
  std::vector<PlainFile> files;
  std::vector<PlainTrack> tracks;
  std::vector<std::string> changes;  ///< one sentence each, in the order of the sheet
};

}  // namespace velmor::disc
