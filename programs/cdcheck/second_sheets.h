// The second sheets that the checker writes on request.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/portable/portable_disc.h"

namespace velmor::programs {

struct Second {
  std::filesystem::path path;
  std::string (*text)(const disc::PortableDisc&);
};

/// The sheet `cue` and the table of contents `toc`; empty: not wanted. Throws `Failure` when both
/// name one file.
std::vector<Second> wantedSeconds(const std::string& cue, const std::string& toc);

/// Writes all of them or none, and returns what they have otherwise than the first sheet, one
/// sentence each. Throws `Failure`.
std::vector<std::string> writeSeconds(const check::Report& report,
                                      const std::vector<Second>& seconds, bool force);

}  // namespace velmor::programs
