// A recorder without threads: every `wait` writes a few sectors.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "host/recording/burn/recorder.h"
#include "host/recording/refusal.h"
#include "tests/host/recording/programme.h"

namespace velmor::recording::testing {

/// What a drive and its disc are like, and what happens to them. Outlives the recorder.
struct DriveState {
  Medium medium{DiscState::blank, "CD-R", true, false, 359'849, 359'849};
  bool can_test_write = true;
  double slowest_speed = 4.0;
  bool blanks_well = true;
  int closing_steps = 0;                // that it takes when all is written
  int stopping_steps = 0;               // that it takes when it is cancelled
  int64_t flaw_at = -1;                 // sector that cannot be written
  int64_t fails_silently_at = -1;       // sector
  bool goes_on_with_zeros = false;      // and says that all went well, as recorders do
  std::string remark;                   // that it makes at the end of a burn
  int read_offset = 0;                  // frames by which it reads early
  int64_t unreadable_from = INT64_MAX;  // sector
  int64_t unreadable_to = INT64_MAX;    // sector behind the flaw

  Bytes disc;
  bool simulated = false;
  bool kept_open = false;
  int blankings = 0;
  int writings = 0;
  int cancels = 0;
  bool had_texts = false;
  DiscTexts texts;
  double speed = -1.0;
  std::vector<bool> releases;  // each with its wish to eject
};

class RecorderDouble final : public Recorder {
 public:
  explicit RecorderDouble(DriveState& state) : state_(state) {}

  Medium medium() override { return state_.medium; }
  bool canTestWrite() override { return state_.can_test_write; }
  double setSpeed(double speed) override {
    state_.speed = speed;
    return std::max(speed, state_.slowest_speed);
  }
  void startBlanking() override {
    ++state_.blankings;
    blanking_ = 3;
    good_ = state_.blanks_well;
    if (!good_) return;
    state_.disc.clear();
    state_.medium.state = DiscState::blank;
    state_.medium.free_sectors = state_.medium.capacity_sectors;
  }
  void startWriting(const Session& session, SectorFeed& feed) override {
    ++state_.writings;
    session_ = session;
    feed_ = &feed;
    state_.simulated = session.simulate;
    state_.kept_open = session.keep_open;
    state_.had_texts = session.texts != nullptr;
    if (session.texts != nullptr) state_.texts = *session.texts;
    good_ = true;
    written_ = 0;
  }
  RecorderStatus wait() override {
    if (blanking_ > 0) {
      --blanking_;
      return {Activity::blanking, 1.0 - blanking_ / 3.0, -1};
    }
    if (feed_ == nullptr && state_.cancels > 0 && state_.stopping_steps > 0) {
      --state_.stopping_steps;
      return {Activity::writing, 0.0, -1};
    }
    if (feed_ == nullptr) return {};
    if (written_ == session_.plan->sectors && state_.closing_steps-- > 0)
      return {Activity::closing, 0.0, -1};
    for (int i = 0; i < 100 && feed_ != nullptr && !atTheEnd(i); ++i) writeSector();
    if (feed_ == nullptr) return {};
    return {atTheEnd(1) ? Activity::closing : Activity::writing, 0.0, 80};
  }
  void cancel() override {
    ++state_.cancels;
    good_ = state_.goes_on_with_zeros;
    end();
  }
  bool succeeded() override { return good_; }
  bool readAudio(int64_t lba, int sectors, unsigned char* audio) override {
    if (lba + sectors > state_.unreadable_from && lba < state_.unreadable_to) return false;
    const int64_t first = lba * kSectorBytes + int64_t{state_.read_offset} * 4;
    for (int64_t i = 0; i < int64_t{sectors} * kSectorBytes; ++i) {
      const int64_t at = first + i;
      const bool there = at >= 0 && at < static_cast<int64_t>(state_.disc.size());
      audio[i] = there ? state_.disc[static_cast<size_t>(at)] : 0;
    }
    return true;
  }
  std::vector<RecorderMessage> takeMessages() override { return std::exchange(messages_, {}); }
  void release(bool eject) override { state_.releases.push_back(eject); }

 private:
  /// All is written, and the drive is to be seen closing the disc.
  bool atTheEnd(int step) const {
    return written_ == session_.plan->sectors && state_.closing_steps > 0 && step > 0;
  }
  void end() {
    feed_ = nullptr;
    if (state_.simulated) return;
    state_.medium.state = good_ && !state_.kept_open ? DiscState::closed : DiscState::appendable;
  }
  void writeSector() {
    if (written_ == session_.plan->sectors) {
      if (!state_.remark.empty()) messages_.push_back({true, state_.remark});
      return end();
    }
    unsigned char sector[kSectorBytes] = {};
    const auto track = static_cast<size_t>(session_.plan->trackAt(written_));
    if (!feed_->next(track, sector)) {
      if (!state_.goes_on_with_zeros) good_ = false;
      return end();
    }
    if (written_ == state_.fails_silently_at) {
      good_ = false;
      return end();
    }
    if (written_ == state_.flaw_at) {
      good_ = false;
      messages_.push_back({true, "SCSI error on write(" + std::to_string(written_) +
                                     ",13): [3 0C 00] Medium error. Write error."});
      return end();
    }
    if (!state_.simulated) state_.disc.insert(state_.disc.end(), sector, sector + kSectorBytes);
    ++written_;
  }

  DriveState& state_;
  Session session_;
  SectorFeed* feed_ = nullptr;
  int64_t written_ = 0;
  int blanking_ = 0;
  bool good_ = false;
  std::vector<RecorderMessage> messages_;
};

}  // namespace velmor::recording::testing
