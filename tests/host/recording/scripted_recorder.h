// A recorder without threads: every `wait` writes a few sectors.
#pragma once

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "disc/cd_text/disc_texts.h"
#include "disc/failure.h"
#include "disc/units/disc_units.h"
#include "host/recording/burn/recorder.h"
#include "tests/host/recording/programme.h"

namespace velmor::recording::testing {

/// What a drive and its disc are like, and what happens to them. Outlives the recorder.
struct ScriptedDrive {
  DiscInDrive medium{DiscCondition::kBlank, "CD-R", true, false, 359'849, 359'849};
  bool can_test_write = true;
  double slowest_speed = 4.0;
  bool blanks_well = true;
  int closing_steps = 0;                // that it takes when all is written
  int stopping_steps = 0;               // that it takes when it is cancelled
  int blanking_left = 0;                // steps of a blanking that is under way
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
  disc::DiscTexts texts;
  double speed = -1.0;
  std::vector<bool> releases;  // each with its wish to eject
};

class ScriptedRecorder final : public Recorder {
 public:
  explicit ScriptedRecorder(ScriptedDrive& state) : m_state(state) {}

  DiscInDrive medium() override { return m_state.medium; }
  bool canTestWrite() override { return m_state.can_test_write; }
  double setSpeed(double speed) override {
    m_state.speed = speed;
    return std::max(speed, m_state.slowest_speed);
  }
  void startBlanking() override {
    ++m_state.blankings;
    m_state.blanking_left = 3;
    m_good = m_state.blanks_well;
    if (!m_good) return;
    m_state.disc.clear();
    m_state.medium.state = DiscCondition::kBlank;
    m_state.medium.free_sectors = m_state.medium.capacity_sectors;
  }
  void startWriting(const Session& session, SectorFeed& feed) override {
    ++m_state.writings;
    m_session = session;
    m_feed = &feed;
    m_state.simulated = session.simulate;
    m_state.kept_open = session.keep_open;
    m_state.had_texts = session.texts != nullptr;
    if (session.texts != nullptr) m_state.texts = *session.texts;
    m_good = true;
    m_written = 0;
  }
  RecorderStatus wait() override {
    if (m_state.blanking_left > 0) {
      --m_state.blanking_left;
      return {Activity::kBlanking, 1.0 - m_state.blanking_left / 3.0, -1};
    }
    if (m_feed == nullptr && m_state.cancels > 0 && m_state.stopping_steps > 0) {
      --m_state.stopping_steps;
      return {Activity::kWriting, 0.0, -1};
    }
    if (m_feed == nullptr) return {};
    if (m_written == m_session.plan->sectors && m_state.closing_steps-- > 0)
      return {Activity::kClosing, 0.0, -1};
    for (int i = 0; i < 100 && m_feed != nullptr && !atTheEnd(i); ++i) writeSector();
    if (m_feed == nullptr) return {};
    return {atTheEnd(1) ? Activity::kClosing : Activity::kWriting, 0.0, 80};
  }
  void cancel() override {
    ++m_state.cancels;
    m_good = m_state.goes_on_with_zeros;
    end();
  }
  bool succeeded() override { return m_good; }
  bool readAudio(int64_t lba, int sectors, unsigned char* audio) override {
    if (lba + sectors > m_state.unreadable_from && lba < m_state.unreadable_to) return false;
    const int64_t first = lba * disc::kBytesPerSector + int64_t{m_state.read_offset} * 4;
    for (int64_t i = 0; i < int64_t{sectors} * disc::kBytesPerSector; ++i) {
      const int64_t at = first + i;
      const bool there = at >= 0 && at < static_cast<int64_t>(m_state.disc.size());
      audio[i] = there ? m_state.disc[static_cast<size_t>(at)] : 0;
    }
    return true;
  }
  std::vector<RecorderMessage> takeMessages() override { return std::exchange(m_messages, {}); }
  void release(bool eject) override { m_state.releases.push_back(eject); }

 private:
  /// All is written, and the drive is to be seen closing the disc.
  bool atTheEnd(int step) const {
    return m_written == m_session.plan->sectors && m_state.closing_steps > 0 && step > 0;
  }
  void end() {
    m_feed = nullptr;
    if (m_state.simulated) return;
    m_state.medium.state =
        m_good && !m_state.kept_open ? DiscCondition::kClosed : DiscCondition::kAppendable;
  }
  void writeSector() {
    if (m_written == m_session.plan->sectors) {
      if (!m_state.remark.empty()) m_messages.push_back({true, m_state.remark});
      return end();
    }
    unsigned char sector[disc::kBytesPerSector] = {};
    const auto track = static_cast<size_t>(m_session.plan->trackAt(m_written));
    if (!m_feed->next(track, sector)) {
      if (!m_state.goes_on_with_zeros) m_good = false;
      return end();
    }
    if (m_written == m_state.fails_silently_at) {
      m_good = false;
      return end();
    }
    if (m_written == m_state.flaw_at) {
      m_good = false;
      m_messages.push_back({true, "SCSI error on write(" + std::to_string(m_written) +
                                      ",13): [3 0C 00] Medium error. Write error."});
      return end();
    }
    if (!m_state.simulated)
      m_state.disc.insert(m_state.disc.end(), sector, sector + disc::kBytesPerSector);
    ++m_written;
  }

  ScriptedDrive& m_state;
  Session m_session;
  SectorFeed* m_feed = nullptr;
  int64_t m_written = 0;
  bool m_good = false;
  std::vector<RecorderMessage> m_messages;
};

}  // namespace velmor::recording::testing
