// Two emulated recorders in a folder of their own, for one test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "tests/host/recording/programme.h"
#include "tools/emulated_drive/directory/drive_directory.h"
#include "tools/emulated_drive/interpose/station.h"

namespace velmor::recording::testing {

class RecorderShelf {
 public:
  RecorderShelf() {
    std::string pattern = std::filesystem::temp_directory_path() / "velmor_recorders_XXXXXX";
    m_root = mkdtemp(pattern.data());
    for (int i = 0; i < 2; ++i) {
      std::filesystem::create_directory(folder(i));
      recorder::Settings settings;
      settings.device = address(i);
      settings.identity = {"ACME", i == 0 ? "BURNER ONE" : "BURNER TWO", "1.0"};
      drive(i).saveSettings(settings);
      drive(i).saveDisc(recorder::Disc());
    }
    setenv(recorder::kDirectoryVariable, m_root.c_str(), 1);
  }
  ~RecorderShelf() {
    unsetenv(recorder::kDirectoryVariable);
    std::filesystem::remove_all(m_root);
  }
  RecorderShelf(const RecorderShelf&) = delete;
  RecorderShelf& operator=(const RecorderShelf&) = delete;

  static std::string address(int i) { return "/dev/sr" + std::to_string(30 + i); }
  std::filesystem::path folder(int i) const { return m_root / ("drive" + std::to_string(i)); }
  recorder::DriveDirectory drive(int i) const { return recorder::DriveDirectory(folder(i)); }

  recorder::Disc disc(int i) const { return drive(i).disc().value(); }
  void insert(int i, const recorder::Disc& disc) const { drive(i).saveDisc(disc); }
  void empty(int i) const { drive(i).saveDisc(std::nullopt); }
  void change(int i, const std::function<void(recorder::Settings&)>& edit) const {
    recorder::Settings settings = drive(i).settings();
    edit(settings);
    drive(i).saveSettings(settings);
  }
  /// The audio that was recorded, from LBA 0.
  Bytes audio(int i) const {
    std::ifstream file(drive(i).audioFile(), std::ios::binary);
    Bytes bytes((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    constexpr size_t kPregap = size_t{disc::kSectorsBeforeTrack1} * disc::kBytesPerSector;
    if (bytes.size() <= kPregap) return {};
    bytes.erase(bytes.begin(), bytes.begin() + kPregap);
    return bytes;
  }

  static recorder::Disc rewritable() {
    recorder::Disc disc;
    disc.medium = recorder::Medium::kCdRw;
    return disc;
  }
  /// One track of four seconds, closed.
  static recorder::Disc closed(recorder::Disc disc = {}) {
    disc.state = recorder::DiscState::kComplete;
    disc.lead_out = disc::kShortestTrackSectors;
    recorder::Track track;
    track.pregap_start = -disc::kSectorsBeforeTrack1;
    track.indices = {0};
    disc.tracks = {track};
    return disc;
  }

 private:
  std::filesystem::path m_root;
};

}  // namespace velmor::recording::testing
