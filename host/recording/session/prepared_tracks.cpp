#include "host/recording/session/prepared_tracks.h"

#include <string>

#include "disc/failure.h"

namespace velmor::recording {

PreparedTracks::PreparedTracks(const SessionPlan& plan) : m_plan(plan) {
  for (size_t i = 0; i < plan.sources.size(); ++i) {
    if (plan.sources[i].producer->PrepareTrack()) continue;
    for (size_t done = 0; done < i; ++done) plan.sources[done].producer->CleanupTrackAfterBurn();
    throw Failure("the audio of track " + std::to_string(i + 1) + " could not be prepared");
  }
}

PreparedTracks::~PreparedTracks() {
  for (const AudioSource& source : m_plan.sources) source.producer->CleanupTrackAfterBurn();
}

PreparedForVerification::PreparedForVerification(const SessionPlan& plan) : m_plan(plan) {}

PreparedForVerification::~PreparedForVerification() {
  for (const AudioSource& source : m_plan.sources) source.producer->CleanupTrackAfterVerification();
}

void restartProducers(const SessionPlan& plan) {
  for (size_t i = 0; i < plan.sources.size(); ++i)
    if (!plan.sources[i].producer->PrepareTrackForVerification())
      throw Failure("the audio of track " + std::to_string(i + 1) +
                    " could not be prepared for the comparison");
}

}  // namespace velmor::recording
