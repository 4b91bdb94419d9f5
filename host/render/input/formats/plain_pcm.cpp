#include "host/render/input/formats/plain_pcm.h"

#include <sndfile.h>

#include <bit>
#include <cstdint>
#include <cstring>

namespace velmor::render {
namespace {

bool isLittleEndian(int format) {
  switch (format & SF_FORMAT_TYPEMASK) {
    case SF_FORMAT_WAV:
    case SF_FORMAT_WAVEX:
    case SF_FORMAT_RF64:
    case SF_FORMAT_W64:
      return (format & SF_FORMAT_ENDMASK) != SF_ENDIAN_BIG;
    default:
      return false;
  }
}

template <int kUnusedBits>
double sampleAt(const std::byte* from) {
  uint32_t bits = 0;
  std::memcpy(&bits, from, sizeof bits);
  return static_cast<int32_t>(bits << kUnusedBits) * (1.0 / kPlainFullScale);
}

template <int kUnusedBits>
void decode(const std::byte* from, size_t stride, double* out, size_t count) {
  size_t i = 0;
  for (; count - i >= 4; i += 4, from += 4 * stride) {
    out[i] = sampleAt<kUnusedBits>(from);
    out[i + 1] = sampleAt<kUnusedBits>(from + stride);
    out[i + 2] = sampleAt<kUnusedBits>(from + 2 * stride);
    out[i + 3] = sampleAt<kUnusedBits>(from + 3 * stride);
  }
  for (; i < count; ++i, from += stride) out[i] = sampleAt<kUnusedBits>(from);
}

}  // namespace

size_t plainSampleBytes(int format) {
  if (std::endian::native != std::endian::little || !isLittleEndian(format)) return 0;
  switch (format & SF_FORMAT_SUBMASK) {
    case SF_FORMAT_PCM_16:
      return 2;
    case SF_FORMAT_PCM_24:
      return 3;
    case SF_FORMAT_PCM_32:
      return 4;
    default:
      return 0;
  }
}

void decodePlainSamples(const std::byte* from, size_t sample_bytes, size_t stride, double* out,
                        size_t count) {
  switch (sample_bytes) {
    case 2:
      return decode<16>(from, stride, out, count);
    case 3:
      return decode<8>(from, stride, out, count);
    default:
      return decode<0>(from, stride, out, count);
  }
}

void decodePlainFrames(const std::byte* from, size_t sample_bytes, size_t channels, double* left,
                       double* right, size_t count) {
  static const bool kByVectors = processorDecodesByVectors();
  const size_t frame_bytes = channels * sample_bytes;
  size_t done = 0;
  if (channels == 2 && kByVectors) {
    done = decodePlainStereoByVectors(from, sample_bytes, left, right, count);
    from += done * frame_bytes;
  }
  decodePlainSamples(from, sample_bytes, frame_bytes, left + done, count - done);
  if (channels == 1) return;
  decodePlainSamples(from + sample_bytes, sample_bytes, frame_bytes, right + done, count - done);
}

}  // namespace velmor::render
