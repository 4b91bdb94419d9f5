// WAV files, whole and in pieces.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace test_kit {

/// Numbers as files hold them, least or most significant byte first.
std::string little16(uint32_t value);
std::string little32(uint32_t value);
std::string big16(uint32_t value);
std::string big32(uint32_t value);

/// Id, size, body and, when the body is odd, a pad byte.
std::string riffChunk(std::string_view id, std::string_view body);
/// A RIFF file of `chunks`, in this order.
std::string riffFile(std::string_view chunks);
/// The format chunk of 16-bit stereo at 44100 Hz.
std::string formatChunk();
/// The data chunk of that many silent frames of 16-bit stereo.
std::string dataChunk(size_t frames);

/// What makes a WAV file of `bytes` bytes of 16-bit stereo at 44100 Hz when it stands before them.
std::string wavHeader(uintmax_t bytes);
/// The whole file.
std::string wavFile(const std::string& audio);

}  // namespace test_kit
