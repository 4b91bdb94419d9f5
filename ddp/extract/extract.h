// A set taken apart again: an image with its sheet, or a file for every track.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "ddp/check/checked_set.h"
#include "disc/failure.h"

namespace velmor::ddp {

struct Extracted {
  std::vector<std::filesystem::path> written;
  std::vector<std::string> changes;   ///< what could not be kept, one sentence each
  std::vector<std::string> warnings;  ///< clauses about what killed runs had left in the place
};

/// Told of the sectors done and of all. May throw, which ends the work with nothing written.
using ExtractProgress = std::function<void(int64_t done, int64_t all)>;

/// Writes `sheet`, which ends in ".cue", and the image with ".bin" beside it, both or neither.
/// `set` has no errors. Throws `Failure`, also when one of them is there and `force` is not given.
Extracted extractAlbum(const CheckedSet& set, const std::filesystem::path& sheet, bool force,
                       const ExtractProgress& progress);

/// Writes a WAV for every track, from its index 01 to the next one's, into `folder`, all or none;
/// what sounds before track 1 becomes a file 00. `set` has no errors. `folder` is new or empty;
/// with `force` files of the same names are replaced. Throws `Failure`.
Extracted extractTracks(const CheckedSet& set, const std::filesystem::path& folder, bool force,
                        const ExtractProgress& progress);

}  // namespace velmor::ddp
