// What is done to a good cue sheet, one edit at a time.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tests/check/matrix/draft.h"

namespace velmor::check::test {

struct Edit {
  std::string name;  ///< "lower:title2"
  std::string line;  ///< the id of the line that it is about; empty: the whole sheet
  /// Changes the sheet, and the disc that it means. False: the sheet has no place for it.
  std::function<bool(Draft&)> apply;
};

/// All edits, in an order that does not change.
const std::vector<Edit>& allEdits();

}  // namespace velmor::check::test
