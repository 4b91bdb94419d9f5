// The audio of a burn, sector by sector, from the producers to the recorder.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "host/recording/session/session_plan.h"

namespace velmor::recording {

/// The recorder's worker thread calls `next`, strictly in the order of the disc. Another thread may
/// call the other functions meanwhile, except for `failure`, which waits until the worker is done.
///
/// libburn, when a source of audio fails, writes zeros instead and reports a good disc. So the feed
/// keeps its own record of what went wrong; `BurnRun` looks at it and stops the burn.
class SectorFeed {
 public:
  /// Both must outlive the feed; `cancel` may be null.
  SectorFeed(const SessionPlan& plan, const std::atomic<bool>* cancel);

  /// Fills `sector` (2352 bytes) with the next one of track `track` (from 0), its pregap first.
  /// False when the burn must stop: something has failed, or it was cancelled.
  bool next(size_t track, unsigned char* sector) noexcept;

  /// On the recorder's thread, whenever it has read what is freed after the burn; and on the other,
  /// once the recorder is idle: from here on all those reads are over. The recorder's own word is
  /// no order that the language knows.
  void sourceWasRead() { m_reads.fetch_add(1); }
  void settle() const { m_reads.load(); }

  int64_t delivered() const { return m_delivered.load(); }  ///< sectors
  bool complete() const { return delivered() == m_plan.sectors; }
  bool failed() const { return m_failed.load(); }
  bool cancelled() const { return m_cancelled.load(); }
  /// Why the source failed, when `failed`.
  const std::string& failure() const { return m_failure; }

 private:
  bool deliver(size_t track, unsigned char* sector);
  bool fail(const std::string& reason);
  bool produce(unsigned char* sector);
  bool produceData(DiscTrackProducer& producer, unsigned char* sector);

  const SessionPlan& m_plan;
  const std::atomic<bool>* m_cancel;
  size_t m_track = 0;    // the track being read
  int64_t m_offset = 0;  // sectors of it that were delivered, its pregap included
  std::atomic<int64_t> m_reads{0};
  std::atomic<int64_t> m_delivered{0};
  std::atomic<bool> m_failed{false};
  std::atomic<bool> m_cancelled{false};
  std::string m_failure;
};

}  // namespace velmor::recording
