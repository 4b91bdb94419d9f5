// One line of a cue sheet, taken apart: its command word and what follows.
#pragma once

#include <string>
#include <string_view>

#include "disc/sheet/sheet.h"

namespace velmor::disc {

/// Does the line begin with a command of a cue sheet, in any case? Looks at its first 64 bytes: no
/// writer indents further, and a look to the end for every cut would never end on a long line.
bool beginsCommand(std::string_view line);

/// The value that is `rest` whole: everything between its first and last quote, or all of it when
/// it does not begin with one.
Text wholeValue(std::string_view rest, int line);
/// The value that a further word follows (`FILE "name" BINARY`); the word goes to `after`.
Text valueBeforeWord(std::string_view rest, int line, std::string& after);

}  // namespace velmor::disc
