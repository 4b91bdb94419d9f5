// Sector addresses: logical (LBA 0 is the first sector after the two seconds before track 1) and as
// minutes, seconds and frames, 75 frames to a second. The programs' own are disc/units/disc_time.h
// and disc/units/disc_units.h, which a drive that is to catch their mistakes does not use.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace velmor::emulated_drive {

inline constexpr int32_t kSectorBytes = 2352;
inline constexpr int32_t kFirstPregap = 150;    ///< sectors before track 1
inline constexpr int32_t kShortestTrack = 300;  ///< sectors: four seconds

struct MsfAddress {
  uint8_t minute = 0, second = 0, frame = 0;
};

/// Addresses before -150 lie in the lead-in, whose times run up to 99:59:74.
MsfAddress msfOf(int32_t lba);
/// A length, which counts from zero where an address counts from the two seconds before track 1.
MsfAddress durationOf(int32_t sectors);
/// Minutes from 90 on are lead-in times and give negative addresses. Nothing if S > 59 or F > 74.
std::optional<int32_t> lbaOf(MsfAddress msf);
/// "MM:SS:FF"
std::string text(MsfAddress msf);

}  // namespace velmor::emulated_drive
