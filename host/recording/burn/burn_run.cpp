#include "host/recording/burn/burn_run.h"

#include <algorithm>
#include <cmath>

#include "host/recording/burn/disc_comparison.h"
#include "host/recording/burn/medium_words.h"
#include "host/recording/burn/sense.h"
#include "host/recording/disc_time.h"
#include "host/recording/refusal.h"
#include "host/recording/session/prepared_tracks.h"

namespace velmor::recording {
namespace {

/// Stopping a drive that closes its disc would spoil a disc that is all but done.
bool mayStop(Activity activity) {
  return activity == Activity::waiting || activity == Activity::lead_in ||
         activity == Activity::writing;
}

Phase phaseOf(Activity activity) {
  switch (activity) {
    case Activity::blanking:
      return Phase::blanking;
    case Activity::lead_in:
      return Phase::lead_in;
    case Activity::writing:
      return Phase::writing;
    case Activity::closing:
      return Phase::closing;
    case Activity::idle:
    case Activity::waiting:
      break;
  }
  return Phase::preparing;
}

/// A failure with what the drive said of it, if anything.
std::string withReason(const std::string& failure, const std::string& reason) {
  return reason.empty() ? failure : failure + " " + reason;
}

}  // namespace

BurnRun::BurnRun(Recorder& recorder, const std::string& drive, const DiscBurnProperties& properties,
                 const Options& options)
    : recorder_(recorder), drive_(drive), properties_(properties), options_(options) {}

void BurnRun::say(Severity severity, const std::string& text) {
  if (options_.attendant != nullptr) options_.attendant->message(severity, text);
}

void BurnRun::beginPhase(Phase phase) {
  phase_ = phase;
  phase_began_ = std::chrono::steady_clock::now();
  phase_first_sector_ = 0;
}

void BurnRun::report(Progress progress) {
  if (options_.attendant == nullptr) return;
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - phase_began_;
  progress.phase = phase_;
  if (progress.sectors_total > 0 && progress.fraction == 0.0)
    progress.fraction =
        static_cast<double>(progress.sectors_done) / static_cast<double>(progress.sectors_total);
  const auto done = static_cast<double>(progress.sectors_done - phase_first_sector_);
  if (passed.count() > 0.0) progress.speed = done / kSectorsPerSecond / passed.count();
  options_.attendant->progress(progress);
}

Outcome BurnRun::run(const DiscTrack* tracks, int count) {
  try {
    burn(tracks, count);
  } catch (const Refusal& refusal) {
    outcome_.failure = refusal.what();
    if (!outcome_.begun) outcome_.disc_state = "Nothing was written.";
  }
  if (!outcome_.failure.empty())
    say(Severity::failure,
        outcome_.failure + (outcome_.disc_state.empty() ? "" : " " + outcome_.disc_state));
  return outcome_;
}

void BurnRun::burn(const DiscTrack* tracks, int count) {
  beginPhase(Phase::preparing);
  const SessionPlan plan = planSession(tracks, count);
  const std::vector<std::string> warnings = prepareTexts(plan);
  const Medium before = prepareDisc(plan);
  prepareDrive();
  for (const std::string& warning : warnings) say(Severity::warning, warning);
  write(plan, before);
  if (outcome_.written && (properties_.verify || options_.verify)) compare(plan);
}

std::vector<std::string> BurnRun::prepareTexts(const SessionPlan& plan) {
  std::vector<std::string> warnings;
  if (options_.text_sheet.empty()) return warnings;
  texts_ = makeDiscTexts(readSheetTexts(options_.text_sheet), plan.tracks.size(), warnings);
  has_texts_ = true;
  return warnings;
}

Medium BurnRun::prepareDisc(const SessionPlan& plan) {
  Medium medium = recorder_.medium();
  if (judgeMedium(medium, properties_.overwrite) == MediumVerdict::needs_blanking) {
    checkRoom(medium.capacity_sectors, plan.sectors);
    blank(medium);
    medium = recorder_.medium();
    if (judgeMedium(medium, false) != MediumVerdict::ready)
      throw Refusal("The disc is not blank although the drive has blanked it.");
  }
  checkRoom(medium.free_sectors, plan.sectors);
  return medium;
}

void BurnRun::blank(const Medium& medium) {
  const std::string what = "The drive " + drive_ + " holds " + describeMedium(medium) + ".";
  // A test write leaves no trace, and blanking is one.
  if (simulate()) throw Refusal(what + " A test needs a blank disc, and does not blank one.");
  if (options_.attendant == nullptr ||
      !options_.attendant->mayBlank(what + " Erase all that is on it?"))
    throw Refusal(what + " It was not to be erased.");
  beginPhase(Phase::blanking);
  recorder_.takeMessages();
  recorder_.startBlanking();
  outcome_.begun = true;
  for (RecorderStatus status = recorder_.wait(); status.activity != Activity::idle;
       status = recorder_.wait()) {
    Progress progress;
    progress.fraction = status.fraction;
    progress.buffer_percent = status.buffer_percent;
    report(progress);
  }
  const std::string reason = explainMessages(recorder_.takeMessages(), SessionPlan());
  if (!recorder_.succeeded()) {
    outcome_.disc_state = "What was on it may be lost.";
    throw Refusal(withReason("The disc could not be blanked.", reason));
  }
  outcome_.disc_state = "The disc was blanked, and nothing was written on it.";
}

void BurnRun::prepareDrive() {
  if (simulate() && !recorder_.canTestWrite())
    throw Refusal("The drive " + drive_ +
                  " cannot make a test write on this disc; it would write it in earnest.");
  if (cancelWanted()) {
    outcome_.cancelled = true;
    throw Refusal("The burn was stopped before it began.");
  }
  const double speed = recorder_.setSpeed(options_.speed);
  if (options_.speed > 0.0 && speed > options_.speed * 1.05)
    say(Severity::warning,
        "The drive does not write this disc so slowly; it takes its slowest "
        "speed, about " +
            std::to_string(std::lround(speed)) + "x.");
}

void BurnRun::write(const SessionPlan& plan, const Medium& before) {
  const PreparedTracks prepared(plan);
  SectorFeed feed(plan, options_.cancel);
  recorder_.takeMessages();
  recorder_.startWriting(
      {&plan, has_texts_ ? &texts_ : nullptr, simulate(), properties_.appendable}, feed);
  outcome_.begun = true;
  beginPhase(Phase::preparing);
  try {
    follow(feed, plan);
  } catch (...) {
    stop();  // the recorder's worker reads from the feed as long as it runs
    throw;
  }
  conclude(feed, plan, before);
}

void BurnRun::stop() {
  bool stopped = false;
  for (RecorderStatus status = recorder_.wait(); status.activity != Activity::idle;
       status = recorder_.wait()) {
    if (stopped || !mayStop(status.activity)) continue;
    recorder_.cancel();
    stopped = true;
  }
}

void BurnRun::follow(SectorFeed& feed, const SessionPlan& plan) {
  bool stopped = false;
  for (;;) {
    const RecorderStatus status = recorder_.wait();
    const auto said = recorder_.takeMessages();
    messages_.insert(messages_.end(), said.begin(), said.end());
    if (status.activity == Activity::idle) return;
    if (!stopped && mayStop(status.activity) && (feed.failed() || cancelWanted())) {
      recorder_.cancel();
      stopped = true;
      outcome_.cancelled = !feed.failed();
    }
    if (phaseOf(status.activity) != phase_) {
      beginPhase(phaseOf(status.activity));
      phase_first_sector_ = feed.delivered();
    }
    Progress progress;
    progress.sectors_done = feed.delivered();
    progress.sectors_total = plan.sectors;
    progress.tracks = static_cast<int>(plan.tracks.size());
    progress.buffer_percent = status.buffer_percent;
    if (phase_ == Phase::writing)
      progress.track = plan.trackAt(std::max<int64_t>(progress.sectors_done - 1, 0)) + 1;
    report(progress);
  }
}

void BurnRun::conclude(const SectorFeed& feed, const SessionPlan& plan, const Medium& before) {
  if (feed.cancelled()) outcome_.cancelled = true;
  if (feed.failed())
    outcome_.failure = "The burn failed. " + feed.failure();
  else if (outcome_.cancelled)
    outcome_.failure = "The burn was stopped.";
  else if (!recorder_.succeeded())
    outcome_.failure = withReason("The burn failed.", explainMessages(messages_, plan));
  else if (!feed.complete())
    outcome_.failure = "The burn failed: the drive took " + minutesSecondsFrames(feed.delivered()) +
                       " of " + minutesSecondsFrames(plan.sectors) + ".";
  Medium after = recorder_.medium();
  after.rewritable = after.rewritable || before.rewritable;
  if (after.type.empty()) after.type = before.type;
  if (!outcome_.failure.empty()) {
    outcome_.disc_state = stateAfterFailure(after, simulate());
    return;
  }
  const std::string remark = explainMessages(messages_, plan);
  if (!remark.empty())
    say(Severity::warning, "The burn went through, but the drive had something to say. " + remark);
  if (cancelWanted())
    say(Severity::note, "The wish to stop came when all was written; the disc was completed.");
  (simulate() ? outcome_.tested : outcome_.written) = true;
  outcome_.disc_state = stateAfterSuccess(before, simulate(), properties_.appendable);
}

void BurnRun::compare(const SessionPlan& plan) {
  beginPhase(Phase::comparing);
  const PreparedForVerification prepared(plan);
  const auto tell = [this, &plan](int64_t done) {
    Progress progress;
    progress.sectors_done = done;
    progress.sectors_total = plan.sectors;
    progress.tracks = static_cast<int>(plan.tracks.size());
    progress.track = plan.trackAt(std::max<int64_t>(done - 1, 0)) + 1;
    report(progress);
    return !cancelWanted();
  };
  const Comparison comparison = compareDisc(recorder_, plan, tell);
  switch (comparison.verdict) {
    case Comparison::Verdict::equal:
      outcome_.compared = true;
      say(Severity::note, comparison.words);
      return;
    case Comparison::Verdict::different:
      outcome_.written = false;
      outcome_.failure = comparison.words;
      outcome_.disc_state = "The disc is written and closed, but not a good copy.";
      return;
    case Comparison::Verdict::undecided:
      say(Severity::warning, comparison.words);
      return;
  }
}

}  // namespace velmor::recording
