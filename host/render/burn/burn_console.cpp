#include "host/render/burn/burn_console.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "disc/disc_time.h"
#include "host/render/terminal/messages.h"
#include "host/render/terminal/progress.h"
#include "host/render/terminal/questions.h"

namespace velmor::render {

namespace {

using recording::MessageKind;
using recording::Phase;

constexpr std::chrono::milliseconds kBetweenDrawings{150};

const char* wordFor(Phase phase) {
  switch (phase) {
    case Phase::kPreparing:
      return "Preparing the disc";
    case Phase::kBlanking:
      return "Erasing";
    case Phase::kLeadIn:
      return "Writing the lead-in";
    case Phase::kWriting:
      return "Burning";
    case Phase::kClosing:
      return "Closing the disc";
    case Phase::kComparing:
      return "Comparing";
  }
  return "Burning";
}

bool hasLength(Phase phase) {
  return phase == Phase::kBlanking || phase == Phase::kWriting || phase == Phase::kComparing;
}

}  // namespace

std::string progressLine(const recording::BurnProgress& progress) {
  std::string line = wordFor(progress.phase);
  if (!hasLength(progress.phase)) return line + " ...";
  const double part = std::clamp(progress.fraction, 0.0, 1.0);
  char text[64];
  snprintf(text, sizeof(text), " %3d %%", static_cast<int>(part * 100.0));
  line += " [" + progressBar(part) + "]" + text;
  if (progress.track > 0) {
    line += "  track " + std::to_string(progress.track) + " of " + std::to_string(progress.tracks);
  }
  if (progress.speed > 0.0) {
    const auto left = static_cast<double>(progress.sectors_total - progress.sectors_done);
    snprintf(text, sizeof(text), ", %.1fx, ", progress.speed);
    line += text + clockTime(left / kSectorsPerSecond / progress.speed) + " left";
  }
  return line;
}

BurnConsole::BurnConsole(bool quiet) : m_quiet(quiet), m_draws(!quiet && isatty(STDERR_FILENO)) {}

bool BurnConsole::mayBlank(const std::string& question) {
  takeBarAway();
  return canAskQuestions() && askYesOrNo(question);
}

void BurnConsole::progress(const recording::BurnProgress& progress) {
  const auto now = std::chrono::steady_clock::now();
  if (!m_draws) return;
  if (m_drawn && progress.phase == m_phase && now - m_last_drawing < kBetweenDrawings) return;
  m_phase = progress.phase;
  m_last_drawing = now;
  m_drawn = true;
  draw(progress);
}

void BurnConsole::draw(const recording::BurnProgress& progress) const {
  fprintf(stderr, "\r\033[K%s", progressLine(progress).c_str());
  fflush(stderr);
}

void BurnConsole::takeBarAway() {
  if (m_drawn) fputs("\r\033[K", stderr);
  m_drawn = false;
}

void BurnConsole::message(MessageKind kind, const std::string& text) {
  switch (kind) {
    case MessageKind::kNote:
      return say(text);
    case MessageKind::kWarning:
      return warn(text);
    case MessageKind::kFailure:
      return fail(text);
  }
}

void BurnConsole::say(const std::string& text) {
  takeBarAway();
  if (!m_quiet) printMessage(text);
}

void BurnConsole::warn(const std::string& text) {
  takeBarAway();
  if (!m_quiet) printWarning(text);
}

void BurnConsole::fail(const std::string& text) {
  takeBarAway();
  printMessage(text);
}

}  // namespace velmor::render
