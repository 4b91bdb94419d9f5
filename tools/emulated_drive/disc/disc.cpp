#include "tools/emulated_drive/disc/disc.h"

namespace velmor::recorder {

void Disc::erase() {
  state = DiscState::blank;
  tracks.clear();
  leadOut = 0;
  mcn.clear();
  cdText.clear();
}

const Track* Disc::trackAt(int32_t lba) const {
  if (lba >= leadOut) {
    return nullptr;
  }
  const Track* found = nullptr;
  for (const Track& track : tracks) {
    if (track.pregapStart <= lba) {
      found = &track;
    }
  }
  return found;
}

int32_t Disc::endOf(const Track& track) const {
  const std::size_t next = static_cast<std::size_t>(&track - tracks.data()) + 1;
  return next < tracks.size() ? tracks[next].pregapStart : leadOut;
}

}  // namespace velmor::recorder
