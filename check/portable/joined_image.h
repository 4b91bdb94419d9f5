// Several files of a sheet as one image, with the silence that the sheet adds inside.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <vector>

#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/portable/portable_disc.h"

namespace velmor::check {

/// A run of sectors of one file, or of silence.
struct ImagePiece {
  size_t file = 0;  ///< of the sheet; of no meaning for silence
  int64_t first = 0, sectors = 0;
  bool silence = false;
};

/// The pieces of the joined image in their order. `disc` is the second sheet, which will stand at
/// `sheet`; its files become the one at `image`, its times count from there, PREGAP and POSTGAP
/// become pauses in it. Throws `Failure` when a file's samples cannot be read.
std::vector<ImagePiece> joinFiles(const Report& report, const std::filesystem::path& image,
                                  const std::filesystem::path& sheet, disc::PortableDisc& disc);

/// Told of the sectors done and of all. May throw, which ends the work.
using JoinProgress = std::function<void(int64_t done, int64_t all)>;

/// Hands the samples of the pieces to `write`, little-endian, a file's last sector filled up with
/// zeros. Throws `Failure` when a file ends before its time, and what `write` and `progress` throw.
void writePieces(const Report& report, const std::vector<ImagePiece>& pieces,
                 const std::function<void(std::string_view)>& write, const JoinProgress& progress);

}  // namespace velmor::check
