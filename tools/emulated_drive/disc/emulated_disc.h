// What lies in the tray: a recordable disc and what has been recorded on it.
#pragma once

#include <array>
#include <cassert>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/emulated_drive/disc/bytes.h"
#include "tools/emulated_drive/disc/msf_address.h"

namespace velmor::emulated_drive {

enum class MediumType { kCdR, kCdRw };

enum class DiscStatus {
  kBlank,
  kIncomplete,  ///< a recording was begun and never finished: no table of contents
  kComplete     ///< one closed session
};

struct RecordedTrack {
  int number = 1;            ///< 1 to 99
  uint8_t control = 0;       ///< Q sub-channel's upper four bits: 1 pre-emphasis, 2 copy permitted
  int32_t pregap_start = 0;  ///< LBA of index 0; equal to the first index without a pregap
  std::vector<int32_t> indices = {};  ///< LBA of index 1, 2, …; never empty
  std::string isrc = {};              ///< 12 characters or empty

  [[nodiscard]] int32_t start() const {
    assert(!indices.empty());
    return indices.front();
  }
};

inline constexpr std::size_t kPackBytes = 18;

/// The lead-out in place of a track number, in cue sheets, TOCs and the Q sub-channel.
inline constexpr uint8_t kLeadOutNumber = 0xAA;
using CdTextPack = std::array<uint8_t, kPackBytes>;

struct EmulatedDisc {
  MediumType medium = MediumType::kCdR;
  DiscStatus state = DiscStatus::kBlank;
  int32_t capacity = 359845;               ///< last possible start of the lead-out, LBA
  int32_t lead_in = -12491;                ///< start of the lead-in, LBA (97:15:34)
  std::vector<RecordedTrack> tracks = {};  ///< of the closed session
  int32_t lead_out = 0;                    ///< LBA, of the closed session
  std::string mcn = {};                    ///< 13 digits or empty
  std::vector<CdTextPack> cd_text = {};    ///< packs as they repeat in the lead-in, each once

  /// Back to a blank disc of the same make.
  void erase();
  /// The track whose pregap or audio holds `lba`; null outside of all.
  [[nodiscard]] const RecordedTrack* trackAt(int32_t lba) const;
  /// Where `track`, one of `tracks`, ends: the next one's pregap, or the lead-out.
  [[nodiscard]] int32_t endOf(const RecordedTrack& track) const;
};

/// The recorded sectors of the disc in the tray, 2352 bytes each, from LBA -150 on. A sector that
/// was never written reads as silence. Both transfers carry whole sectors.
class AudioSurface {
 public:
  virtual ~AudioSurface() = default;
  /// Reading, writing and erasing answer false when the file or memory behind the surface fails.
  virtual bool write(int32_t lba, ByteView sectors) = 0;
  virtual bool read(int32_t lba, std::span<uint8_t> sectors) = 0;
  virtual bool erase() = 0;
};

}  // namespace velmor::emulated_drive
