#include "tests/check/process.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sstream>

namespace velmor::check::test {

namespace {

constexpr auto kLimit = std::chrono::seconds(20);

std::vector<std::string> environmentFor(const std::string& folder) {
  const char* path = std::getenv("PATH");
  return {"PATH=" + std::string(path ? path : ""), "HOME=" + folder, "LC_ALL=C.UTF-8",
          "SDL_VIDEODRIVER=dummy", "SDL_AUDIODRIVER=dummy"};
}

std::vector<char*> pointers(std::vector<std::string>& texts) {
  std::vector<char*> list;
  list.reserve(texts.size() + 1);
  for (std::string& t : texts) list.push_back(t.data());
  list.push_back(nullptr);
  return list;
}

/// In the child, where other threads of the tests do not run: nothing here takes memory.
[[noreturn]] void become(const std::vector<char*>& argv, const std::vector<char*>& environment,
                         const char* folder, int out, int error) {
  const int nothing = ::open("/dev/null", O_RDONLY);
  ::dup2(nothing, 0);
  ::dup2(out, 1);
  ::dup2(error, 2);
  if (::chdir(folder) != 0) ::_exit(127);
  ::execve(argv[0], argv.data(), environment.data());
  ::_exit(127);
}

/// Reads both pipes until both end, `stopAt` was seen, or the time is over.
void collect(ProcessResult& result, std::array<pollfd, 2> pipes, const std::string& stop_at) {
  const auto end = std::chrono::steady_clock::now() + kLimit;
  while (pipes[0].fd >= 0 || pipes[1].fd >= 0) {
    if (std::chrono::steady_clock::now() > end) return;
    if (!stop_at.empty() && result.all.find(stop_at) != std::string::npos) return;
    ::poll(pipes.data(), pipes.size(), 100);
    for (size_t p = 0; p < pipes.size(); ++p) {
      if (pipes[p].fd < 0 || pipes[p].revents == 0) continue;
      std::array<char, 4096> some{};
      const ssize_t got = ::read(pipes[p].fd, some.data(), some.size());
      if (got <= 0) {
        pipes[p].fd = -1;
        continue;
      }
      result.all.append(some.data(), static_cast<size_t>(got));
      if (p == 0) result.out.append(some.data(), static_cast<size_t>(got));
    }
  }
}

}  // namespace

std::string findProgram(const std::string& name) {
  if (name.find('/') != std::string::npos) return ::access(name.c_str(), X_OK) == 0 ? name : "";
  const char* path = std::getenv("PATH");
  std::istringstream folders(std::string(path ? path : "") + ":/usr/games");
  for (std::string folder; std::getline(folders, folder, ':');) {
    std::string program = folder;
    program.append("/").append(name);
    if (::access(program.c_str(), X_OK) == 0) return program;
  }
  return "";
}

ProcessResult runProcess(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::string& stop_at) {
  ProcessResult result;
  std::vector<std::string> called = arguments;
  called[0] = findProgram(arguments[0]);
  std::array<int, 2> out{}, error{};
  if (called[0].empty() || ::pipe2(out.data(), O_CLOEXEC) != 0 ||
      ::pipe2(error.data(), O_CLOEXEC) != 0)
    return result;
  std::vector<std::string> environment = environmentFor(folder);
  const std::vector<char*> argv = pointers(called), envp = pointers(environment);
  const pid_t child = ::fork();
  if (child == 0) become(argv, envp, folder.c_str(), out[1], error[1]);
  ::close(out[1]);
  ::close(error[1]);
  collect(result, {pollfd{out[0], POLLIN, 0}, pollfd{error[0], POLLIN, 0}}, stop_at);
  ::close(out[0]);
  ::close(error[0]);
  int status = 0;
  for (int wait = 0; ::waitpid(child, &status, WNOHANG) == 0; ++wait) {
    if (wait == 20) ::kill(child, SIGKILL);
    ::usleep(wait < 20 && stop_at.empty() ? 1000 : 100);
  }
  result.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  return result;
}

}  // namespace velmor::check::test
