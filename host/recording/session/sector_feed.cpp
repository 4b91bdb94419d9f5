#include "host/recording/session/sector_feed.h"

#include <cstring>
#include <new>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::recording {

namespace {

constexpr const char* kNoMemory = "no memory left";  // short enough to need none

}  // namespace

SectorFeed::SectorFeed(const SessionPlan& plan, const std::atomic<bool>* cancel)
    : m_plan(plan), m_cancel(cancel) {}

bool SectorFeed::fail(const std::string& reason) {
  m_failure = reason;
  m_failed.store(true);
  return false;
}

/// The recorder's library is no C++: nothing may be thrown through it.
bool SectorFeed::next(size_t track, unsigned char* sector) noexcept {
  try {
    return deliver(track, sector);
  } catch (const std::bad_alloc&) {
    m_failure = kNoMemory;
    m_failed.store(true);
    return false;
  }
}

bool SectorFeed::deliver(size_t track, unsigned char* sector) {
  if (failed() || cancelled()) return false;
  if (m_cancel != nullptr && m_cancel->load()) {
    m_cancelled.store(true);
    return false;
  }
  if (track == m_track + 1) {
    const SessionTrack& done = m_plan.tracks[m_track];
    if (m_offset != done.pregap + int64_t{done.sectors})
      return fail("the recorder left track " + std::to_string(m_track + 1) + " before its end");
    m_track = track;
    m_offset = 0;
  } else if (track != m_track) {
    return fail("the recorder asked for the tracks in another order than that of the disc");
  }
  if (m_track >= m_plan.tracks.size() ||
      m_offset >= m_plan.tracks[m_track].pregap + int64_t{m_plan.tracks[m_track].sectors})
    return fail("the recorder asked for more audio than track " + std::to_string(m_track + 1) +
                " has");
  if (!produce(sector)) return false;
  ++m_offset;
  m_delivered.fetch_add(1);
  return true;
}

bool SectorFeed::produce(unsigned char* sector) {
  const AudioSource& source = m_plan.sourceAt(delivered());
  if (delivered() >= source.begin + source.pregap) return produceData(*source.producer, sector);
  if (source.producer->ProducePreGap(sector, disc::kBytesPerSector) == disc::kBytesPerSector)
    return true;
  return fail("the pregap of track " + std::to_string(m_track + 1) + " could not be made");
}

bool SectorFeed::produceData(DiscTrackProducer& producer, unsigned char* sector) {
  const uint32_t count = producer.ProduceData(sector, disc::kBytesPerSector);
  if (count == disc::kBytesPerSector) return true;
  const std::string where =
      " at " + disc::msfText(delivered()) + " (track " + std::to_string(m_track + 1) + ")";
  if (count > disc::kBytesPerSector) return fail("the image could not be read" + where);
  // Only the last sector of the disc may be short: an image need not end on a whole sector.
  const bool last = delivered() == m_plan.sectors - 1;
  if (!last || count == 0)
    return fail("the image ends too early" + where +
                ": it has become shorter since the burn was prepared");
  std::memset(sector + count, 0, disc::kBytesPerSector - count);
  return true;
}

}  // namespace velmor::recording
