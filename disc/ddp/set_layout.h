// What a DDP 2.00 set says of its disc: tracks, times and codes. The texts are CD-TEXT
// (disc/cd_text).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "disc/units/disc_limits.h"

namespace velmor::ddp {

struct IndexPoint {
  int number = 1;      ///< 0 to 99
  int64_t sector = 0;  ///< from the first sector of the set's audio
};

/// The Q channel's control of a track, and whether copies of copies are forbidden (SCMS).
struct TrackFlags {
  bool pre_emphasis = false, copy_permitted = false, four_channels = false, serial_copies = false;
};

struct SetTrack {
  std::vector<IndexPoint> indices;  ///< ascending; index 01 is among them
  TrackFlags flags;
  std::string isrc;  ///< bare, or empty

  /// The sector of index `number`, or -1.
  int64_t at(int number) const {
    for (const IndexPoint& index : indices)
      if (index.number == number) return index.sector;
    return -1;
  }
};

struct SetLayout {
  std::string catalogue;  ///< 13 digits, or empty
  std::string master_id;  ///< up to `kLongestMasterId` printable ASCII characters
  std::vector<SetTrack> tracks;
  int64_t sectors =
      0;  ///< of the audio, which begins with track 1's pregap and ends at the lead-out
};

inline constexpr size_t kLongestMasterId = 48;
/// Track 1's pregap, in sectors: the pause that every disc has is a part of it, and its field has
/// four digits.
inline constexpr int64_t kShortestFirstPregap = disc::kSectorsBeforeTrack1;
inline constexpr int64_t kLongestFirstPregap = 9999;
/// The highest lead-out that the times can name, 99:59:74.
inline constexpr int64_t kLastTime = disc::sectorsOf(100, 0) - 1;

/// The names of the files. Of those that a map names, the ones that we give.
inline constexpr const char* kIdentifierFile = "DDPID";
inline constexpr const char* kMapFile = "DDPMS";
inline constexpr const char* kTextFile = "CDTEXT.BIN";
inline constexpr const char* kPqFile = "SD";
inline constexpr const char* kAudioFile = "IMAGE.DAT";
inline constexpr const char* kMd5File = "CHECKSUM.MD5";
inline constexpr const char* kCrcFile = "CHECKSUM.TXT";

}  // namespace velmor::ddp
