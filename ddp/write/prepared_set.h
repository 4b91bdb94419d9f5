// A sheet made ready to become a set: checked, laid out, its texts in packs. Nothing is written
// yet.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "check/portable/make_portable.h"
#include "check/report/report.h"
#include "ddp/write/sheet_layout.h"
#include "disc/failure.h"

namespace velmor::ddp {

struct SetOptions {
  std::string master_id;  ///< `isMasterId`; empty: what the sheet says (`kMasterIdRemark`)
  bool cd_text = true;
  /// Where tracks truly start in the image, when the one who rendered it says so.
  check::ExactStarts exact_starts;
};

/// A line of a sheet that keeps a master identifier: REM MASTER_ID "text".
inline constexpr std::string_view kMasterIdRemark = "MASTER_ID ";

struct PreparedSet {
  /// Of the sheet, with what a set cannot hold among the errors; its images are open.
  check::Report report;
  SheetLayout layout;      ///< empty when the report has errors
  std::string text_packs;  ///< bytes; empty for none
  std::vector<std::string>
      changes;  ///< what the set has otherwise than the sheet, one sentence each

  bool refused() const { return report.failed(false); }
};

/// Throws `Failure` when the sheet itself cannot be read; everything else is in the report.
PreparedSet prepareSet(const std::filesystem::path& sheet, const SetOptions& options);

}  // namespace velmor::ddp
