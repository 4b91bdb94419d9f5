// One burn: checks the session and the disc, blanks, writes, compares, and tells how it ended.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "abi/disc_recording.h"
#include "disc/cd_text/disc_texts.h"
#include "host/recording/burn/recorder.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::recording {

class BurnRun {
 public:
  /// `recorder` and what `options` points to must outlive the run. `drive` is the recorder's name
  /// for messages.
  BurnRun(Recorder& recorder, const std::string& drive, const DiscBurnProperties& properties,
          const RecordingOptions& options);

  /// Burns `count` tracks, and compares where that is wanted; once per object. A failure is not
  /// thrown but stands in the outcome. What the user interface throws is thrown on, once the drive
  /// has stopped.
  Outcome run(const DiscTrack* tracks, int count);

 private:
  bool simulate() const { return m_properties.testing || m_options.dry_run; }
  bool cancelWanted() const { return m_options.cancel != nullptr && m_options.cancel->load(); }
  void say(MessageKind kind, const std::string& text);
  void burn(const DiscTrack* tracks, int count);
  std::vector<std::string> prepareTexts(const SessionPlan& plan);
  DiscInDrive prepareDisc(const SessionPlan& plan);
  void blank(const DiscInDrive& medium);
  void followBlanking();
  void prepareDrive();
  void write(const SessionPlan& plan, const DiscInDrive& before);
  void follow(SectorFeed& feed, const SessionPlan& plan);
  void stop();
  void conclude(const SectorFeed& feed, const SessionPlan& plan, const DiscInDrive& before);
  void compare(const SessionPlan& plan);
  void beginPhase(Phase phase);
  void report(BurnProgress progress);

  Recorder& m_recorder;
  std::string m_drive;
  DiscBurnProperties m_properties;
  RecordingOptions m_options;
  Outcome m_outcome;
  disc::DiscTexts m_texts;
  bool m_has_texts = false;
  std::vector<RecorderMessage> m_messages;
  Phase m_phase = Phase::kPreparing;
  std::chrono::steady_clock::time_point m_phase_began;
  int64_t m_phase_first_sector = 0;
};

}  // namespace velmor::recording
