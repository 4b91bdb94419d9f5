// One line of a cue sheet, taken apart: its command word and what follows.
#pragma once

#include <string>
#include <string_view>

#include "check/sheet/sheet.h"

namespace velmor::check {

std::string upperCase(std::string_view text);
/// Without the blanks and tabs at both ends.
std::string_view trimmed(std::string_view text);
/// Takes the first word off `rest`, and the blanks around it.
std::string_view takeWord(std::string_view& rest);
/// Does the line begin with a command of a cue sheet, in any case? Looks at its first 64 bytes: no
/// writer indents further, and a look to the end for every cut would never end on a long line.
bool beginsCommand(std::string_view line);

/// The value that is `rest` whole: everything between its first and last quote, or all of it when
/// it does not begin with one.
Text wholeValue(std::string_view rest, int line);
/// The value that a further word follows (`FILE "name" BINARY`); the word goes to `after`.
Text valueBeforeWord(std::string_view rest, int line, std::string& after);

/// "MM:SS:FF"; not readable when it is anything else. Numbers have at most six digits.
Msf parseMsf(std::string_view text);
/// A number of at most `digits` digits, or -1.
int parseNumber(std::string_view text, size_t digits);

}  // namespace velmor::check
