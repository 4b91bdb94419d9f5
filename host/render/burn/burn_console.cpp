#include "host/render/burn/burn_console.h"

#include <algorithm>
#include <cstdio>

#include "disc/terminal/progress_bar.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/terminal/messages.h"
#include "host/render/terminal/questions.h"

namespace velmor::render {

namespace {

using recording::MessageKind;
using recording::Phase;

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

disc::ProgressLine progressLine(const recording::BurnProgress& progress) {
  disc::ProgressLine line;
  line.what = wordFor(progress.phase);
  if (!hasLength(progress.phase)) return line;
  line.part = progress.fraction;
  if (progress.track > 0) {
    line.details =
        "track " + std::to_string(progress.track) + " of " + std::to_string(progress.tracks);
  }
  if (progress.speed > 0.0) {
    char speed[64];
    snprintf(speed, sizeof(speed), "%s%.1fx", line.details.empty() ? "" : ", ", progress.speed);
    line.details += speed;
    const auto left = static_cast<double>(progress.sectors_total - progress.sectors_done);
    line.seconds_left = left / disc::kSectorsPerSecond / progress.speed;
  }
  return line;
}

BurnConsole::BurnConsole(bool quiet) : m_quiet(quiet), m_bar(!quiet) {}

bool BurnConsole::mayBlank(const std::string& question) {
  m_bar.clear();
  return canAskQuestions() && askYesOrNo(question);
}

void BurnConsole::progress(const recording::BurnProgress& progress) {
  if (progress.phase == m_phase && !m_bar.due()) return;
  m_phase = progress.phase;
  m_bar.draw(progressLine(progress));
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
  m_bar.clear();
  if (!m_quiet) printMessage(text);
}

void BurnConsole::warn(const std::string& text) {
  m_bar.clear();
  if (!m_quiet) printWarning(text);
}

void BurnConsole::fail(const std::string& text) {
  m_bar.clear();
  printMessage(text);
}

}  // namespace velmor::render
