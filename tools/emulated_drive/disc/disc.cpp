#include "tools/emulated_drive/disc/disc.h"

namespace velmor::recorder {

void Disc::erase() {
  state = DiscState::kBlank;
  tracks.clear();
  lead_out = 0;
  mcn.clear();
  cd_text.clear();
}

const Track* Disc::trackAt(int32_t lba) const {
  if (lba >= lead_out) {
    return nullptr;
  }
  const Track* found = nullptr;
  for (const Track& track : tracks) {
    if (track.pregap_start <= lba) {
      found = &track;
    }
  }
  return found;
}

int32_t Disc::endOf(const Track& track) const {
  const std::size_t next = static_cast<std::size_t>(&track - tracks.data()) + 1;
  return next < tracks.size() ? tracks[next].pregap_start : lead_out;
}

}  // namespace velmor::recorder
