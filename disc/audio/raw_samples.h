// Files without a header, as cue sheets name them.
#pragma once

namespace velmor::disc {

/// What lies in a file that tells nothing of itself: a disc's samples, 16 bits of two channels at
/// 44100 Hz, in either byte order.
enum class RawSamples {
  kNone,  ///< the file has a header
  kLittleEndian,
  kBigEndian
};

}  // namespace velmor::disc
