#include "host/recording/burn/burn_run.h"

#include <algorithm>
#include <cmath>

#include "disc/cd_text/disc_texts.h"
#include "disc/failure.h"
#include "disc/sheet/sheet_texts.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/recording/burn/disc_comparison.h"
#include "host/recording/burn/medium_words.h"
#include "host/recording/burn/sense.h"
#include "host/recording/session/album_layout.h"
#include "host/recording/session/prepared_tracks.h"

namespace velmor::recording {
namespace {

/// Whether a burn may be stopped during this activity. A drive that is closing the disc is not
/// stopped: the audio is complete by then, and an open disc cannot be played.
bool mayStop(Activity activity) {
  return activity == Activity::kWaiting || activity == Activity::kLeadIn ||
         activity == Activity::kWriting;
}

Phase phaseOf(Activity activity) {
  switch (activity) {
    case Activity::kBlanking:
      return Phase::kBlanking;
    case Activity::kLeadIn:
      return Phase::kLeadIn;
    case Activity::kWriting:
      return Phase::kWriting;
    case Activity::kClosing:
      return Phase::kClosing;
    case Activity::kIdle:
    case Activity::kWaiting:
      break;
  }
  return Phase::kPreparing;
}

/// A failure with what the drive said of it, if anything.
std::string withReason(const std::string& failure, const std::string& reason) {
  return reason.empty() ? failure : failure + ": " + reason;
}

}  // namespace

BurnRun::BurnRun(Recorder& recorder, const std::string& drive, const DiscBurnProperties& properties,
                 const RecordingOptions& options)
    : m_recorder(recorder), m_drive(drive), m_properties(properties), m_options(options) {}

void BurnRun::say(MessageKind kind, const std::string& text) {
  if (m_options.user_interface != nullptr) m_options.user_interface->message(kind, text);
}

void BurnRun::beginPhase(Phase phase) {
  m_phase = phase;
  m_phase_began = std::chrono::steady_clock::now();
  m_phase_first_sector = 0;
}

void BurnRun::report(BurnProgress progress) {
  if (m_options.user_interface == nullptr) return;
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - m_phase_began;
  progress.phase = m_phase;
  if (progress.sectors_total > 0 && progress.fraction == 0.0)
    progress.fraction =
        static_cast<double>(progress.sectors_done) / static_cast<double>(progress.sectors_total);
  const auto done = static_cast<double>(progress.sectors_done - m_phase_first_sector);
  if (passed.count() > 0.0) progress.speed = done / disc::kSectorsPerSecond / passed.count();
  m_options.user_interface->progress(progress);
}

Outcome BurnRun::run(const DiscTrack* tracks, int count) {
  try {
    burn(tracks, count);
  } catch (const Failure& refusal) {
    m_outcome.failure = refusal.what();
    if (!m_outcome.begun) m_outcome.disc_state = "nothing was written";
  }
  if (!m_outcome.failure.empty())
    say(MessageKind::kFailure,
        m_outcome.failure + (m_outcome.disc_state.empty() ? "" : "; " + m_outcome.disc_state));
  return m_outcome;
}

void BurnRun::burn(const DiscTrack* tracks, int count) {
  beginPhase(Phase::kPreparing);
  SessionPlan plan = planSession(tracks, count);
  if (!m_options.layout.empty()) cutByLayout(plan, m_options.layout);
  const std::vector<std::string> warnings = prepareTexts(plan);
  const DiscInDrive before = prepareDisc(plan);
  prepareDrive();
  for (const std::string& warning : warnings) say(MessageKind::kWarning, warning);
  write(plan, before);
  if (m_outcome.written && (m_properties.verify || m_options.verify)) compare(plan);
}

std::vector<std::string> BurnRun::prepareTexts(const SessionPlan& plan) {
  std::vector<std::string> warnings;
  if (m_options.text_sheet.empty()) return warnings;
  m_texts =
      disc::makeDiscTexts(disc::readSheetTexts(m_options.text_sheet), plan.tracks.size(), warnings);
  m_has_texts = true;
  return warnings;
}

DiscInDrive BurnRun::prepareDisc(const SessionPlan& plan) {
  DiscInDrive medium = m_recorder.medium();
  if (judgeMedium(medium, m_properties.overwrite) == MediumVerdict::kNeedsBlanking) {
    checkRoom(medium.capacity_sectors, plan.sectors);
    blank(medium);
    medium = m_recorder.medium();
    if (judgeMedium(medium, false) != MediumVerdict::kReady)
      throw Failure("the disc is not blank although the drive has blanked it; take another one");
  }
  checkRoom(medium.free_sectors, plan.sectors);
  return medium;
}

void BurnRun::blank(const DiscInDrive& medium) {
  const std::string what = "drive " + disc::inQuotes(m_drive) + " holds " + describeMedium(medium);
  // A test write must leave the disc as it was, and blanking would change it.
  if (simulate())
    throw Failure("the " + what + ": a test needs a blank disc, and does not blank one");
  if (m_options.user_interface == nullptr ||
      !m_options.user_interface->mayBlank("The " + what + ". Erase all that is on it?"))
    throw Failure("the " + what + ", which was not to be erased");
  beginPhase(Phase::kBlanking);
  m_recorder.takeMessages();
  m_recorder.startBlanking();
  m_outcome.begun = true;
  try {
    followBlanking();
  } catch (...) {
    stop();
    throw;
  }
  const std::string reason = explainMessages(m_recorder.takeMessages(), SessionPlan());
  if (!m_recorder.succeeded()) {
    m_outcome.disc_state = "what was on it may be lost";
    throw Failure(withReason("the disc could not be blanked", reason));
  }
  m_outcome.disc_state = "the disc was blanked, and nothing was written on it";
}

void BurnRun::followBlanking() {
  for (RecorderStatus status = m_recorder.wait(); status.activity != Activity::kIdle;
       status = m_recorder.wait()) {
    BurnProgress progress;
    progress.fraction = status.fraction;
    progress.buffer_percent = status.buffer_percent;
    report(progress);
  }
}

void BurnRun::prepareDrive() {
  if (simulate() && !m_recorder.canTestWrite())
    throw Failure("the drive " + disc::inQuotes(m_drive) +
                  " cannot make a test write on this disc: it would write it in earnest");
  if (cancelWanted()) {
    m_outcome.cancelled = true;
    throw Failure("the burn was stopped before it began");
  }
  const double speed = m_recorder.setSpeed(m_options.speed);
  if (m_options.speed > 0.0 && speed > m_options.speed * 1.05)
    say(MessageKind::kWarning,
        "the drive does not write this disc so slowly; it takes its slowest speed, about " +
            std::to_string(std::lround(speed)) + "x");
}

void BurnRun::write(const SessionPlan& plan, const DiscInDrive& before) {
  const PreparedTracks prepared(plan);
  SectorFeed feed(plan, m_options.cancel);
  m_recorder.takeMessages();
  m_recorder.startWriting(
      {&plan, m_has_texts ? &m_texts : nullptr, simulate(), m_properties.appendable}, feed);
  m_outcome.begun = true;
  beginPhase(Phase::kPreparing);
  try {
    follow(feed, plan);
  } catch (...) {
    stop();  // before `feed` goes: the recorder's worker thread reads from it as long as it runs
    feed.settle();
    throw;
  }
  conclude(feed, plan, before);
}

void BurnRun::stop() {
  bool stopped = false;
  for (RecorderStatus status = m_recorder.wait(); status.activity != Activity::kIdle;
       status = m_recorder.wait()) {
    if (stopped || !mayStop(status.activity)) continue;
    m_recorder.cancel();
    stopped = true;
  }
}

void BurnRun::follow(SectorFeed& feed, const SessionPlan& plan) {
  bool stopped = false;
  for (;;) {
    const RecorderStatus status = m_recorder.wait();
    const auto said = m_recorder.takeMessages();
    m_messages.insert(m_messages.end(), said.begin(), said.end());
    if (status.activity == Activity::kIdle) return;
    if (!stopped && mayStop(status.activity) && (feed.failed() || cancelWanted())) {
      m_recorder.cancel();
      stopped = true;
      m_outcome.cancelled = !feed.failed();
    }
    if (phaseOf(status.activity) != m_phase) {
      beginPhase(phaseOf(status.activity));
      m_phase_first_sector = feed.delivered();
    }
    BurnProgress progress;
    progress.sectors_done = feed.delivered();
    progress.sectors_total = plan.sectors;
    progress.tracks = static_cast<int>(plan.tracks.size());
    progress.buffer_percent = status.buffer_percent;
    if (m_phase == Phase::kWriting)
      progress.track = plan.trackAt(std::max<int64_t>(progress.sectors_done - 1, 0)) + 1;
    report(progress);
  }
}

void BurnRun::conclude(const SectorFeed& feed, const SessionPlan& plan, const DiscInDrive& before) {
  feed.settle();
  if (feed.cancelled()) m_outcome.cancelled = true;
  if (feed.failed())
    m_outcome.failure = "the burn failed: " + feed.failure();
  else if (m_outcome.cancelled)
    m_outcome.failure = "the burn was stopped";
  else if (!m_recorder.succeeded())
    m_outcome.failure = withReason("the burn failed", explainMessages(m_messages, plan));
  else if (!feed.complete())
    m_outcome.failure = "the burn failed: the drive took " + disc::msfText(feed.delivered()) +
                        " of " + disc::msfText(plan.sectors);
  DiscInDrive after = m_recorder.medium();
  after.rewritable = after.rewritable || before.rewritable;
  if (!m_outcome.failure.empty()) {
    m_outcome.disc_state = stateAfterFailure(after, simulate());
    return;
  }
  const std::string remark = explainMessages(m_messages, plan);
  if (!remark.empty())
    say(MessageKind::kWarning,
        "the burn went through, but the drive had something to say: " + remark);
  if (cancelWanted())
    say(MessageKind::kNote, "the wish to stop came when all was written; the disc was completed");
  (simulate() ? m_outcome.tested : m_outcome.written) = true;
  m_outcome.disc_state = stateAfterSuccess(before, simulate(), m_properties.appendable);
}

void BurnRun::compare(const SessionPlan& plan) {
  beginPhase(Phase::kComparing);
  const PreparedForVerification prepared(plan);
  const auto tell = [this, &plan](int64_t done) {
    BurnProgress progress;
    progress.sectors_done = done;
    progress.sectors_total = plan.sectors;
    progress.tracks = static_cast<int>(plan.tracks.size());
    progress.track = plan.trackAt(std::max<int64_t>(done - 1, 0)) + 1;
    report(progress);
    return !cancelWanted();
  };
  const Comparison comparison = compareDisc(m_recorder, plan, tell);
  switch (comparison.verdict) {
    case Comparison::Verdict::kEqual:
      m_outcome.compared = true;
      say(MessageKind::kNote, comparison.words);
      return;
    case Comparison::Verdict::kDifferent:
      m_outcome.written = false;
      m_outcome.failure = comparison.words;
      m_outcome.disc_state = "the disc is written and closed, but not a good copy";
      return;
    case Comparison::Verdict::kUndecided:
      say(MessageKind::kWarning, comparison.words);
      return;
  }
}

}  // namespace velmor::recording
