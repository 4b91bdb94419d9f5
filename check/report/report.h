// What the checker knows of a sheet in the end.
#pragma once

#include <filesystem>
#include <vector>

#include "check/image/opened_disc.h"
#include "check/report/findings.h"

namespace velmor::check {

struct Report {
  std::filesystem::path sheet;
  Disc disc;
  std::vector<Finding> findings;  ///< most serious first

  int count(Severity severity) const;
  /// Errors, or with `strict` warnings too.
  bool failed(bool strict) const;
};

}  // namespace velmor::check
