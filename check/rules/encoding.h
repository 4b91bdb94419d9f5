// In which encoding a text can be, judged by its bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmor::check {

enum class Encoding { kAscii, kUtf8, kLatin1 };

/// Latin 1 stands for every 8-bit encoding: bytes above 127 that are no UTF-8.
Encoding encodingOf(std::string_view text);
/// The next character of UTF-8 `text` at `at`, which moves on; U+FFFD and one byte for what is not
/// UTF-8.
char32_t nextCharacter(std::string_view text, size_t& at);
/// Texts of a sheet may hold anything; a terminal and JSON take clean UTF-8: '?' stands for control
/// characters and for what is no UTF-8.
std::string printable(std::string_view text);
/// Characters, not bytes, where it is UTF-8.
size_t characters(std::string_view text);

}  // namespace velmor::check
