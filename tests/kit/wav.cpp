#include "tests/kit/wav.h"

namespace test_kit {

namespace {

std::string bytesOf(uint32_t value, int count, bool big_endian) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    const int shift = 8 * (big_endian ? count - 1 - i : i);
    bytes += static_cast<char>(value >> shift & 0xff);
  }
  return bytes;
}

}  // namespace

std::string little16(uint32_t value) {
  return bytesOf(value, 2, false);
}
std::string little32(uint32_t value) {
  return bytesOf(value, 4, false);
}
std::string big16(uint32_t value) {
  return bytesOf(value, 2, true);
}
std::string big32(uint32_t value) {
  return bytesOf(value, 4, true);
}

std::string riffChunk(std::string_view id, std::string_view body) {
  std::string chunk(id);
  chunk += little32(static_cast<uint32_t>(body.size()));
  chunk += body;
  if (body.size() % 2 != 0) chunk += '\0';
  return chunk;
}

std::string riffFile(std::string_view chunks) {
  return riffChunk("RIFF", "WAVE" + std::string(chunks));
}

std::string formatChunk() {
  return riffChunk("fmt ", little16(1) + little16(2) + little32(44100) + little32(176400) +
                               little16(4) + little16(16));
}

std::string dataChunk(size_t frames) {
  return riffChunk("data", std::string(frames * 4, '\0'));
}

std::string wavHeader(uintmax_t bytes) {
  const auto size = static_cast<uint32_t>(bytes);
  return "RIFF" + little32(size + 36) + "WAVE" + formatChunk() + "data" + little32(size);
}

std::string wavFile(const std::string& audio) {
  return wavHeader(audio.size()) + audio;
}

}  // namespace test_kit
