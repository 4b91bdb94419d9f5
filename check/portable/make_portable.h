// Makes a disc that every reader takes from a checked one.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/portable/portable_disc.h"

namespace velmor::check {

/// Where tracks truly start, when the one who rendered the image says so: stereo frames from the
/// image's first, one for each track. Empty: what sheet and image show must do.
using ExactStarts = std::vector<int64_t>;

/// Throws `Failure` where no sheet can be made: no image, no tracks, over 99, indices that are
/// missing, descend or lie past the end. `target`: the new sheet's file;
/// FILE names are given relative to its folder.
disc::PortableDisc makePortable(const Report& report, const std::filesystem::path& target,
                                const ExactStarts& exact = {});

}  // namespace velmor::check
