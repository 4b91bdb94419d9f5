// What a name taken from an input must be before it may reach a sheet.
#pragma once

#include <string_view>

#include "disc/text/line_of_text.h"
#include "disc/text/utf8.h"
#include "fuzz/kit/fuzz_target.h"

namespace fuzz {

inline void requireLineOfText(std::string_view name) {
  require(velmor::disc::isUtf8(name), "a name is UTF-8");
  require(!velmor::disc::hasControlCharacters(name), "a name is one line");
}

}  // namespace fuzz
