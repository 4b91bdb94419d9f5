// Files that hold plain integer samples, taken as they lie in the file: the decoder's own way leads
// through a buffer of 8 KiB, which costs several times what the samples do.
#pragma once

#include <cstddef>

namespace velmor::render {

/// What stands for 1.0 when a sample's bytes are the upper ones of 32 bits, so that every width has
/// the same full scale.
constexpr double kPlainFullScale = 2147483648.0;  // 2^31

/// Bytes that must be readable behind the last sample to be decoded: they are fetched along with
/// it.
constexpr size_t kPlainSlack = 8;

/// Bytes of a sample where a file of libsndfile's `format` holds little-endian integers of 16, 24
/// or 32 bits; 0 for all that the decoder is needed for.
size_t plainSampleBytes(int format);

/// The doubles that the decoder would give, full scale 1.0, for one channel: the first sample of
/// `sample_bytes` bytes (2 to 4) lies at `from`, each next one `stride` bytes on.
void decodePlainSamples(const std::byte* from, size_t sample_bytes, size_t stride, double* out,
                        size_t count);

/// The same for the first two of `channels` channels, whose frames lie end to end at `from`;
/// `right` is not used in a mono file.
void decodePlainFrames(const std::byte* from, size_t sample_bytes, size_t channels, double* left,
                       double* right, size_t count);

/// Whether `decodePlainStereoByVectors` can be called here.
bool processorDecodesByVectors();

/// Begins what `decodePlainFrames` does for two channels, four frames at a time. Answers how many
/// frames it did; fewer than four are left.
size_t decodePlainStereoByVectors(const std::byte* from, size_t sample_bytes, double* left,
                                  double* right, size_t count);

}  // namespace velmor::render
