// What a name taken from an input must be before it may reach a sheet.
#pragma once

#include <string_view>

#include "fuzz/kit/fuzz_target.h"
#include "host/render/input/text_encoding.h"

namespace fuzz {

inline void requireLineOfText(std::string_view name) {
  require(velmor::render::isUtf8(name), "a name is UTF-8");
  require(!velmor::render::hasControlCharacters(name), "a name is one line");
}

}  // namespace fuzz
