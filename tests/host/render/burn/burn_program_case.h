// The program, the module, the recording library and libburn, with two emulated drives.
#pragma once

#include <chrono>
#include <nlohmann/json.hpp>
#include <thread>

#include "tests/kit/child_process.h"
#include "tests/kit/whole_files.h"
#include "tests/tools/emulated_drive/two_emulated_drives.h"

namespace burn_test {

using Json = nlohmann::json;

class BurnProgramCase : public velmor::emulated_drive::TwoEmulatedDrives {
 protected:
  void SetUp() override {
    TwoEmulatedDrives::SetUp();
    for (unsigned i = 0; i < 3; ++i) {
      test_kit::writeFile(m_root / ("song" + std::to_string(i + 1) + ".wav"),
                          test_kit::wavFile(velmor::emulated_drive::noise(i, 320)));
    }
  }

  static constexpr const char* kProgram = VELMOR_BINARY_DIR "/velmor-render-emulated";
  static constexpr const char* kShort = "song1.wav -o album.cue --burn ";
  static constexpr const char* kAlbum = "song1.wav song2.wav song3.wav -o album.cue --burn ";

  std::string environment() const {
    return "cd '" + m_root.string() + "'; export XDG_CONFIG_HOME='" + (m_root / "config").string() +
           "' VELMOR_EMULATED_DRIVE_DIR='" + (m_root / "drives").string() + "'; ";
  }
  /// Runs the program with nobody at the terminal; its exit status. What it printed is in
  /// `m_printed` and `m_said`.
  int render(const std::string& arguments, const std::string& before = "") {
    return shell(before + "'" + std::string(kProgram) + "' " + arguments);
  }
  int shell(const std::string& line) {
    const test_kit::EndedProcess ended =
        test_kit::runShell(environment() + line, {.limit = std::chrono::seconds(60)});
    m_printed = ended.out;
    m_said = ended.err;
    return ended.status;
  }
  /// The same line for a terminal.
  std::vector<std::string> line(const std::string& arguments) const {
    return {"/bin/sh", "-c", environment() + "exec '" + std::string(kProgram) + "' " + arguments};
  }

  std::string image() const { return test_kit::contentOf(m_root / "album.bin"); }
  bool exists(const std::string& name) const { return std::filesystem::exists(m_root / name); }
  std::string ini() const {
    return test_kit::contentOf(m_root / "config" / "velmor" / "velmor-render.ini");
  }
  std::vector<int32_t> starts(int drive) const {
    std::vector<int32_t> starts;
    for (const auto& track : disc(drive).tracks) starts.push_back(track.start());
    return starts;
  }
  void insert(int drive, const std::optional<velmor::emulated_drive::EmulatedDisc>& disc) const {
    m_drives[static_cast<size_t>(drive)].saveDisc(disc);
    std::filesystem::remove(m_drives[static_cast<size_t>(drive)].trayFile());
  }
  /// Waits until the drive has begun to write; false when it has not within twenty seconds.
  [[nodiscard]] bool waitUntilBegun(int drive) const {
    using Clock = std::chrono::steady_clock;
    for (const auto end = Clock::now() + std::chrono::seconds(20); Clock::now() < end;) {
      if (disc(drive).state != velmor::emulated_drive::DiscStatus::kBlank) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
  }
  static velmor::emulated_drive::EmulatedDisc closed(
      velmor::emulated_drive::EmulatedDisc disc = {}) {
    disc.state = velmor::emulated_drive::DiscStatus::kComplete;
    disc.lead_out = 300;
    velmor::emulated_drive::RecordedTrack track;
    track.pregap_start = -150;
    track.indices = {0};
    disc.tracks = {track};
    return disc;
  }

  std::string m_printed, m_said;
};

}  // namespace burn_test
