// velmor-render as people start it: a process of its own, with what it prints and leaves behind.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "tests/input/sound_files.h"

namespace velmor::render::test {

struct Outcome {
  int status = -1;  ///< as a shell shows it: 128 and the signal's number for a killed process
  std::string out, err;
  int64_t peak_kib = 0;  ///< largest resident memory
};

/// A started program. `setup` runs in the child before it.
class Process {
 public:
  Process(const std::vector<std::string>& command, const std::function<void()>& setup = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  pid_t id() const { return m_id; }
  bool isRunning();
  Outcome wait();

 private:
  Folder m_folder;  ///< for what it prints
  pid_t m_id = -1;
  bool m_reaped = false;
  Outcome m_outcome;
};

/// The path of the program under test.
std::string renderProgram();

/// Runs velmor-render to its end.
Outcome run(const std::vector<std::string>& arguments, const std::function<void()>& setup = {});

/// Runs a program that is found along the path; a status of 127 says that there is none.
Outcome runTool(const std::vector<std::string>& command);
bool hasTool(const std::string& name);

std::string contentsOf(const std::string& path);
/// Names in a folder, hidden ones too, in order.
std::vector<std::string> namesIn(const std::string& folder);

/// 16-bit stereo music of `frames` frames that differs from frame to frame and channel to channel.
std::vector<int16_t> music(int64_t frames);
/// Writes `music` as a WAV; returns its path.
std::string writeSong(const Folder& folder, const std::string& name, double seconds);
/// A silent 16-bit WAV whose samples take no space on the disk; returns its path.
std::string writeSparseWav(const Folder& folder, const std::string& name, int seconds);

/// The image a disc of these samples has: padded to whole sectors.
std::string imageOf(std::vector<int16_t> samples);

/// Lines of a sheet without their ends; fails when one has no CRLF.
std::vector<std::string> linesOf(const std::string& sheet);

}  // namespace velmor::render::test
