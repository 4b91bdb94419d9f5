#include "tests/render/render_program.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velmor::render::test {

namespace fs = std::filesystem;

namespace {

void sendTo(const std::string& path, int descriptor) {
  const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (fd < 0 || dup2(fd, descriptor) < 0) _exit(126);
  close(fd);
}

[[noreturn]] void become(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  for (const std::string& text : command) arguments.push_back(const_cast<char*>(text.c_str()));
  arguments.push_back(nullptr);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const std::function<void()>& setup) {
  const std::string out = m_folder.path("out");
  const std::string err = m_folder.path("err");
  const std::string config = m_folder.path("config");
  m_id = fork();
  if (m_id < 0) ADD_FAILURE() << strerror(errno);
  if (m_id != 0) return;
  setenv("XDG_CONFIG_HOME", config.c_str(), 1);
  sendTo(out, STDOUT_FILENO);
  sendTo(err, STDERR_FILENO);
  if (setup) setup();
  become(command);
}

Process::~Process() {
  if (m_id <= 0 || m_reaped) return;
  kill(m_id, SIGKILL);
  wait();
}

bool Process::isRunning() {
  siginfo_t info{};
  return !m_reaped &&
         waitid(P_PID, static_cast<id_t>(m_id), &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
         info.si_pid == 0;
}

Outcome Process::wait() {
  if (m_reaped) return m_outcome;
  int status = 0;
  rusage usage{};
  while (wait4(m_id, &status, 0, &usage) < 0 && errno == EINTR) {
  }
  m_reaped = true;
  m_outcome = {WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
               contentsOf(m_folder.path("out")), contentsOf(m_folder.path("err")), usage.ru_maxrss};
  return m_outcome;
}

std::string renderProgram() {
  return VELMOR_RENDER;
}

Outcome run(const std::vector<std::string>& arguments, const std::function<void()>& setup) {
  std::vector<std::string> command = {renderProgram()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return Process(command, setup).wait();
}

Outcome runTool(const std::vector<std::string>& command) {
  return Process(command).wait();
}

bool hasTool(const std::string& name) {
  return runTool({"sh", "-c", "command -v " + name}).status == 0;
}

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> namesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder)) {
    names.push_back(entry.path().filename().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

std::vector<int16_t> music(int64_t frames) {
  std::vector<int16_t> samples(static_cast<size_t>(frames) * 2);
  uint32_t state = 1;
  int16_t* const end = samples.data() + samples.size();
  for (int16_t* sample = samples.data(); sample != end; ++sample) {
    state = state * 1664525 + 1013904223;
    *sample = static_cast<int16_t>(state >> 16);
  }
  if (frames > 1) {  // full scale in both directions
    samples[0] = 32767;
    samples[1] = -32768;
  }
  return samples;
}

std::string writeSong(const Folder& folder, const std::string& name, double seconds) {
  const std::string path = folder.path(name);
  writeShorts(path, {}, music(static_cast<int64_t>(seconds * 44100.0)));
  return path;
}

std::string writeSparseWav(const Folder& folder, const std::string& name, int seconds) {
  const uint32_t bytes = static_cast<uint32_t>(seconds) * 176400U;
  const std::string head =
      "WAVE" + riffChunk("fmt ", little16(1) + little16(2) + little32(44100) + little32(176400) +
                                     little16(4) + little16(16));
  const std::string path =
      folder.write(name, "RIFF" + little32(static_cast<uint32_t>(head.size()) + 8 + bytes) + head +
                             "data" + little32(bytes));
  fs::resize_file(path, fs::file_size(path) + bytes);
  return path;
}

std::string imageOf(std::vector<int16_t> samples) {
  while (samples.size() % 1176) samples.push_back(0);
  std::string bytes(samples.size() * 2, '\0');
  memcpy(bytes.data(), samples.data(), bytes.size());
  return bytes;
}

std::vector<std::string> linesOf(const std::string& sheet) {
  std::vector<std::string> lines;
  size_t from = 0;
  while (from < sheet.size()) {
    const size_t to = sheet.find("\r\n", from);
    if (to == std::string::npos) {
      ADD_FAILURE() << "a line of the sheet has no end: " << sheet.substr(from);
      break;
    }
    lines.push_back(sheet.substr(from, to - from));
    from = to + 2;
  }
  return lines;
}

}  // namespace velmor::render::test
