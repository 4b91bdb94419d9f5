// A disc as its page shows it, whether a sheet or a set of files for a plant says what is on it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "check/image/audio_map.h"
#include "check/report/findings.h"
#include "disc/units/disc_limits.h"

namespace velmor::page {

/// The first sector of every disc, counted as all sectors of a page are: 0 is the first one behind
/// the pause of two seconds before track 1 (LBA).
inline constexpr int64_t kFirstSector = -int64_t{disc::kSectorsBeforeTrack1};

struct PageIndex {
  int number = 1;
  int64_t sector = 0;
};

/// Sectors from `begin` up to `end`, which is not among them.
struct Stretch {
  int64_t begin = 0, end = 0;
  int64_t sectors() const { return end - begin; }
};

struct PageTrack {
  int number = 1;
  bool is_audio = true;
  std::string mode;  ///< "AUDIO", or what else it is
  std::string title, performer, isrc, flags;
  std::vector<PageIndex> indices;  ///< as they are given
  int64_t pause = 0;               ///< sectors before index 01 that belong to the track
  /// From index 01 to the pause of the next track. Nothing: nobody knows where it lies.
  std::optional<Stretch> place;
};

/// Sectors that follow each other in an image and on the disc.
struct AudioRun {
  size_t image = 0;
  int64_t first = 0;  ///< sector of the image
  int64_t at = 0;     ///< sector of the disc
  int64_t sectors = 0;
};

/// A file that holds samples, or should.
struct PageImage {
  std::filesystem::path path;
  std::string type;     ///< that of the sheet's FILE
  bool exists = false;  ///< as a regular file
  std::string problem;  ///< why its samples cannot be read; empty when they can
  int64_t bytes = 0;    ///< of the whole file
};

/// Samples in a row at full scale.
struct ClippedRun {
  int64_t sector = 0;
  int64_t samples = 0;
};

struct PageDisc {
  std::string name;         ///< of the sheet's file or of the set's folder
  bool of_set = false;      ///< from a set of files for a plant
  bool sheet_read = false;  ///< the readers of cue sheets have been thought of
  std::string title, performer, catalogue, master_id;
  std::vector<PageTrack> tracks;  ///< at most 99
  size_t tracks_left_out = 0;     ///< beyond them
  int64_t begin = 0;              ///< the first sector that an image holds
  int64_t end = 0;                ///< the lead-out
  bool end_known = false;
  std::vector<PageImage> images;
  std::vector<AudioRun> runs;            ///< ascending on the disc, none over another
  std::vector<ClippedRun> clipped;       ///< ascending
  bool clipped_left_out = false;         ///< there are more of them, behind the last one
  std::vector<check::Finding> findings;  ///< most serious first
};

}  // namespace velmor::page
