// An image in memory and producers that cut tracks out of it, with the faults a producer may have.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "abi/disc_recording.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::recording::testing {

using Bytes = std::vector<unsigned char>;

/// Noise of `sectors` sectors, the same every time.
inline Bytes noise(int sectors, uint32_t seed = 1) {
  Bytes image(static_cast<size_t>(sectors) * disc::kBytesPerSector);
  uint32_t state = seed;
  for (unsigned char& byte : image) {
    state = state * 1664525U + 1013904223U;
    byte = static_cast<unsigned char>(state >> 24);
  }
  return image;
}

class ImageProducer final : public DiscTrackProducer {
 public:
  ImageProducer(const Bytes& image, size_t first_byte, size_t bytes)
      : m_image(image), m_first(first_byte), m_bytes(bytes) {}

  uint64_t EstimateLengthOfTrack() override {
    return estimate.value_or((m_bytes + disc::kBytesPerSector - 1) / disc::kBytesPerSector);
  }
  bool PrepareTrack() override {
    ++prepared;
    return ready;
  }
  void CleanupTrackAfterBurn() override { ++cleaned; }
  uint32_t ProducePreGap(void* buffer, uint32_t length) override {
    std::memset(buffer, pregap_byte, length);
    return length;
  }
  uint32_t ProduceData(void* buffer, uint32_t length) override {
    if (m_at / disc::kBytesPerSector == fails_at_sector) return UINT32_MAX;
    const size_t begin = m_first + m_at;
    const size_t there = begin < m_image.size() ? m_image.size() - begin : 0;
    size_t count = std::min({static_cast<size_t>(length), m_bytes - m_at, there});
    if (m_at / disc::kBytesPerSector == short_at_sector) count /= 2;
    std::memcpy(buffer, m_image.data() + begin, count);
    m_at += count;
    return static_cast<uint32_t>(count);
  }
  bool PrepareTrackForVerification() override {
    m_at = 0;
    return true;
  }
  bool VerifyPreGap(const void*, uint32_t) override { return true; }
  bool VerifyData(const void*, uint32_t) override { return true; }
  bool CleanupTrackAfterVerification() override { return true; }

  static constexpr size_t kNever = SIZE_MAX;
  size_t fails_at_sector = kNever;
  size_t short_at_sector = kNever;
  std::optional<uint64_t> estimate;
  bool ready = true;
  int pregap_byte = 0;
  int prepared = 0;
  int cleaned = 0;

 private:
  const Bytes& m_image;
  size_t m_first;
  size_t m_bytes;
  size_t m_at = 0;
};

/// An image cut into tracks of the given lengths.
class Programme {
 public:
  Programme(Bytes image, const std::vector<int>& track_sectors) : m_image(std::move(image)) {
    size_t first = 0;
    for (const int sectors : track_sectors) {
      const size_t bytes = static_cast<size_t>(sectors) * disc::kBytesPerSector;
      producers.push_back(std::make_unique<ImageProducer>(m_image, first, bytes));
      tracks.push_back({producers.back().get(), 0, 0, 0, 0, 0, disc::kBytesPerSector, sectors});
      first += bytes;
    }
  }
  explicit Programme(const std::vector<int>& track_sectors)
      : Programme(noise(sum(track_sectors)), track_sectors) {}
  Programme(const Programme&) = delete;

  const Bytes& image() const { return m_image; }
  int count() const { return static_cast<int>(tracks.size()); }

  std::vector<std::unique_ptr<ImageProducer>> producers;
  std::vector<DiscTrack> tracks;

 private:
  static int sum(const std::vector<int>& numbers) {
    int total = 0;
    for (const int number : numbers) total += number > 0 ? number : 0;
    return total;
  }
  Bytes m_image;
};

}  // namespace velmor::recording::testing
