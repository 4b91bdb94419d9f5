#include "tests/kit/child_process.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "tests/kit/fork.h"

namespace test_kit {

namespace {

/// What execve takes; the texts outlive it.
std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (const std::string& text : texts) pointers.push_back(const_cast<char*>(text.c_str()));
  pointers.push_back(nullptr);
  return pointers;
}

/// Closed at the end of its scope, and when a program is started.
struct Pipe {
  Pipe() {
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  }
  ~Pipe() {
    for (const int end : ends) {
      if (end >= 0) ::close(end);
    }
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  int takeReadEnd() { return std::exchange(ends[0], -1); }

  std::array<int, 2> ends{-1, -1};
};

/// Appends what has come; false when the pipe has ended.
bool append(int pipe, std::string& to, std::string& to_all) {
  std::array<char, 4096> some{};
  const ssize_t got = ::read(pipe, some.data(), some.size());
  if (got <= 0) return false;
  to.append(some.data(), static_cast<size_t>(got));
  to_all.append(some.data(), static_cast<size_t>(got));
  return true;
}

}  // namespace

std::vector<std::string> environmentWith(const std::vector<std::string>& settings) {
  std::vector<std::string> all = settings;
  for (char** each = environ; *each != nullptr; ++each) {
    const std::string setting = *each;
    const std::string name = setting.substr(0, setting.find('=') + 1);
    const bool replaced = std::any_of(settings.begin(), settings.end(),
                                      [&](const std::string& s) { return s.starts_with(name); });
    if (!replaced) all.push_back(setting);
  }
  return all;
}

std::string findProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return ::access(name.c_str(), X_OK) == 0 ? name : "";
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path != nullptr ? path : "") + ":/usr/games");
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string program = folder;
    program.append("/").append(name);
    if (::access(program.c_str(), X_OK) == 0) return program;
  }
  return "";
}

ChildProcess::ChildProcess(const std::vector<std::string>& arguments, const ProcessOptions& options)
    : m_stop_at(options.stop_at), m_limit(options.limit) {
  const std::string program = findProgram(arguments.at(0));
  if (program.empty()) return;
  Pipe out;
  Pipe error;
  // Everything that takes memory is done before the fork.
  const std::vector<char*> argv = pointersTo(arguments);
  const std::vector<char*> environment = pointersTo(options.environment);
  char* const* const surroundings = options.environment.empty() ? environ : environment.data();
  m_pid = forkInto([&] {
    ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
    ::dup2(out.ends[1], STDOUT_FILENO);
    ::dup2(error.ends[1], STDERR_FILENO);
    if (!options.folder.empty() && ::chdir(options.folder.c_str()) != 0) return 127;
    if (options.in_child != nullptr) options.in_child();
    ::execve(program.c_str(), argv.data(), surroundings);
    return 127;
  });
  m_pipes = {out.takeReadEnd(), error.takeReadEnd()};
}

ChildProcess::~ChildProcess() {
  if (m_pid >= 0) {
    ::kill(m_pid, SIGKILL);
    waitFor(m_pid);
  }
  for (const int pipe : m_pipes) {
    if (pipe >= 0) ::close(pipe);
  }
}

/// Reads both pipes until both end, the program is to be stopped, or its time is over.
void ChildProcess::collect(EndedProcess& ended) {
  std::array<pollfd, 2> waiting{pollfd{m_pipes[0], POLLIN, 0}, pollfd{m_pipes[1], POLLIN, 0}};
  const auto end = std::chrono::steady_clock::now() + m_limit;
  while (waiting[0].fd >= 0 || waiting[1].fd >= 0) {
    const bool printed = !m_stop_at.empty() && ended.all.find(m_stop_at) != std::string::npos;
    if (printed || std::chrono::steady_clock::now() > end) {
      ended.took_too_long = !printed;
      ::kill(m_pid, SIGKILL);
      return;
    }
    ::poll(waiting.data(), waiting.size(), 100);
    for (size_t i = 0; i < waiting.size(); ++i) {
      if (waiting[i].fd < 0 || waiting[i].revents == 0) continue;
      if (!append(waiting[i].fd, i == 0 ? ended.out : ended.err, ended.all)) waiting[i].fd = -1;
    }
  }
}

EndedProcess ChildProcess::wait() {
  EndedProcess ended;
  if (m_pid < 0) return ended;
  collect(ended);
  rusage used{};
  ended.status = waitFor(std::exchange(m_pid, -1), &used);
  ended.peak_kilobytes = used.ru_maxrss;
  return ended;
}

EndedProcess runProcess(const std::vector<std::string>& arguments, const ProcessOptions& options) {
  return ChildProcess(arguments, options).wait();
}

EndedProcess runShell(const std::string& line, const ProcessOptions& options) {
  return runProcess({"/bin/sh", "-c", line}, options);
}

}  // namespace test_kit
