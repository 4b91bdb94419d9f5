// How letters and signs are spelled where there is only ASCII.
#pragma once

#include <optional>
#include <string_view>

namespace velmor::disc {

/// The ASCII spelling of a character above U+007F: accents dropped (é: e), ligatures and carriers
/// of umlauts spelled out (ß: ss, Æ: AE), typographic quotes, dashes and blanks made plain. Empty
/// for what leaves no trace: marks that stand behind their letter, a byte-order mark, joiners.
/// Nothing where there is no spelling.
std::optional<std::string_view> plainSpelling(char32_t character);

}  // namespace velmor::disc
