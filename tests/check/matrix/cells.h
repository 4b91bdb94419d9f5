// What the readers do with a sheet, beside what the checker says that they do.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/check/matrix/draft.h"

namespace velmor::check::test {

enum class Outcome { kTaken, kDamaged, kRefused };

/// What `velmor-cdcheck --for READER` says of a sheet.
struct Said {
  bool reported = true;  ///< it has printed a report
  bool refused = false;  ///< by this reader
  bool damaged = false;  ///< by this reader
  bool wrong = false;    ///< the sheet breaks a rule, whoever reads it
  std::string rules;     ///< that it named, for messages
};

struct Cell {
  std::string draft;
  Reader reader{};
  Outcome seen = Outcome::kTaken;
  Said said;
  std::string detail;  ///< what was lost, or the reader's last words

  /// A refusal or a damage must be named, or the sheet be wrong by itself; what the reader takes as
  /// it is must be neither. Without a report nothing agrees.
  bool agrees() const;
  std::string text() const;
};

/// Why this reader's answer to this sheet is not compared; empty: it is.
std::string notCompared(const Draft& draft, Reader reader);

/// Runs all installed readers, or those of `readers`, and the checker, in a scratch folder.
std::vector<Cell> cellsOf(const Draft& draft, const std::vector<Reader>& readers = {});

/// The same over the second sheet that `velmor-cdcheck --portable` writes of it, of several files
/// with their one image; none where it writes none. It is meant for all readers: one that refuses
/// it must be named among what could not be mended.
std::vector<Cell> portableCellsOf(const Draft& draft, const std::vector<Reader>& readers = {});

}  // namespace velmor::check::test
