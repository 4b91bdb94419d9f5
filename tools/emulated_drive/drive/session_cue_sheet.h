// The cue sheet of SEND CUE SHEET (MMC-5 section 6.33): eight bytes an entry, from the lead-in to
// the lead-out. The text file of that name is written by module/sink/cue_sheet.h and read by
// disc/sheet/sheet.h.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "tools/emulated_drive/disc/emulated_disc.h"
#include "tools/emulated_drive/drive/sense_data.h"

namespace velmor::emulated_drive {

/// A stretch of the disc whose sectors the host sends in one form.
struct CueRegion {
  int32_t start = 0;        ///< LBA
  int32_t end = 0;          ///< LBA after the last sector
  int32_t block_bytes = 0;  ///< what the host sends for a sector; 0: the drive makes it itself

  [[nodiscard]] bool mainData() const { return block_bytes >= kSectorBytes; }
};

/// A session as announced by the host.
struct SessionCueSheet {
  std::vector<CueRegion> regions;  ///< ascending, without holes, from the lead-in on
  std::vector<RecordedTrack> tracks;
  int32_t lead_out = 0;
  std::string mcn;

  [[nodiscard]] const CueRegion* regionAt(int32_t lba) const;
};

/// Reads and checks a cue sheet for `disc`; the sense data says what is wrong with it.
std::variant<SessionCueSheet, SenseData> readSessionCueSheet(ByteView bytes,
                                                             const EmulatedDisc& disc);

}  // namespace velmor::emulated_drive
