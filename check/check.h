// The checker as a library: look at a sheet and its images, and say what is wrong with them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "check/report/readers.h"
#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/sheet/sheet.h"

namespace velmor::check {

struct CheckOptions {
  std::vector<Reader> readers = {};  ///< those that matter; empty: all
  /// Called while samples are read, with bytes done and bytes in all. On the calling thread.
  std::function<void(int64_t done, int64_t all)> progress = {};
  /// Whether to look at the samples; without them only their length counts.
  bool samples = true;
};

/// A longer file is no cue sheet.
inline constexpr size_t kLongestSheet = size_t{16} << 20;

/// The sheet of a file. Throws `Failure` when it cannot be read or is too long.
disc::Sheet readSheet(const std::filesystem::path& sheet);

/// Reads the sheet and every sample of its images that a disc could hold; changes nothing. Throws
/// `Failure` when the sheet itself cannot be read; everything else is a finding.
Report check(const std::filesystem::path& sheet, const CheckOptions& options);
/// The same for a sheet that was read; its images lie beside `name`.
Report check(disc::Sheet sheet, const std::filesystem::path& name, const CheckOptions& options);

}  // namespace velmor::check
