// Files that hold plain integer samples, taken as they lie in the file: the decoder's own way leads
// through a buffer of 8 KiB, which costs several times what the samples do.
#pragma once

#include <cstddef>

namespace velmor::render {

/// Bytes of a sample where a file of libsndfile's `format` holds little-endian integers of 16, 24
/// or 32 bits; 0 for all that the decoder is needed for.
size_t plainSampleBytes(int format);

/// The doubles that the decoder would give, full scale 1.0, for one channel: the first sample of
/// `bytes` bytes (2 to 4) lies at `from`, each next one `stride` bytes on. Four bytes must be
/// readable at every sample, even where it has fewer.
void decodePlainSamples(const std::byte* from, size_t bytes, size_t stride, double* out,
                        size_t count);

}  // namespace velmor::render
