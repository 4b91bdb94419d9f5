// Sense data: what a drive says when it does not do a command (SPC-3 section 4.5, MMC-5 annex F).
#pragma once

#include <array>
#include <cstdint>
#include <optional>

namespace velmor::emulated_drive {

/// The drive's side; what a host reads out of a burning library's messages is `Sense` in
/// host/recording/burn/sense.h. The two share no code, so that neither hides the other's mistakes.
struct SenseData {
  uint8_t key = 0;                        ///< 2 not ready, 3 medium error, 5 illegal request, …
  uint8_t code = 0;                       ///< additional sense code
  uint8_t qualifier = 0;                  ///< additional sense code qualifier
  std::optional<int32_t> sector = {};     ///< LBA the error belongs to: the information field
  std::optional<uint16_t> progress = {};  ///< of 65536, while an operation runs

  bool operator==(const SenseData& other) const {
    return key == other.key && code == other.code && qualifier == other.qualifier;
  }
};

inline constexpr SenseData kNoSense{0x0, 0x00, 0x00};
inline constexpr SenseData kBecomingReady{0x2, 0x04, 0x01};
inline constexpr SenseData kOperationInProgress{0x2, 0x04, 0x07};
inline constexpr SenseData kNoMediumTrayClosed{0x2, 0x3A, 0x01};
inline constexpr SenseData kNoMediumTrayOpen{0x2, 0x3A, 0x02};
inline constexpr SenseData kWriteError{0x3, 0x0C, 0x00};
inline constexpr SenseData kUnrecoveredReadError{0x3, 0x11, 0x06};
inline constexpr SenseData kParameterListLength{0x5, 0x1A, 0x00};
inline constexpr SenseData kUnknownCommand{0x5, 0x20, 0x00};
inline constexpr SenseData kAddressOutOfRange{0x5, 0x21, 0x00};
inline constexpr SenseData kInvalidAddressForWrite{0x5, 0x21, 0x02};
inline constexpr SenseData kInvalidFieldInCommand{0x5, 0x24, 0x00};
inline constexpr SenseData kInvalidFieldInParameters{0x5, 0x26, 0x00};
inline constexpr SenseData kCommandSequence{0x5, 0x2C, 0x00};
inline constexpr SenseData kMediumNotErasable{0x5, 0x30, 0x05};
inline constexpr SenseData kSavingNotSupported{0x5, 0x39, 0x00};
inline constexpr SenseData kRemovalPrevented{0x5, 0x53, 0x02};
inline constexpr SenseData kIllegalModeForTrack{0x5, 0x64, 0x00};
inline constexpr SenseData kIncompleteTrackInSession{0x5, 0x72, 0x03};
inline constexpr SenseData kMediumChanged{0x6, 0x28, 0x00};
inline constexpr SenseData kWriteProtected{0x7, 0x27, 0x00};
inline constexpr SenseData kDataPhaseError{0xB, 0x4B, 0x00};

inline constexpr std::size_t kSenseBytes = 18;

/// Fixed format, current error (response code 70h).
std::array<uint8_t, kSenseBytes> senseBytes(const SenseData& sense);

}  // namespace velmor::emulated_drive
