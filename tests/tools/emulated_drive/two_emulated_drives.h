// A folder of drives of a test's own, with an album to burn.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "tools/emulated_drive/directory/drive_directory.h"

namespace velmor::emulated_drive {

inline std::string contentOf(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

inline void store(const std::filesystem::path& file, const std::string& content) {
  std::ofstream(file, std::ios::binary) << content;
}

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
    char name[] = "/tmp/velmor-emulated-drive-XXXXXX";
    ASSERT_NE(::mkdtemp(name), nullptr);
    m_root = name;
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
  void TearDown() override { std::filesystem::remove_all(m_root); }

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

  std::filesystem::path m_root;
  std::vector<DriveDirectory> m_drives;
};

}  // namespace velmor::emulated_drive
