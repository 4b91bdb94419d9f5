// The second sheets that the checker writes on request.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "check/report/report.h"
#include "disc/failure.h"
#include "disc/portable/portable_disc.h"
#include "disc/terminal/interrupt.h"

namespace velmor::programs {

struct Second {
  std::filesystem::path path;
  std::string (*text)(const disc::PortableDisc&);
};

/// The files to be made of a sheet.
struct SecondFiles {
  std::vector<Second> sheets;
  std::filesystem::path joined;  ///< all audio as one image, named by the sheets; empty: not wanted

  bool none() const { return sheets.empty(); }
  std::vector<std::filesystem::path> paths() const;
};

/// The sheet `cue`, the table of contents `toc` and the image `join`; empty: not wanted. Throws
/// `Failure` when two of them name one file, and for an image without a sheet that names it.
SecondFiles wantedSeconds(const std::string& cue, const std::string& toc, const std::string& join);

/// Writes all of them or none, with a progress bar, and returns what they have otherwise than the
/// first sheet, one sentence each. Throws `Failure`, or `Interrupted` when a signal was noted.
std::vector<std::string> writeSeconds(const check::Report& report, const SecondFiles& wanted,
                                      bool force);

}  // namespace velmor::programs
