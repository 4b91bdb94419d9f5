// A disc as every reader takes it, made from a checked one, with a list of what was changed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "check/check.h"
#include "disc/failure.h"

namespace velmor::check {

struct PlainFields {
  std::string title, performer, songwriter;  ///< ASCII; empty: no line
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
};

struct PortableDisc {
  std::string catalog;  ///< 13 digits, or empty
  PlainFields fields;
  std::vector<PlainFile> files;
  std::vector<PlainTrack> tracks;
  std::vector<std::string> changes;  ///< one sentence each, in the order of the sheet
};

/// Where tracks truly start, when the one who rendered the image says so: stereo frames from the
/// image's first, one for each track. Empty: what sheet and image show must do.
using ExactStarts = std::vector<int64_t>;

/// Throws `Failure` where no sheet can be made: no image, no tracks, over 99, indices that are
/// missing, descend or lie past the end. `target`: the new sheet's file;
/// FILE names are given relative to its folder.
PortableDisc makePortable(const Report& report, const std::filesystem::path& target,
                          const ExactStarts& exact = {});

/// The cue sheet: ASCII, CRLF, texts quoted, CATALOG, ISRC bare.
std::string cueText(const PortableDisc& disc);
/// The same for cdrdao; byte order as the FILE's type says. Throws `Failure` for what a TOC
/// cannot say (a track whose indices lie in two files, an image that cdrdao would take for
/// another).
std::string tocText(const PortableDisc& disc);

}  // namespace velmor::check
