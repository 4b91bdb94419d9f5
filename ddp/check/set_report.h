// A checked set for people, and for programs.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "ddp/check/checked_set.h"

namespace velmor::ddp {

/// The version of the JSON object's shape; a change that breaks its readers raises it.
inline constexpr int kSetJsonSchema = 1;

/// The tracks with their times, codes, flags and texts, then the findings, then the verdict.
void printSet(const CheckedSet& set, std::ostream& out);
/// The last line alone.
void printVerdict(const CheckedSet& set, std::ostream& out);
/// What `--json` prints: one object, and a line end. `written`: files that were made along.
void printSetJson(const CheckedSet& set, std::ostream& out,
                  const std::vector<std::string>& written = {});

}  // namespace velmor::ddp
