// What a file's format code means for the disc.
#pragma once

#include <string>

namespace velmor::disc {

/// Bits of an integer sample that is stored without loss; 0 for floating point and lossy coding.
/// `format` is libsndfile's.
int integerBits(int format);
/// For people: "24 bit", "32 bit float", "Vorbis".
std::string codingName(int format);
/// For people: "WAV, 24 bit", "AIFF, 32 bit float", "Ogg, Vorbis".
std::string formatName(int format);

}  // namespace velmor::disc
