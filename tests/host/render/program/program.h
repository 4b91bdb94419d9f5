// The real programs, run as a person runs them.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

#include "tests/kit/audio_files.h"
#include "tests/kit/child_process.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace render_test {

using test_kit::asImage;
using test_kit::AudioTags;
using test_kit::noise;
using test_kit::writeAudio;
using test_kit::writeFile;
using test_kit::writeFloatWav;
using test_kit::writeSparseWav;
using test_kit::writeWav;
using Ended = test_kit::EndedProcess;

/// A scratch folder whose files are named as arguments.
class Scratch : public test_kit::ScratchFolder {
 public:
  std::string operator/(const std::string& name) const { return file(name); }
};

/// A started program whose home folder is fresh and empty.
class Running {
 public:
  /// `limits`: run in the child before the program starts.
  Running(const std::string& program, const std::vector<std::string>& arguments,
          void (*limits)() = nullptr);

  pid_t pid() const { return m_process.pid(); }
  Ended wait() { return m_process.wait(); }

 private:
  Scratch m_home;
  test_kit::ChildProcess m_process;
};

/// velmor-render with these arguments, to its end.
Ended render(const std::vector<std::string>& arguments, void (*limits)() = nullptr);
/// Any program.
Ended run(const std::string& program, const std::vector<std::string>& arguments);
/// Whether a program of that name is installed.
bool isInstalled(const std::string& program);

/// The file's bytes; empty when there is no such file.
std::string readFile(const std::string& path);

}  // namespace render_test
