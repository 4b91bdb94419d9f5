// Tells the producers of a session's audio when reading from them begins, and when it is over.
#pragma once

#include "disc/failure.h"
#include "host/recording/session/session_plan.h"

namespace velmor::recording {

/// Lives as long as a burn reads from the producers. `plan` must outlive it.
class PreparedTracks {
 public:
  /// Prepares each track. Throws `Failure` when a producer is not ready; the ones prepared before
  /// it are cleaned up then.
  explicit PreparedTracks(const SessionPlan& plan);
  ~PreparedTracks();
  PreparedTracks(const PreparedTracks&) = delete;
  PreparedTracks& operator=(const PreparedTracks&) = delete;

 private:
  const SessionPlan& m_plan;
};

/// Lives as long as a comparison reads from the producers, which `restartProducers` takes back to
/// their beginning. `plan` must outlive it.
class PreparedForVerification {
 public:
  explicit PreparedForVerification(const SessionPlan& plan);
  ~PreparedForVerification();
  PreparedForVerification(const PreparedForVerification&) = delete;
  PreparedForVerification& operator=(const PreparedForVerification&) = delete;

 private:
  const SessionPlan& m_plan;
};

/// Takes all producers back to the beginning of their tracks, as often as it is called. Throws
/// `Failure` when one cannot.
void restartProducers(const SessionPlan& plan);

}  // namespace velmor::recording
