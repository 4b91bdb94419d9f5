// Pieces of work side by side, as many at a time as the machine has processors.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <vector>

#include "disc/failure.h"

namespace velmor::page {

/// What all pieces have done so far; a piece tells it now and then, and so learns that it is to
/// stop.
class SharedProgress {
 public:
  /// Throws an exception of its own kind, which `runJobs` knows, when the work is to end early.
  void add(int64_t done);
  int64_t done() const { return m_done; }
  void stop() { m_stopped = true; }

 private:
  std::atomic<int64_t> m_done{0};
  std::atomic<bool> m_stopped{false};
};

using Job = std::function<void()>;

/// Runs all of `jobs` to their end, the first ones first. `watch` is called on the calling thread a
/// few times a second; when it throws, or a job does, the others stop as soon as they tell their
/// progress, and the first exception goes on to the caller. Throws `Failure` when no thread can be
/// begun.
void runJobs(const std::vector<Job>& jobs, SharedProgress& progress,
             const std::function<void()>& watch);

}  // namespace velmor::page
