#include "tests/kit/terminal_run.h"

#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "tests/kit/fork.h"

namespace test_kit {

namespace {

constexpr int kLongestWait = 20'000;  // milliseconds without a word

}  // namespace

TerminalRun::TerminalRun(const std::vector<std::string>& command) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
  arguments.push_back(nullptr);
  m_process = forkpty(&m_terminal, nullptr, nullptr, nullptr);
  if (m_process != 0) return;
  takeSignalsAsUsual();
  execv(arguments[0], arguments.data());
  std::_Exit(127);
}

TerminalRun::~TerminalRun() {
  if (m_process > 0) {
    kill(m_process, SIGKILL);
    waitpid(m_process, nullptr, 0);
  }
  if (m_terminal >= 0) close(m_terminal);
}

bool TerminalRun::readSome() {
  pollfd waiting{m_terminal, POLLIN, 0};
  if (poll(&waiting, 1, kLongestWait) != 1) return false;
  char block[4096];
  const ssize_t got = read(m_terminal, block, sizeof block);
  m_closed = got <= 0;
  if (m_closed) return false;
  m_output.append(block, static_cast<size_t>(got));
  return true;
}

bool TerminalRun::waitFor(const std::string& text) {
  for (;;) {
    const size_t at = m_output.find(text, m_looked_at);
    if (at != std::string::npos) {
      m_looked_at = at + text.size();
      return true;
    }
    if (!readSome()) return false;
  }
}

void TerminalRun::type(const std::string& text) const {
  if (write(m_terminal, text.data(), text.size()) < 0) std::abort();
}

int TerminalRun::finish() {
  while (readSome()) {
  }
  // Who has closed the terminal ends by itself; who has gone silent does not.
  if (!m_closed) kill(m_process, SIGKILL);
  int status = 0;
  waitpid(m_process, &status, 0);
  m_process = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

}  // namespace test_kit
