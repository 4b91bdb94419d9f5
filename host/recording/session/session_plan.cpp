#include "host/recording/session/session_plan.h"

#include <algorithm>
#include <cassert>
#include <string>

#include "disc/failure.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::recording {
namespace {

std::string nameOf(int index) {
  return "track " + std::to_string(index + 1);
}

void checkForm(const DiscTrack& track, const std::string& name) {
  if (track.block_size != disc::kBytesPerSector || track.data_form != 0 || track.track_mode != 0 ||
      track.block_type != 0 || track.session_format != 0)
    throw Failure("only audio can be recorded: " + name +
                  " is not made of audio sectors of 2352 bytes");
}

void checkLength(const DiscTrack& track, const std::string& name) {
  if (track.track_length <= 0) throw Failure("there is nothing to record in " + name);
  // libburn would pad the track with silence to 4 seconds, and every later track would start too
  // late.
  if (track.track_length < disc::kShortestTrackSectors)
    throw Failure("the burn was not begun: " + name +
                  " is shorter than 4 seconds and would be padded, moving the tracks after it; "
                  "move its marker, or join it with a neighbour");
  if (track.pregap_length < 0) throw Failure("the pregap of " + name + " has a negative length");
}

void checkProducer(const DiscTrack& track, const std::string& name) {
  if (track.producer == nullptr) throw Failure("nothing delivers the audio of " + name);
  const uint64_t estimate = track.producer->EstimateLengthOfTrack();
  if (estimate != static_cast<uint64_t>(track.track_length))
    throw Failure("the burn was not begun: " + name + " was laid out with " +
                  std::to_string(track.track_length) + " sectors, but its audio has " +
                  std::to_string(estimate));
}

}  // namespace

int SessionPlan::trackAt(int64_t lba) const {
  int found = 0;
  for (size_t i = 1; i < tracks.size(); ++i)
    if (lba >= tracks[i].start - tracks[i].pregap) found = static_cast<int>(i);
  return found;
}

const AudioSource& SessionPlan::sourceAt(int64_t lba) const {
  assert(lba >= 0 && lba < sectors);
  const auto after = std::upper_bound(
      sources.begin(), sources.end(), lba,
      [](int64_t sector, const AudioSource& source) { return sector < source.begin; });
  return *(after - 1);
}

SessionPlan planSession(const DiscTrack* tracks, int count) {
  if (tracks == nullptr || count <= 0)
    throw Failure("there are no tracks to record: an audio CD has 1 to 99");
  if (count > disc::kMostTracks)
    throw Failure("an audio CD has at most 99 tracks, and there are " + std::to_string(count) +
                  "; remove markers, or make two discs of it");
  SessionPlan plan;
  for (int i = 0; i < count; ++i) {
    const DiscTrack& track = tracks[i];
    const std::string name = nameOf(i);
    checkForm(track, name);
    checkLength(track, name);
    checkProducer(track, name);
    // The recorder itself writes two seconds of silence before track 1: its pregap begins there.
    const int written = i == 0 ? std::max(track.pregap_length - disc::kSectorsBeforeTrack1, 0)
                               : track.pregap_length;
    const int64_t start = plan.sectors + written;
    plan.sources.push_back({track.producer, written, track.track_length, plan.sectors});
    plan.tracks.push_back({written, track.track_length, start});
    plan.sectors = start + track.track_length;
  }
  if (plan.sectors > disc::kLastLeadOut)
    throw Failure("the image is " + disc::msfText(plan.sectors) +
                  " long; the times of a disc end at " + disc::msfText(disc::kLastLeadOut));
  return plan;
}

}  // namespace velmor::recording
