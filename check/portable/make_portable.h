// Makes a disc that every reader takes from a checked one.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/portable/portable_disc.h"

namespace velmor::check {

/// Where a track truly starts, when the one who rendered the image says so.
struct ExactStart {
  int64_t frame = 0;  ///< stereo frame of the image
  /// The sector of INDEX 00; nothing where the sheet's own keeps its distance.
  std::optional<int64_t> pause = std::nullopt;
};

/// One for each track. Empty: what sheet and image show must do.
using ExactStarts = std::vector<ExactStart>;

/// Throws `Failure` where no sheet can be made: no image, no tracks, over 99, indices that are
/// missing, descend or lie past the end. `target`: the new sheet's file;
/// FILE names are given relative to its folder.
disc::PortableDisc makePortable(const Report& report, const std::filesystem::path& target,
                                const ExactStarts& exact = {});

}  // namespace velmor::check
