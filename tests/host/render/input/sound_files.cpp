#include "tests/host/render/input/sound_files.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velmor::render::test {
namespace {

SNDFILE* create(const std::string& path, const Shape& shape) {
  SF_INFO info{};
  info.format = shape.format;
  info.samplerate = shape.rate;
  info.channels = shape.channels;
  SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!file) ADD_FAILURE() << path << ": " << sf_strerror(nullptr);
  return file;
}

std::string bytesOf(uint32_t value, int count, bool big_endian) {
  std::string bytes;
  for (int i = 0; i < count; ++i) {
    const int shift = 8 * (big_endian ? count - 1 - i : i);
    bytes += static_cast<char>(value >> shift & 0xff);
  }
  return bytes;
}

}  // namespace

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "input_test_XXXXXX").string();
  if (!::mkdtemp(pattern.data())) ADD_FAILURE() << "no temporary folder";
  m_path = pattern;
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

std::string Folder::write(std::string_view name, std::string_view bytes) const {
  std::string file = path(name);
  std::ofstream stream(file, std::ios::binary);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  EXPECT_TRUE(stream.good()) << file;
  return file;
}

void writeShorts(const std::string& path, const Shape& shape, std::span<const int16_t> samples) {
  SNDFILE* file = create(path, shape);
  if (!file) return;
  const auto count = static_cast<sf_count_t>(samples.size());
  EXPECT_EQ(sf_write_short(file, samples.data(), count), count) << path;
  EXPECT_EQ(sf_close(file), 0) << path;
}

void writeDoubles(const std::string& path, const Shape& shape, std::span<const double> samples) {
  SNDFILE* file = create(path, shape);
  if (!file) return;
  const auto count = static_cast<sf_count_t>(samples.size());
  EXPECT_EQ(sf_write_double(file, samples.data(), count), count) << path;
  EXPECT_EQ(sf_close(file), 0) << path;
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

std::string contentsOf(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

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
  const std::string made = contentsOf(path);
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
