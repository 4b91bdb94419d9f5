// A sheet with its images opened: what the checks look at.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "check/image/audio_map.h"
#include "check/image/image_file.h"
#include "disc/sheet/sheet.h"

namespace velmor::check {

/// Where a track lies in its image, in sectors of that file.
struct TrackPlace {
  size_t file = 0;
  int64_t gap_start = 0;  ///< INDEX 00 where it is in the same file, else `start`
  int64_t start = 0;      ///< INDEX 01
  int64_t end = 0;        ///< one past its last sector; `start` when that is not known
  int64_t own_end = 0;    ///< `end` without the pause that belongs to the next track
  int64_t on_disc = 0;    ///< `start`, counted from the disc's LBA 0
  bool end_known = false;
};

struct Disc {
  std::filesystem::path name;  ///< of the sheet's file
  disc::Sheet sheet;
  std::vector<ImageFile> images;                  ///< one for each FILE
  std::vector<std::optional<AudioMap>> audio;     ///< one for each FILE; none: not looked into
  std::vector<std::optional<TrackPlace>> places;  ///< one for each track; none: no INDEX 01
  int64_t length = 0;         ///< sectors up to the lead-out, gaps from silence included
  bool length_known = false;  ///< every FILE could be measured
};

/// The sectors of a time of a sheet, far beyond any disc at most, so that sums of hostile times do
/// not overflow; 0 of one that cannot be read.
int64_t boundedSectors(const disc::Msf& time);

/// The images that `sheet` names, opened beside it, and the tracks laid out on them. `name`: the
/// sheet's own file.
Disc openDisc(disc::Sheet sheet, const std::filesystem::path& name);

/// For each FILE of `sheet`: does an index stand in it?
std::vector<bool> filesInUse(const disc::Sheet& sheet);

/// Does the sheet look like one whose times were truncated to milliseconds and then to sectors?
/// Such a time can lie one sector before what it means: n/75 s becomes sector n - 1 unless n is
/// divisible by 3, and a last digit FF with FF mod 3 = 2 never comes out for a sector boundary.
/// Told by the shape: one BINARY file, CRLF, quoted codes, no such FF.
bool timesLookTruncated(const disc::Sheet& sheet);

}  // namespace velmor::check
