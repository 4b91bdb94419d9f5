#include "tests/kit/audio_files.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>

namespace test_kit {

namespace {

constexpr int kRate = 44100;

void setTag(SNDFILE* file, int field, const std::string& text) {
  if (!text.empty()) sf_set_string(file, field, text.c_str());
}

SNDFILE* create(const std::string& path, const AudioShape& shape) {
  SF_INFO info{};
  info.format = shape.format;
  info.samplerate = shape.rate;
  info.channels = shape.channels;
  SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
  return file;
}

void finish(SNDFILE* file, const std::string& path, bool written) {
  if (sf_close(file) != 0 || !written) throw std::runtime_error(path + ": not written whole");
}

}  // namespace

void writeShorts(const std::string& path, const AudioShape& shape,
                 std::span<const int16_t> samples) {
  SNDFILE* const file = create(path, shape);
  const auto count = static_cast<sf_count_t>(samples.size());
  finish(file, path, sf_write_short(file, samples.data(), count) == count);
}

void writeDoubles(const std::string& path, const AudioShape& shape,
                  std::span<const double> samples) {
  SNDFILE* const file = create(path, shape);
  const auto count = static_cast<sf_count_t>(samples.size());
  finish(file, path, sf_write_double(file, samples.data(), count) == count);
}

std::vector<int16_t> noise(int frames, int channels, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<int16_t> samples(static_cast<size_t>(frames) * static_cast<size_t>(channels));
  for (int16_t& sample : samples) sample = static_cast<int16_t>(random());
  const int16_t corners[] = {-32768, -32767, -1, 0, 1, 32766, 32767};
  for (size_t i = 0; i < std::size(corners) && i < samples.size(); ++i) samples[i] = corners[i];
  return samples;
}

std::string asImage(const std::vector<int16_t>& samples) {
  static_assert(std::endian::native == std::endian::little);
  std::string image(reinterpret_cast<const char*>(samples.data()), samples.size() * 2);
  image.resize((image.size() + 2351) / 2352 * 2352);
  return image;
}

bool writeAudio(const std::string& path, int format, int rate, int channels,
                const std::vector<int16_t>& samples, const AudioTags& tags) {
  SF_INFO info{};
  info.format = format;
  info.samplerate = rate;
  info.channels = channels;
  if (!sf_format_check(&info)) return false;
  SNDFILE* const file = sf_open(path.c_str(), SFM_WRITE, &info);
  if (!file) return false;
  setTag(file, SF_STR_TITLE, tags.title);
  setTag(file, SF_STR_ARTIST, tags.artist);
  setTag(file, SF_STR_ALBUM, tags.album);
  setTag(file, SF_STR_DATE, tags.date);
  setTag(file, SF_STR_GENRE, tags.genre);
  const auto frames = static_cast<sf_count_t>(samples.size()) / channels;
  // In pieces: libsndfile's Vorbis writer keeps a whole write on its stack.
  for (sf_count_t at = 0; at < frames; at += 4096) {
    sf_writef_short(file, samples.data() + at * channels, std::min<sf_count_t>(4096, frames - at));
  }
  sf_close(file);
  return true;
}

std::vector<int16_t> writeWav(const std::string& path, double seconds, unsigned seed,
                              const AudioTags& tags) {
  std::vector<int16_t> samples = noise(static_cast<int>(seconds * kRate), 2, seed);
  if (!writeAudio(path, SF_FORMAT_WAV | SF_FORMAT_PCM_16, kRate, 2, samples, tags)) {
    throw std::runtime_error(path + ": not written");
  }
  return samples;
}

void writeSparseWav(const std::string& path, int64_t seconds) {
  writeShorts(path, {}, {});
  const auto bytes = static_cast<uint32_t>(seconds * kRate * 4);
  const auto header = static_cast<uint32_t>(std::filesystem::file_size(path));
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const uint32_t riff = header - 8 + bytes;
  file.seekp(4).write(reinterpret_cast<const char*>(&riff), 4);
  file.seekp(header - 4).write(reinterpret_cast<const char*>(&bytes), 4);
  file.close();
  std::filesystem::resize_file(path, header + bytes);
}

void writeFloatWav(const std::string& path, const std::vector<float>& samples) {
  SNDFILE* const file = create(path, {SF_FORMAT_WAV | SF_FORMAT_FLOAT, kRate, 2});
  const auto count = static_cast<sf_count_t>(samples.size());
  finish(file, path, sf_write_float(file, samples.data(), count) == count);
}

}  // namespace test_kit
