#include "host/recording/session/prepared_tracks.h"

#include <string>

#include "disc/failure.h"

namespace velmor::recording {

PreparedTracks::PreparedTracks(const SessionPlan& plan) : m_plan(plan) {
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    if (plan.tracks[i].producer->PrepareTrack()) continue;
    for (size_t done = 0; done < i; ++done) plan.tracks[done].producer->CleanupTrackAfterBurn();
    throw Failure("the audio of track " + std::to_string(i + 1) + " could not be prepared");
  }
}

PreparedTracks::~PreparedTracks() {
  for (const PlannedTrack& track : m_plan.tracks) track.producer->CleanupTrackAfterBurn();
}

PreparedForVerification::PreparedForVerification(const SessionPlan& plan) : m_plan(plan) {}

PreparedForVerification::~PreparedForVerification() {
  for (const PlannedTrack& track : m_plan.tracks) track.producer->CleanupTrackAfterVerification();
}

void restartProducers(const SessionPlan& plan) {
  for (size_t i = 0; i < plan.tracks.size(); ++i)
    if (!plan.tracks[i].producer->PrepareTrackForVerification())
      throw Failure("the audio of track " + std::to_string(i + 1) +
                    " could not be prepared for the comparison");
}

}  // namespace velmor::recording
