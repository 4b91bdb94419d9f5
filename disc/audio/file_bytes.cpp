#include "disc/audio/file_bytes.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>

namespace velmor::disc {

bool FileBytes::read(int64_t at, char* to, size_t count) const {
  if (at < 0) return false;
  const ssize_t got = ::pread(m_descriptor, to, count, at);
  if (got < 0) *m_failure = errno;
  return got == static_cast<ssize_t>(count);
}

bool FileBytes::has(int64_t at, std::string_view magic) const {
  std::array<char, 16> found{};
  assert(magic.size() <= found.size());
  return read(at, found.data(), magic.size()) &&
         std::string_view(found.data(), magic.size()) == magic;
}

std::optional<uint64_t> FileBytes::number(int64_t at, size_t width, bool little) const {
  std::array<char, 8> bytes{};
  assert(width >= 1 && width <= bytes.size());
  if (!read(at, bytes.data(), width)) return std::nullopt;
  if (little) std::reverse(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(width));
  uint64_t value = 0;
  for (size_t i = 0; i < width; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
  return value;
}

}  // namespace velmor::disc
