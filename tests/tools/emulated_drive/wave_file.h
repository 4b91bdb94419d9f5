// Audio as the packaged programs take it.
#pragma once

#include <cstdint>
#include <string>

namespace velmor::emulated_drive {

inline void append(std::string& bytes, uint32_t value, int size) {
  for (int i = 0; i < size; ++i) {
    bytes += static_cast<char>(value >> 8 * i);
  }
}

/// A WAV file of 44100 Hz, 16 bits and two channels.
inline std::string wave(const std::string& audio) {
  const auto size = static_cast<uint32_t>(audio.size());
  std::string file = "RIFF";
  append(file, size + 36, 4);
  file += "WAVEfmt ";
  append(file, 16, 4);
  append(file, 1, 2);
  append(file, 2, 2);
  append(file, 44100, 4);
  append(file, 44100 * 4, 4);
  append(file, 4, 2);
  append(file, 16, 2);
  file += "data";
  append(file, size, 4);
  return file + audio;
}

}  // namespace velmor::emulated_drive
