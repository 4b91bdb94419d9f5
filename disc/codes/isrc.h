// The International Standard Recording Code of a track (ISO 3901).
//
// The doubles in tools/emulated_drive and tests/module/model have this rule a second time on
// purpose: they must not share the programs' mistakes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::disc {

/// The form that a disc holds: two capitals (country), three capitals or digits (registrant), seven
/// digits (year and designation). Nothing else, no dashes.
bool isIsrc(std::string_view text);

/// Without what is for people only: dashes and blanks, and small letters, which become capitals.
/// The result need not be an ISRC.
std::string bareIsrc(std::string_view text);

/// `text` in the form that a disc holds; nothing when it is no ISRC even when bare.
std::optional<std::string> normalisedIsrc(std::string_view text);

}  // namespace velmor::disc
