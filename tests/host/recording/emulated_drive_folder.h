// Two emulated drives in a folder of their own, for one test.
#pragma once

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "tests/host/recording/programme.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"
#include "tools/emulated_drive/directory/drive_directory.h"
#include "tools/emulated_drive/interpose/device_table.h"

namespace velmor::recording::testing {

class EmulatedDriveFolder {
 public:
  EmulatedDriveFolder() {
    for (int i = 0; i < 2; ++i) {
      std::filesystem::create_directory(folder(i));
      emulated_drive::DriveSettings settings;
      settings.device = address(i);
      settings.identity = {"ACME", i == 0 ? "BURNER ONE" : "BURNER TWO", "1.0"};
      drive(i).saveSettings(settings);
      drive(i).saveDisc(emulated_drive::EmulatedDisc());
    }
    setenv(emulated_drive::kDirectoryVariable, m_root.path().c_str(), 1);
  }
  ~EmulatedDriveFolder() { unsetenv(emulated_drive::kDirectoryVariable); }
  EmulatedDriveFolder(const EmulatedDriveFolder&) = delete;
  EmulatedDriveFolder& operator=(const EmulatedDriveFolder&) = delete;

  static std::string address(int i) { return "/dev/sr" + std::to_string(30 + i); }
  std::filesystem::path folder(int i) const { return m_root / ("drive" + std::to_string(i)); }
  emulated_drive::DriveDirectory drive(int i) const {
    return emulated_drive::DriveDirectory(folder(i));
  }

  emulated_drive::EmulatedDisc disc(int i) const { return drive(i).disc().value(); }
  void insert(int i, const emulated_drive::EmulatedDisc& disc) const { drive(i).saveDisc(disc); }
  void empty(int i) const { drive(i).saveDisc(std::nullopt); }
  void change(int i, const std::function<void(emulated_drive::DriveSettings&)>& edit) const {
    emulated_drive::DriveSettings settings = drive(i).settings();
    edit(settings);
    drive(i).saveSettings(settings);
  }
  /// The audio that was recorded, from LBA 0.
  Bytes audio(int i) const {
    const std::string file = test_kit::contentOf(drive(i).audioFile());
    constexpr size_t kPregap = size_t{disc::kSectorsBeforeTrack1} * disc::kBytesPerSector;
    if (file.size() <= kPregap) return {};
    Bytes bytes(file.size() - kPregap);
    std::memcpy(bytes.data(), file.data() + kPregap, bytes.size());
    return bytes;
  }

  static emulated_drive::EmulatedDisc rewritable() {
    emulated_drive::EmulatedDisc disc;
    disc.medium = emulated_drive::MediumType::kCdRw;
    return disc;
  }
  /// One track of four seconds, closed.
  static emulated_drive::EmulatedDisc closed(emulated_drive::EmulatedDisc disc = {}) {
    disc.state = emulated_drive::DiscStatus::kComplete;
    disc.lead_out = disc::kShortestTrackSectors;
    emulated_drive::RecordedTrack track;
    track.pregap_start = -disc::kSectorsBeforeTrack1;
    track.indices = {0};
    disc.tracks = {track};
    return disc;
  }

 private:
  test_kit::ScratchFolder m_root;
};

}  // namespace velmor::recording::testing
