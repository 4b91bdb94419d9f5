// The audio of a burn, sector by sector, from the producers to the recorder.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "host/recording/session/session_plan.h"

namespace velmor::recording {

/// Filled by the recorder's worker thread strictly in the order of the disc; the rest may be asked
/// by another thread, `failure` only when the worker is done.
///
/// libburn does not fail when its source does: it goes on with zeros and reports a good disc. So
/// the feed keeps its own record of what went wrong; the burn stops the recorder when `failed` says
/// so.
class SectorFeed {
 public:
  /// Both must outlive the feed; `cancel` may be null.
  SectorFeed(const SessionPlan& plan, const std::atomic<bool>* cancel);

  /// Fills `sector`, 2352 bytes, with the next sector of track `track` (from 0), its pregap first.
  /// False: the burn must stop.
  bool next(size_t track, unsigned char* sector);

  int64_t delivered() const { return m_delivered.load(); }  ///< sectors
  bool complete() const { return delivered() == m_plan.sectors; }
  bool failed() const { return m_failed.load(); }
  bool cancelled() const { return m_cancelled.load(); }
  /// Why the source failed, when `failed`.
  const std::string& failure() const { return m_failure; }

 private:
  bool fail(const std::string& reason);
  bool produce(size_t track, unsigned char* sector);
  bool produceData(size_t track, unsigned char* sector);

  const SessionPlan& m_plan;
  const std::atomic<bool>* m_cancel;
  size_t m_track = 0;    // the track being read
  int64_t m_offset = 0;  // sectors of it that were delivered, its pregap included
  std::atomic<int64_t> m_delivered{0};
  std::atomic<bool> m_failed{false};
  std::atomic<bool> m_cancelled{false};
  std::string m_failure;
};

}  // namespace velmor::recording
