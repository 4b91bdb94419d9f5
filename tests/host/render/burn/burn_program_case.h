// The program, the module, the recording library and libburn, with two emulated drives.
#pragma once

#include <sys/wait.h>

#include <nlohmann/json.hpp>

#include "tests/tools/emulated_drive/recorder_directory.h"
#include "tests/tools/emulated_drive/wave_file.h"

namespace burn_test {

using Json = nlohmann::json;

class BurnProgramCase : public velmor::recorder::TwoDrives {
 protected:
  void SetUp() override {
    TwoDrives::SetUp();
    for (unsigned i = 0; i < 3; ++i) {
      velmor::recorder::store(m_root / ("song" + std::to_string(i + 1) + ".wav"),
                              velmor::recorder::wave(velmor::recorder::noise(i, 320)));
    }
  }

  static constexpr const char* kProgram = VELMOR_BINARY_DIR "/velmor-render-emulated";
  static constexpr const char* kShort = "song1.wav -o album.cue --burn ";
  static constexpr const char* kAlbum = "song1.wav song2.wav song3.wav -o album.cue --burn ";

  std::string environment() const {
    return "cd '" + m_root.string() + "'; export XDG_CONFIG_HOME='" + (m_root / "config").string() +
           "' VELMOR_RECORDER_DIR='" + (m_root / "drives").string() + "'; ";
  }
  /// Runs the program with nobody at the terminal; its exit status. What it printed is in
  /// `printed` and `said`.
  int render(const std::string& arguments, const std::string& before = "") {
    return shell(before + "'" + std::string(kProgram) + "' " + arguments);
  }
  int shell(const std::string& line) {
    velmor::recorder::store(m_root / "line.sh", environment() + line + "\n");
    const std::string command = "timeout 60 sh '" + (m_root / "line.sh").string() + "' >'" +
                                (m_root / "printed").string() + "' 2>'" +
                                (m_root / "said").string() + "' </dev/null";
    const int status = std::system(command.c_str());
    m_printed = velmor::recorder::contentOf(m_root / "printed");
    m_said = velmor::recorder::contentOf(m_root / "said");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// The same line for a terminal.
  std::vector<std::string> line(const std::string& arguments) const {
    return {"/bin/sh", "-c", environment() + "exec '" + std::string(kProgram) + "' " + arguments};
  }

  std::string image() const { return velmor::recorder::contentOf(m_root / "album.bin"); }
  bool exists(const std::string& name) const { return std::filesystem::exists(m_root / name); }
  std::string ini() const {
    return velmor::recorder::contentOf(m_root / "config" / "velmor" / "velmor-render.ini");
  }
  std::vector<int32_t> starts(int drive) const {
    std::vector<int32_t> starts;
    for (const auto& track : disc(drive).tracks) starts.push_back(track.start());
    return starts;
  }
  void insert(int drive, const std::optional<velmor::recorder::Disc>& disc) const {
    m_drives[static_cast<size_t>(drive)].saveDisc(disc);
    std::filesystem::remove(m_drives[static_cast<size_t>(drive)].trayFile());
  }
  static velmor::recorder::Disc closed(velmor::recorder::Disc disc = {}) {
    disc.state = velmor::recorder::DiscState::kComplete;
    disc.lead_out = 300;
    velmor::recorder::Track track;
    track.pregap_start = -150;
    track.indices = {0};
    disc.tracks = {track};
    return disc;
  }

  std::string m_printed, m_said;
};

}  // namespace burn_test
