#include "tests/host/render/program/program.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace render_test {

namespace fs = std::filesystem;

Scratch::Scratch() {
  std::string pattern = (fs::temp_directory_path() / "velmor-render-test-XXXXXX").string();
  if (!mkdtemp(pattern.data())) abort();
  m_path = pattern;
}

Scratch::~Scratch() {
  std::error_code ignored;
  fs::remove_all(m_path, ignored);
}

std::vector<std::string> Scratch::names() const {
  std::vector<std::string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(m_path)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

Running::Running(const std::string& program, const std::vector<std::string>& arguments,
                 void (*limits)()) {
  std::vector<char*> argv;
  std::string name = program;
  std::vector<std::string> copies = arguments;
  argv.push_back(name.data());
  for (std::string& argument : copies) argv.push_back(argument.data());
  argv.push_back(nullptr);
  const std::string out = m_output / "out";
  const std::string err = m_output / "err";
  m_pid = fork();
  if (m_pid != 0) return;
  const int nothing = open("/dev/null", O_RDONLY);
  dup2(nothing, STDIN_FILENO);
  dup2(open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
  dup2(open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
  setenv("HOME", (m_output / "home").c_str(), 1);
  if (limits) limits();
  execvp(argv[0], argv.data());
  _exit(127);
}

Running::~Running() {
  if (m_pid < 0) return;
  kill(m_pid, SIGKILL);
  waitpid(m_pid, nullptr, 0);
}

Ended Running::wait() {
  Ended ended;
  int status = 0;
  rusage usage{};
  wait4(m_pid, &status, 0, &usage);
  m_pid = -1;
  ended.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  ended.peak_kilobytes = usage.ru_maxrss;
  ended.out = readFile(m_output / "out");
  ended.err = readFile(m_output / "err");
  return ended;
}

Ended render(const std::vector<std::string>& arguments, void (*limits)()) {
  return Running(VELMOR_BINARY_DIR "/velmor-render", arguments, limits).wait();
}

Ended run(const std::string& program, const std::vector<std::string>& arguments) {
  return Running(program, arguments).wait();
}

bool isInstalled(const std::string& program) {
  std::istringstream folders(getenv("PATH"));
  for (std::string folder; std::getline(folders, folder, ':');) {
    if (access((folder + "/" + program).c_str(), X_OK) == 0) return true;
  }
  return false;
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace render_test
