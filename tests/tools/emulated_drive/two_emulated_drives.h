// Two emulated drives in a folder of a test's own, and audio to burn.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "tests/kit/scratch_folder.h"
#include "tests/kit/wav.h"
#include "tests/kit/whole_files.h"
#include "tools/emulated_drive/directory/drive_directory.h"

namespace velmor::emulated_drive {

using test_kit::contentOf;
using test_kit::wavFile;
using test_kit::writeFile;

/// Audio that no other sector resembles.
inline std::string noise(unsigned seed, int sectors) {
  std::mt19937 random(seed);
  std::string audio(static_cast<std::size_t>(sectors) * kSectorBytes, '\0');
  for (char& byte : audio) {
    byte = static_cast<char>(random());
  }
  return audio;
}

/// Two drives with blank discs in a fresh directory, gone at the end of the test.
class TwoEmulatedDrives : public ::testing::Test {
 protected:
  void SetUp() override {
    for (int i = 0; i < 2; ++i) {
      const DriveDirectory directory(m_root / "drives" / ("drive0" + std::to_string(i)));
      std::filesystem::create_directories(directory.path());
      DriveSettings settings;
      settings.device = device(i);
      settings.identity.product = "TEST DRIVE " + std::to_string(i + 1);
      directory.saveSettings(settings);
      directory.saveDisc(EmulatedDisc{});
      m_drives.push_back(directory);
    }
  }

  static std::string device(int drive) { return "/dev/sr" + std::to_string(30 + drive); }

  /// What the disc in a drive holds from LBA 0 to its lead-out.
  [[nodiscard]] std::string burned(int drive) const {
    const DriveDirectory& directory = m_drives[static_cast<std::size_t>(drive)];
    const std::string all = contentOf(directory.audioFile());
    const std::size_t pregap = std::size_t{kFirstPregap} * kSectorBytes;
    return all.size() < pregap ? std::string() : all.substr(pregap);
  }
  [[nodiscard]] EmulatedDisc disc(int drive) const {
    return m_drives[static_cast<std::size_t>(drive)].disc().value();
  }
  void change(int drive, void (*what)(DriveSettings&)) const {
    const DriveDirectory& directory = m_drives[static_cast<std::size_t>(drive)];
    DriveSettings settings = directory.settings();
    what(settings);
    directory.saveSettings(settings);
  }

  const test_kit::ScratchFolder m_scratch;
  const std::filesystem::path m_root = m_scratch.path();
  std::vector<DriveDirectory> m_drives;
};

}  // namespace velmor::emulated_drive
