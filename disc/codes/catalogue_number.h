// The media catalogue number of a disc: an EAN-13 number (GS1), of which a UPC is the twelve-digit
// form.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::disc {

/// 13 digits with the right check digit.
bool isCatalogueNumber(std::string_view text);

/// The EAN-13 check digit of the first 12 characters, '0' to '9'. `digits` has at least 12, all of
/// them digits.
char eanCheckDigit(std::string_view digits);

/// Without what is for people only, dashes and blanks, and a UPC of 12 digits with its leading 0.
/// The result need not be a catalogue number.
std::string bareCatalogueNumber(std::string_view text);

/// What is wrong with `text` as it stands, as the end of a sentence ("has 2 digits where 13 are
/// needed"); nothing when it is right.
std::optional<std::string> catalogueFault(std::string_view text);

}  // namespace velmor::disc
