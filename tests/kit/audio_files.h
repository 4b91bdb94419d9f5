// Audio files of every format, written with libsndfile.
#pragma once

#include <sndfile.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace test_kit {

/// Interleaved 16-bit noise, the same for the same seed; the corner values among it.
std::vector<int16_t> noise(int frames, int channels, unsigned seed = 1);
/// The samples as an image holds them.
std::string asImage(const std::vector<int16_t>& samples);

struct AudioShape {
  int format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
  int rate = 44100;
  int channels = 2;
};

/// Interleaved integer samples of 16 bits, written as such. Throws `std::runtime_error` on failure,
/// as the others do that answer nothing.
void writeShorts(const std::string& path, const AudioShape& shape,
                 std::span<const int16_t> samples);
/// Interleaved samples of full scale 1.0.
void writeDoubles(const std::string& path, const AudioShape& shape,
                  std::span<const double> samples);

struct AudioTags {
  std::string title = {}, artist = {}, album = {}, date = {}, genre = {};
};

/// Writes a file in libsndfile's `format`; false when this libsndfile does not write it.
bool writeAudio(const std::string& path, int format, int rate, int channels,
                const std::vector<int16_t>& samples, const AudioTags& tags = {});
/// A 16-bit 44100 Hz stereo WAV of `seconds` seconds of noise.
std::vector<int16_t> writeWav(const std::string& path, double seconds, unsigned seed = 1,
                              const AudioTags& tags = {});
/// The same length of silence, without its bytes on the disk.
void writeSparseWav(const std::string& path, int64_t seconds);
/// A stereo WAV of 32-bit floats.
void writeFloatWav(const std::string& path, const std::vector<float>& samples);

}  // namespace test_kit
