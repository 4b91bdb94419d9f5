// The two codes of a disc: MCN (an EAN-13 number) and ISRC.
#pragma once

#include <string>
#include <string_view>

namespace velmor::check {

bool allDigits(std::string_view text);
/// The EAN-13 check digit of the first 12 digits, '0' to '9'. `digits` has at least 12, all digits.
char eanCheckDigit(std::string_view digits);
/// 13 digits with the right check digit (GS1).
bool isMcn(std::string_view text);
/// 12 characters, [A-Z]{2}[A-Z0-9]{3}[0-9]{7} (ISO 3901).
bool isIsrc(std::string_view text);
/// Without dashes and blanks, in upper case: what an ISRC is once its presentation is taken off.
std::string bareIsrc(std::string_view text);

}  // namespace velmor::check
