#include "tests/host/render/burn/terminal_run.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace burn_test {

namespace {

constexpr int kLongestWait = 20'000;  // milliseconds without a word

}  // namespace

TerminalRun::TerminalRun(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
  arguments.push_back(nullptr);
  process_ = forkpty(&terminal_, nullptr, nullptr, nullptr);
  if (process_ != 0) return;
  execv(arguments[0], arguments.data());
  std::_Exit(127);
}

TerminalRun::~TerminalRun() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  if (terminal_ >= 0) close(terminal_);
}

bool TerminalRun::ReadSome() {
  pollfd waiting{terminal_, POLLIN, 0};
  if (poll(&waiting, 1, kLongestWait) != 1) return false;
  char block[4096];
  const ssize_t got = read(terminal_, block, sizeof block);
  closed_ = got <= 0;
  if (closed_) return false;
  output_.append(block, static_cast<size_t>(got));
  return true;
}

bool TerminalRun::WaitFor(const std::string& text) {
  for (;;) {
    const size_t at = output_.find(text, looked_at_);
    if (at != std::string::npos) {
      looked_at_ = at + text.size();
      return true;
    }
    if (!ReadSome()) return false;
  }
}

void TerminalRun::Type(const std::string& text) const {
  if (write(terminal_, text.data(), text.size()) < 0) std::abort();
}

int TerminalRun::Finish() {
  while (ReadSome()) {
  }
  // Who has closed the terminal ends by itself; who has gone silent does not.
  if (!closed_) kill(process_, SIGKILL);
  int status = 0;
  waitpid(process_, &status, 0);
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace burn_test
