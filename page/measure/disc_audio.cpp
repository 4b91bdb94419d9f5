#include "page/measure/disc_audio.h"

#include <algorithm>

#include "disc/units/disc_units.h"

namespace velmor::page {

void DiscAudio::read(int64_t sector, int64_t sectors, int16_t* samples) {
  constexpr int64_t kSamples = int64_t{disc::kFramesPerSector} * 2;
  std::fill(samples, samples + sectors * kSamples, int16_t{0});
  for (const AudioRun& run : m_disc.runs) {
    const int64_t from = std::max(sector, run.at);
    const int64_t to = std::min(sector + sectors, run.at + run.sectors);
    if (from < to) readRun(run, from, to - from, samples + (from - sector) * kSamples);
  }
}

void DiscAudio::readRun(const AudioRun& run, int64_t sector, int64_t sectors, int16_t* samples) {
  if (!m_image || m_open != run.image) {
    m_image.reset();
    m_image.emplace(m_disc.images[run.image].path, m_disc.images[run.image].type);
    m_open = run.image;
  }
  const int64_t first = (run.first + sector - run.at) * disc::kFramesPerSector;
  const int64_t there = m_image->dataBytes() / disc::kBytesPerFrame - first;
  const int64_t wanted = std::min(sectors * disc::kFramesPerSector, std::max<int64_t>(there, 0));
  const size_t got = m_image->readFrames(first, samples, static_cast<size_t>(wanted));
  if (static_cast<int64_t>(got) < wanted || !m_image->readable()) m_broke_off = true;
}

}  // namespace velmor::page
