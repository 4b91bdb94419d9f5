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
      velmor::recorder::store(root / ("song" + std::to_string(i + 1) + ".wav"),
                              velmor::recorder::wave(velmor::recorder::noise(i, 320)));
    }
  }

  static constexpr const char* kProgram = VELMOR_BINARY_DIR "/velmor-render-emulated";
  static constexpr const char* kShort = "song1.wav -o album.cue --burn ";
  static constexpr const char* kAlbum = "song1.wav song2.wav song3.wav -o album.cue --burn ";

  std::string Environment() const {
    return "cd '" + root.string() + "'; export XDG_CONFIG_HOME='" + (root / "config").string() +
           "' VELMOR_RECORDER_DIR='" + (root / "drives").string() + "'; ";
  }
  /// Runs the program with nobody at the terminal; its exit status. What it printed is in
  /// `printed` and `said`.
  int Render(const std::string& arguments, const std::string& before = "") {
    return Shell(before + "'" + std::string(kProgram) + "' " + arguments);
  }
  int Shell(const std::string& line) {
    velmor::recorder::store(root / "line.sh", Environment() + line + "\n");
    const std::string command = "timeout 60 sh '" + (root / "line.sh").string() + "' >'" +
                                (root / "printed").string() + "' 2>'" + (root / "said").string() +
                                "' </dev/null";
    const int status = std::system(command.c_str());
    printed = velmor::recorder::contentOf(root / "printed");
    said = velmor::recorder::contentOf(root / "said");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  /// The same line for a terminal.
  std::vector<std::string> Line(const std::string& arguments) const {
    return {"/bin/sh", "-c", Environment() + "exec '" + std::string(kProgram) + "' " + arguments};
  }

  std::string Image() const { return velmor::recorder::contentOf(root / "album.bin"); }
  bool Exists(const std::string& name) const { return std::filesystem::exists(root / name); }
  std::string Ini() const {
    return velmor::recorder::contentOf(root / "config" / "velmor" / "velmor-render.ini");
  }
  std::vector<int32_t> Starts(int drive) const {
    std::vector<int32_t> starts;
    for (const auto& track : disc(drive).tracks) starts.push_back(track.start());
    return starts;
  }
  void Insert(int drive, const std::optional<velmor::recorder::Disc>& disc) const {
    drives[static_cast<size_t>(drive)].saveDisc(disc);
    std::filesystem::remove(drives[static_cast<size_t>(drive)].trayFile());
  }
  static velmor::recorder::Disc Closed(velmor::recorder::Disc disc = {}) {
    disc.state = velmor::recorder::DiscState::complete;
    disc.leadOut = 300;
    velmor::recorder::Track track;
    track.pregapStart = -150;
    track.indices = {0};
    disc.tracks = {track};
    return disc;
  }

  std::string printed, said;
};

}  // namespace burn_test
