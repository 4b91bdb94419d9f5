#include "tools/emulated_drive/disc/emulated_disc.h"

#include <cassert>

namespace velmor::emulated_drive {

void EmulatedDisc::erase() {
  state = DiscStatus::kBlank;
  tracks.clear();
  lead_out = 0;
  mcn.clear();
  cd_text.clear();
}

const RecordedTrack* EmulatedDisc::trackAt(int32_t lba) const {
  if (lba >= lead_out) {
    return nullptr;
  }
  const RecordedTrack* found = nullptr;
  for (const RecordedTrack& track : tracks) {
    if (track.pregap_start <= lba) {
      found = &track;
    }
  }
  return found;
}

int32_t EmulatedDisc::endOf(const RecordedTrack& track) const {
  assert(&track >= tracks.data() && &track < tracks.data() + tracks.size());
  const std::size_t next = static_cast<std::size_t>(&track - tracks.data()) + 1;
  return next < tracks.size() ? tracks[next].pregap_start : lead_out;
}

}  // namespace velmor::emulated_drive
