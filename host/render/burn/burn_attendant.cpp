#include "host/render/burn/burn_attendant.h"

#include <algorithm>
#include <cstdio>

#include "disc/terminal/progress_bar.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/options/options.h"
#include "host/render/terminal/terminal.h"

namespace velmor::render {

namespace {

using recording::Phase;
using recording::Severity;

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

std::string progressLine(const recording::Progress& progress) {
  std::string line = wordFor(progress.phase);
  if (!hasLength(progress.phase)) return line + " ...";
  const double part = std::clamp(progress.fraction, 0.0, 1.0);
  char text[64];
  snprintf(text, sizeof(text), " %3d %%", static_cast<int>(part * 100.0));
  line += ' ' + disc::barText(part) + text;
  if (progress.track > 0) {
    line += "  track " + std::to_string(progress.track) + " of " + std::to_string(progress.tracks);
  }
  if (progress.speed > 0.0) {
    const auto left = static_cast<double>(progress.sectors_total - progress.sectors_done);
    snprintf(text, sizeof(text), ", %.1fx, ", progress.speed);
    line += text + disc::clockTime(left / disc::kSectorsPerSecond / progress.speed) + " left";
  }
  return line;
}

BurnAttendant::BurnAttendant(bool quiet) : m_quiet(quiet), m_bar(!quiet) {}

bool BurnAttendant::mayBlank(const std::string& question) {
  m_bar.clear();
  return somebodyIsThere() && askYesOrNo(question);
}

void BurnAttendant::progress(const recording::Progress& progress) {
  if (progress.phase == m_phase && !m_bar.due()) return;
  m_phase = progress.phase;
  m_bar.draw(progressLine(progress));
}

void BurnAttendant::message(Severity severity, const std::string& text) {
  switch (severity) {
    case Severity::kNote:
      return say(text);
    case Severity::kWarning:
      return warn(text);
    case Severity::kFailure:
      return fail(text);
  }
}

void BurnAttendant::say(const std::string& text) {
  m_bar.clear();
  if (!m_quiet) fprintf(stderr, "%s: %s\n", kProgram, text.c_str());
}

void BurnAttendant::warn(const std::string& text) {
  m_bar.clear();
  if (!m_quiet) fprintf(stderr, "%s: warning: %s\n", kProgram, text.c_str());
}

void BurnAttendant::fail(const std::string& text) {
  m_bar.clear();
  fprintf(stderr, "%s: %s\n", kProgram, text.c_str());
}

}  // namespace velmor::render
