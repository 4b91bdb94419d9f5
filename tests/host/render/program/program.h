// The real programs, run as a person runs them.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace render_test {

/// A folder of its own for one test; gone with the object.
class Scratch {
 public:
  Scratch();
  ~Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  std::string operator/(const std::string& name) const { return (m_path / name).string(); }
  /// The names of everything in it, sorted.
  std::vector<std::string> names() const;

 private:
  std::filesystem::path m_path;
};

struct Ended {
  int status = -1;  ///< exit status, or 128 and the signal
  std::string out, err;
  long peak_kilobytes = 0;
};

/// A started program with its output going to files.
class Running {
 public:
  /// `limits`: run in the child before the program starts.
  Running(const std::string& program, const std::vector<std::string>& arguments,
          void (*limits)() = nullptr);
  ~Running();
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  pid_t pid() const { return m_pid; }
  Ended wait();

 private:
  Scratch m_output;
  pid_t m_pid = -1;
};

/// velmor-render with these arguments, to its end.
Ended render(const std::vector<std::string>& arguments, void (*limits)() = nullptr);
/// Any program.
Ended run(const std::string& program, const std::vector<std::string>& arguments);
/// Whether a program of that name is installed.
bool isInstalled(const std::string& program);

std::string readFile(const std::string& path);
void writeFile(const std::string& path, const std::string& bytes);

}  // namespace render_test
