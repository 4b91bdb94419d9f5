#include "tests/host/render/input/sound_files.h"

#include <gtest/gtest.h>

#include <cmath>

namespace velmor::render::test {

std::string Folder::write(std::string_view name, std::string_view bytes) const {
  test_kit::writeFile(path(name), std::string(bytes));
  return path(name);
}

Stereo readAll(AudioInput& input, size_t block) {
  Stereo all;
  std::vector<double> left(block);
  std::vector<double> right(block);
  for (;;) {
    const size_t got = input.read(left.data(), right.data(), block);
    const auto count = static_cast<std::ptrdiff_t>(got);
    all.left.insert(all.left.end(), left.begin(), left.begin() + count);
    all.right.insert(all.right.end(), right.begin(), right.begin() + count);
    if (got < block) break;
  }
  EXPECT_EQ(input.read(left.data(), right.data(), block), 0U) << "after the end";
  return all;
}

int discSample(double v) {
  const double rounded = std::floor(v * 32768.0 + 0.5);
  if (rounded < -32768.0) return -32768;
  return rounded > 32767.0 ? 32767 : static_cast<int>(rounded);
}

std::string refusalOf(const std::string& path) {
  return errorOf([&] {
    const auto input = AudioInput::open(path, Dither::kNone);
    readAll(*input, 1024);
  });
}

std::string cueBody(std::span<const CuePoint> points) {
  std::string body = little32(static_cast<uint32_t>(points.size()));
  for (const CuePoint& point : points) {
    body += little32(point.id) + little32(point.frame) + "data" + little32(0) + little32(0) +
            little32(point.frame);
  }
  return body;
}

std::string label(uint32_t id, std::string_view text) {
  return riffChunk("labl", little32(id) + std::string(text) + '\0');
}

std::string note(uint32_t id, std::string_view text) {
  return riffChunk("note", little32(id) + std::string(text) + '\0');
}

std::string region(uint32_t id, uint32_t length, std::string_view text) {
  return riffChunk("ltxt", little32(id) + little32(length) + "rgn " + std::string(8, '\0') +
                               std::string(text) + (text.empty() ? "" : std::string(1, '\0')));
}

std::string flacBlock(unsigned type, std::string_view body) {
  std::string bytes = big32(static_cast<uint32_t>(type << 24 | body.size()));
  bytes += body;
  return bytes;
}

std::string flacFile(const Folder& folder, size_t frames, std::string_view blocks) {
  constexpr unsigned kLast = 0x80;
  constexpr unsigned kPadding = 1;
  const std::string path = folder.path("made.flac");
  writeShorts(path, {SF_FORMAT_FLAC | SF_FORMAT_PCM_16, 44100, 2},
              std::vector<int16_t>(2 * frames));
  const std::string made = readFile(path);
  const auto byte_at = [&](size_t at) { return static_cast<unsigned char>(made[at]); };
  size_t audio = 4;
  for (bool last = false; !last;) {
    last = (byte_at(audio) & kLast) != 0;
    audio += 4 + size_t{byte_at(audio + 2)} * 256 + byte_at(audio + 3);
  }
  std::string bytes = "fLaC";
  bytes += flacBlock(0, made.substr(8, 34));
  bytes += blocks;
  bytes += flacBlock(kLast | kPadding, "");
  bytes += made.substr(audio);
  return bytes;
}

}  // namespace velmor::render::test
