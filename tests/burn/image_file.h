// An image file of noise for the class tests.
#pragma once

#include <string>

#include "tests/fake_host/files.h"

namespace burn_test {

/// Bytes in which no two stretches are alike.
inline std::string Noise(size_t count) {
  std::string bytes(count, '\0');
  unsigned seed = 11;
  for (char& byte : bytes) {
    seed = seed * 1664525u + 1013904223u;
    byte = static_cast<char>(seed >> 24);
  }
  return bytes;
}

struct ImageFile {
  explicit ImageFile(size_t count) : bytes(Noise(count)) { fake_host::WriteText(path, bytes); }

  fake_host::TempFolder folder;
  const std::string path = folder.File("disc.bin");
  const std::string bytes;
};

}  // namespace burn_test
