#include "tools/emulated_drive/disc/msf_address.h"

#include <cstdio>

namespace velmor::emulated_drive {

namespace {
constexpr int32_t kHundredMinutes = 450000;  // frames
constexpr int32_t kNinetyMinutes = 405000;   // frames
}  // namespace

MsfAddress msfOf(int32_t lba) {
  int32_t frames = lba + kFirstPregap;
  if (frames < 0) {
    frames += kHundredMinutes;
  }
  return {static_cast<uint8_t>(frames / 4500), static_cast<uint8_t>(frames / 75 % 60),
          static_cast<uint8_t>(frames % 75)};
}

MsfAddress durationOf(int32_t sectors) {
  return msfOf(sectors - kFirstPregap);
}

std::optional<int32_t> lbaOf(MsfAddress msf) {
  if (msf.minute > 99 || msf.second > 59 || msf.frame > 74) {
    return std::nullopt;
  }
  const int32_t frames = (msf.minute * 60 + msf.second) * 75 + msf.frame;
  return frames - kFirstPregap - (frames >= kNinetyMinutes ? kHundredMinutes : 0);
}

std::string text(MsfAddress msf) {
  char buffer[16];
  std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", msf.minute, msf.second, msf.frame);
  return buffer;
}

}  // namespace velmor::emulated_drive
