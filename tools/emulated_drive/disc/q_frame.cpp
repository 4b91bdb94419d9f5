#include "tools/emulated_drive/disc/q_frame.h"

#include <cassert>

#include "tools/emulated_drive/disc/crc16.h"

namespace velmor::emulated_drive {

namespace {

uint8_t decimal(int value) {
  return static_cast<uint8_t>(value / 10 << 4 | value % 10);
}

void storeTime(uint8_t* to, MsfAddress msf) {
  to[0] = decimal(msf.minute);
  to[1] = decimal(msf.second);
  to[2] = decimal(msf.frame);
}

/// The P sub-channel marks the pregaps.
bool isPause(const RecordedTrack* track, int32_t lba) {
  return track != nullptr && lba < track->start();
}

}  // namespace

std::array<uint8_t, 16> qFrameOf(const EmulatedDisc& disc, int32_t lba) {
  assert(!disc.tracks.empty() && lba >= disc.tracks.front().pregap_start);
  constexpr std::size_t kChecked = 10;
  std::array<uint8_t, 16> frame{};
  const RecordedTrack* track = disc.trackAt(lba);
  const RecordedTrack& owner = track != nullptr ? *track : disc.tracks.back();
  int index = track != nullptr ? 0 : 1;
  int32_t relative = lba - disc.lead_out;
  if (track != nullptr) {
    for (const int32_t start : track->indices) {
      index += lba >= start ? 1 : 0;
    }
    // In a pregap the time runs down to the track's start.
    relative = lba >= track->start() ? lba - track->start() : track->start() - 1 - lba;
  }
  frame[0] = static_cast<uint8_t>(owner.control << 4 | 1);
  frame[1] = track != nullptr ? decimal(track->number) : kLeadOutNumber;
  frame[2] = decimal(index);
  storeTime(&frame[3], durationOf(relative));
  storeTime(&frame[7], msfOf(lba));
  storeBig16(&frame[kChecked], invertedCrc16({frame.data(), kChecked}));
  frame.back() = isPause(track, lba) ? kPauseFlag : 0;
  return frame;
}

}  // namespace velmor::emulated_drive
