// Bytes and numbers anywhere in an open file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace velmor::disc {

/// `bytes` as the characters they may be.
inline std::string_view charactersOf(std::span<const std::byte> bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

/// Looks into a descriptor that somebody else owns; its position stays. Where the system refuses to
/// read, the bytes count as missing, and the owner is told.
class FileBytes {
 public:
  /// `size` is the file's, in bytes. `failure` becomes the error of a read that the system refuses.
  FileBytes(int descriptor, int64_t size, int& failure)
      : m_descriptor(descriptor), m_size(size), m_failure(&failure) {}

  int64_t size() const { return m_size; }
  /// Whether `magic`, of at most 16 bytes, stands at offset `at`.
  bool has(int64_t at, std::string_view magic) const;
  /// The number of `width` bytes (1 to 8) at `at`; nothing when the file ends before its last
  /// byte.
  std::optional<uint64_t> little(int64_t at, size_t width) const { return number(at, width, true); }
  std::optional<uint64_t> big(int64_t at, size_t width) const { return number(at, width, false); }
  /// All of `count` bytes, or false.
  bool read(int64_t at, char* to, size_t count) const;
  /// `length` bytes from `at` on are more than there are.
  bool runsOver(int64_t at, uint64_t length) const {
    return at > m_size || length > static_cast<uint64_t>(m_size - at);
  }

 private:
  std::optional<uint64_t> number(int64_t at, size_t width, bool little) const;

  int m_descriptor;
  int64_t m_size;
  int* m_failure;
};

}  // namespace velmor::disc
