#include "host/recording/session/sector_feed.h"

#include <cstring>

#include "host/recording/disc_time.h"

namespace velmor::recording {

SectorFeed::SectorFeed(const SessionPlan& plan, const std::atomic<bool>* cancel)
    : plan_(plan), cancel_(cancel) {}

bool SectorFeed::fail(const std::string& reason) {
  failure_ = reason;
  failed_.store(true);
  return false;
}

bool SectorFeed::next(size_t track, unsigned char* sector) {
  if (failed() || cancelled()) return false;
  if (cancel_ != nullptr && cancel_->load()) {
    cancelled_.store(true);
    return false;
  }
  if (track == track_ + 1) {
    const PlannedTrack& done = plan_.tracks[track_];
    if (offset_ != done.pregap + int64_t{done.sectors})
      return fail("The recorder left track " + std::to_string(track_ + 1) + " before its end.");
    track_ = track;
    offset_ = 0;
  } else if (track != track_) {
    return fail("The recorder asked for the tracks in another order than that of the disc.");
  }
  if (track_ >= plan_.tracks.size() ||
      offset_ >= plan_.tracks[track_].pregap + int64_t{plan_.tracks[track_].sectors})
    return fail("The recorder asked for more audio than track " + std::to_string(track_ + 1) +
                " has.");
  if (!produce(track_, sector)) return false;
  ++offset_;
  delivered_.fetch_add(1);
  return true;
}

bool SectorFeed::produce(size_t track, unsigned char* sector) {
  const PlannedTrack& planned = plan_.tracks[track];
  if (offset_ >= planned.pregap) return produceData(track, sector);
  if (planned.producer->ProducePreGap(sector, kSectorBytes) == kSectorBytes) return true;
  return fail("The pregap of track " + std::to_string(track + 1) + " could not be made.");
}

bool SectorFeed::produceData(size_t track, unsigned char* sector) {
  const uint32_t count = plan_.tracks[track].producer->ProduceData(sector, kSectorBytes);
  if (count == kSectorBytes) return true;
  const std::string where =
      " at " + minutesSecondsFrames(delivered()) + " (track " + std::to_string(track + 1) + ")";
  if (count > kSectorBytes) return fail("The image could not be read" + where + ".");
  // The one sector that an image may leave unfilled is the disc's last.
  const bool last = delivered() == plan_.sectors - 1;
  if (!last || count == 0)
    return fail("The image ends too early" + where +
                ": it has become shorter since the burn was prepared.");
  std::memset(sector + count, 0, kSectorBytes - count);
  return true;
}

}  // namespace velmor::recording
