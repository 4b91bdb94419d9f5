// Tells the producers of a session when their tracks begin to be needed, and when no more.
#pragma once

#include "disc/failure.h"
#include "host/recording/session/session_plan.h"

namespace velmor::recording {

/// For the length of a burn.
class PreparedTracks {
 public:
  /// Throws `Failure` when a producer is not ready; those before it are told of the end.
  explicit PreparedTracks(const SessionPlan& plan);
  ~PreparedTracks();
  PreparedTracks(const PreparedTracks&) = delete;
  PreparedTracks& operator=(const PreparedTracks&) = delete;

 private:
  const SessionPlan& m_plan;
};

/// For the length of a comparison: the producers start over.
class PreparedForVerification {
 public:
  explicit PreparedForVerification(const SessionPlan& plan);
  ~PreparedForVerification();
  PreparedForVerification(const PreparedForVerification&) = delete;
  PreparedForVerification& operator=(const PreparedForVerification&) = delete;

 private:
  const SessionPlan& m_plan;
};

/// Starts all producers over once more. Throws `Failure` when one does not.
void restartProducers(const SessionPlan& plan);

}  // namespace velmor::recording
