// A sheet laid out as a set: the times from the set's first sector, and where each stretch of its
// audio comes from.
#pragma once

#include <cstdint>
#include <vector>

#include "check/image/opened_disc.h"
#include "disc/ddp/set_layout.h"

namespace velmor::ddp {

/// Sectors that follow each other in the set.
struct AudioPiece {
  static constexpr int kSilence = -1;

  int file = kSilence;  ///< which image of the disc
  int64_t first = 0;    ///< sector of that image
  int64_t sectors = 0;
};

struct SheetLayout {
  SetLayout set;
  std::vector<AudioPiece> pieces;  ///< they fill `set.sectors`
};

/// Lays out a disc without errors (check::check, checkForSet). Where track 1 has no INDEX 00, the
/// pause that every disc has comes before the image as silence; where it has one, the image
/// contains that pause. PREGAP and POSTGAP become silence.
SheetLayout layOutSheet(const check::Disc& disc);

}  // namespace velmor::ddp
