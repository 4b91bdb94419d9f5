#include "host/render/input/stated_length.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

namespace velmor::render {
namespace {

/// Beyond any real file; bounds the walk through a damaged one.
constexpr int kMostChunks = 4096;

class Bytes {
 public:
  Bytes(int descriptor, int64_t size) : m_descriptor(descriptor), m_size(size) {}

  int64_t size() const { return m_size; }
  bool has(int64_t at, std::string_view magic) const {
    std::array<char, 16> found{};
    return read(at, found.data(), magic.size()) &&
           std::string_view(found.data(), magic.size()) == magic;
  }
  std::optional<uint64_t> little(int64_t at, size_t width) const { return number(at, width, true); }
  std::optional<uint64_t> big(int64_t at, size_t width) const { return number(at, width, false); }
  bool read(int64_t at, char* to, size_t count) const {
    return at >= 0 && ::pread(m_descriptor, to, count, at) == static_cast<ssize_t>(count);
  }
  /// `length` bytes from `at` on are more than there are.
  bool runsOver(int64_t at, uint64_t length) const {
    return at > m_size || length > static_cast<uint64_t>(m_size - at);
  }

 private:
  std::optional<uint64_t> number(int64_t at, size_t width, bool little) const {
    std::array<char, 8> bytes{};
    if (!read(at, bytes.data(), width)) return std::nullopt;
    if (little) std::reverse(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(width));
    uint64_t value = 0;
    for (size_t i = 0; i < width; ++i) value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
  }

  int m_descriptor;
  int64_t m_size;
};

/// Sizes that programs write which cannot go back to fill them in: just below 2^31 or 2^32.
bool isUnknownSize(uint64_t size) {
  return size >= 0xffffff00U || (size >= 0x7fffe000U && size <= 0x7fffffffU);
}

/// Walks chunks of a 4-byte id and a 4-byte size, padded to even offsets, behind a 12-byte header.
bool chunkRunsOver(const Bytes& file, std::string_view audio, bool littleEndian) {
  int64_t at = 12;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = littleEndian ? file.little(at + 4, 4) : file.big(at + 4, 4);
    if (!size) return false;
    if (file.has(at, audio)) return !isUnknownSize(*size) && file.runsOver(at + 8, *size);
    at += 8 + static_cast<int64_t>(*size + *size % 2);
  }
  return false;
}

/// The 64-bit size of the audio stands in the "ds64" chunk, which comes first.
bool rf64RunsOver(const Bytes& file) {
  const auto first = file.little(16, 4);
  const auto audio = file.little(28, 8);
  if (!file.has(12, "ds64") || !first || !audio || *audio == 0) return false;
  int64_t at = 20 + static_cast<int64_t>(*first + *first % 2);
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = file.little(at + 4, 4);
    if (!size) return false;
    if (file.has(at, "data")) return file.runsOver(at + 8, *size == 0xffffffffU ? *audio : *size);
    at += 8 + static_cast<int64_t>(*size + *size % 2);
  }
  return false;
}

bool auRunsOver(const Bytes& file) {
  const auto start = file.big(4, 4);
  const auto size = file.big(8, 4);
  return start && size && !isUnknownSize(*size) &&
         file.runsOver(static_cast<int64_t>(*start), *size);
}

/// Chunks of a 16-byte id, which begins with four characters, and an 8-byte size that counts both,
/// padded to multiples of 8, behind a 40-byte header.
bool w64RunsOver(const Bytes& file) {
  int64_t at = 40;
  for (int i = 0; i < kMostChunks; ++i) {
    const auto size = file.little(at + 16, 8);
    if (!size || *size < 24 || *size > uint64_t{1} << 62) return false;
    if (file.has(at, "data")) return file.runsOver(at, *size);
    if (file.runsOver(at, *size)) return false;
    at += static_cast<int64_t>((*size + 7) / 8 * 8);
  }
  return false;
}

/// A page is a 27-byte header, as many lengths as its last byte says, and the segments themselves.
bool oggRunsOver(const Bytes& file) {
  constexpr int64_t kLongestPage = 27 + 255 + 255 * 255;
  const int64_t from = std::max<int64_t>(0, file.size() - kLongestPage);
  std::vector<char> tail(static_cast<size_t>(file.size() - from));
  if (!file.read(from, tail.data(), tail.size())) return false;
  const std::string_view bytes(tail.data(), tail.size());
  const size_t page = bytes.rfind(std::string_view("OggS\0", 5));
  if (page == std::string_view::npos) return true;  // a page cannot be longer than this
  if (bytes.size() - page < 27) return true;
  const auto segments = static_cast<size_t>(static_cast<unsigned char>(bytes[page + 26]));
  if (bytes.size() - page - 27 < segments) return true;
  const std::string_view lengths = bytes.substr(page + 27, segments);
  const size_t body = std::accumulate(
      lengths.begin(), lengths.end(), size_t{0},
      [](size_t sum, char length) { return sum + static_cast<unsigned char>(length); });
  return bytes.size() - page - 27 - segments < body;
}

}  // namespace

bool audioRunsOverTheEnd(int descriptor, int64_t size) {
  const Bytes file(descriptor, size);
  if (file.has(0, "RIFF")) return chunkRunsOver(file, "data", true);
  if (file.has(0, "RIFX")) return chunkRunsOver(file, "data", false);
  if (file.has(0, "RF64")) return rf64RunsOver(file);
  if (file.has(0, "FORM")) return chunkRunsOver(file, "SSND", false);
  if (file.has(0, ".snd")) return auRunsOver(file);
  if (file.has(0, "riff")) return w64RunsOver(file);
  if (file.has(0, "OggS")) return oggRunsOver(file);
  return false;
}

}  // namespace velmor::render
