// Sense data: what a drive says when it does not do a command (SPC-3 section 4.5, MMC-5 annex F).
// The side that reads it is host/recording/burn/sense.h, which shares nothing with this one.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace velmor::recorder {

struct Sense {
  uint8_t key = 0;                        ///< 2 not ready, 3 medium error, 5 illegal request, …
  uint8_t code = 0;                       ///< additional sense code
  uint8_t qualifier = 0;                  ///< additional sense code qualifier
  std::optional<int32_t> sector = {};     ///< LBA the error belongs to: the information field
  std::optional<uint16_t> progress = {};  ///< of 65536, while an operation runs

  bool operator==(const Sense& other) const {
    return key == other.key && code == other.code && qualifier == other.qualifier;
  }
};

inline constexpr Sense kNoSense{0x0, 0x00, 0x00};
inline constexpr Sense kBecomingReady{0x2, 0x04, 0x01};
inline constexpr Sense kOperationInProgress{0x2, 0x04, 0x07};
inline constexpr Sense kNoMediumTrayClosed{0x2, 0x3A, 0x01};
inline constexpr Sense kNoMediumTrayOpen{0x2, 0x3A, 0x02};
inline constexpr Sense kWriteError{0x3, 0x0C, 0x00};
inline constexpr Sense kUnrecoveredReadError{0x3, 0x11, 0x06};
inline constexpr Sense kParameterListLength{0x5, 0x1A, 0x00};
inline constexpr Sense kUnknownCommand{0x5, 0x20, 0x00};
inline constexpr Sense kAddressOutOfRange{0x5, 0x21, 0x00};
inline constexpr Sense kInvalidAddressForWrite{0x5, 0x21, 0x02};
inline constexpr Sense kInvalidFieldInCommand{0x5, 0x24, 0x00};
inline constexpr Sense kInvalidFieldInParameters{0x5, 0x26, 0x00};
inline constexpr Sense kCommandSequence{0x5, 0x2C, 0x00};
inline constexpr Sense kMediumNotErasable{0x5, 0x30, 0x05};
inline constexpr Sense kSavingNotSupported{0x5, 0x39, 0x00};
inline constexpr Sense kRemovalPrevented{0x5, 0x53, 0x02};
inline constexpr Sense kIllegalModeForTrack{0x5, 0x64, 0x00};
inline constexpr Sense kIncompleteTrackInSession{0x5, 0x72, 0x03};
inline constexpr Sense kMediumChanged{0x6, 0x28, 0x00};
inline constexpr Sense kWriteProtected{0x7, 0x27, 0x00};
inline constexpr Sense kDataPhaseError{0xB, 0x4B, 0x00};

inline constexpr std::size_t kSenseBytes = 18;

/// Fixed format, current error (response code 70h).
std::array<uint8_t, kSenseBytes> senseBytes(const Sense& sense);

}  // namespace velmor::recorder
