// The checker as a library: look at a sheet and its images, and say what is wrong with them.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "check/report/readers.h"
#include "check/report/report.h"

namespace velmor::check {

struct CheckOptions {
  std::vector<Reader> readers;  ///< those that matter; empty: all
  /// Called while samples are read, with bytes done and bytes in all. On the calling thread.
  std::function<void(int64_t done, int64_t all)> progress;
};

/// A longer file is no cue sheet.
inline constexpr size_t kLongestSheet = size_t{16} << 20;

/// Reads the sheet and every sample of its images; changes nothing. Throws `Failure` when the
/// sheet itself cannot be read; everything else is a finding.
Report check(const std::filesystem::path& sheet, const CheckOptions& options);

}  // namespace velmor::check
