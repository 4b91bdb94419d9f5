// Audio files as inputs of a render.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace render_test {

/// Interleaved 16-bit noise, the same for the same seed; the corner values among it.
std::vector<int16_t> noise(int frames, int channels, unsigned seed = 1);
/// The samples as an image holds them.
std::string asImage(const std::vector<int16_t>& samples);

struct AudioTags {
  std::string title, artist, album;
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

}  // namespace render_test
