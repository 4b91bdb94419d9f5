// An image file of noise for the class tests.
#pragma once

#include <string>

#include "tests/fake_host/files.h"

namespace burn_test {

inline constexpr int kSector = 2352;

struct ImageFile {
  explicit ImageFile(size_t count) : bytes(fake_host::Noise(count)) {
    fake_host::WriteText(path, bytes);
  }

  fake_host::TempFolder folder;
  const std::string path = folder.file("disc.bin");
  const std::string bytes;
};

}  // namespace burn_test
