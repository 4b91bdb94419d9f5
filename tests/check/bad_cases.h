// One sheet for each thing that breaks some reader, with what its author meant.
#pragma once

#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "tests/check/reader_runs.h"

namespace velmor::check::test {

enum class ImageKind { kPlain, kWholeDisc, kHundredTracks, kExtraBytes, kOtherName, kQuotedName };

struct BadCase {
  std::string name;  ///< of the sheet in cases/, without ".cue"
  std::string rule;  ///< the rule that it breaks
  LoadedDisc truth;
  ImageKind image = ImageKind::kPlain;
  /// Readers that lose something which their programs do not show.
  std::vector<Reader> unseen = {};
  /// Readers that are not run, since they would work on longer than a test lasts.
  std::vector<Reader> too_slow = {};
};

const std::vector<BadCase>& badCases();

inline void printTo(const BadCase& bad, std::ostream* out) {
  *out << bad.name;
}

/// Puts the sheet and its image into `folder`.
SheetOnDisk prepare(const BadCase& bad, const std::filesystem::path& folder);

}  // namespace velmor::check::test
