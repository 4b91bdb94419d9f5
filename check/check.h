// The checker as a library: look at a sheet and its images, and say what is wrong with them.
#pragma once

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "check/report/findings.h"
#include "check/rules/disc.h"

namespace velmor::cdcheck {

/// What cannot be read or written, as one sentence that says what, where and what to do.
class CheckError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

struct CheckOptions {
  std::vector<Reader> readers;  ///< those that matter; empty: all
  /// Called while samples are read, with bytes done and bytes in all. On the calling thread.
  std::function<void(int64_t done, int64_t all)> progress;
};

struct Report {
  std::filesystem::path sheet;
  Disc disc;
  std::vector<Finding> findings;  ///< most serious first

  int count(Severity severity) const;
  /// Errors, or with `strict` warnings too.
  bool failed(bool strict) const;
};

/// A longer file is no cue sheet.
inline constexpr size_t kLongestSheet = size_t{16} << 20;

/// Reads the sheet and every sample of its images; changes nothing. Throws `CheckError` when the
/// sheet itself cannot be read; everything else is a finding.
Report check(const std::filesystem::path& sheet, const CheckOptions& options);

}  // namespace velmor::cdcheck
