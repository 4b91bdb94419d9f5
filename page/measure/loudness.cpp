#include "page/measure/loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "disc/units/disc_units.h"
#include "page/measure/disc_audio.h"

namespace velmor::page {

namespace {

constexpr int64_t kOneSecond = disc::kSectorsPerSecond;

ebur128_state* stateOf(void* state) {
  return static_cast<ebur128_state*>(state);
}

double truePeak(ebur128_state* state) {
  double left = 0.0, right = 0.0;
  ebur128_true_peak(state, 0, &left);
  ebur128_true_peak(state, 1, &right);
  return std::max(left, right);
}

}  // namespace

LoudnessMeter::LoudnessMeter()
    : m_state(ebur128_init(2, disc::kSampleRate, EBUR128_MODE_I | EBUR128_MODE_TRUE_PEAK)) {
  if (!m_state) throw std::bad_alloc();
}

LoudnessMeter::~LoudnessMeter() {
  ebur128_state* state = stateOf(m_state);
  if (state) ebur128_destroy(&state);
}

LoudnessMeter::LoudnessMeter(LoudnessMeter&& other) noexcept
    : m_state(std::exchange(other.m_state, nullptr)) {}

void LoudnessMeter::add(const int16_t* samples, size_t frames) {
  if (ebur128_add_frames_short(stateOf(m_state), samples, frames) != EBUR128_SUCCESS)
    throw std::bad_alloc();
}

Loudness LoudnessMeter::result() const {
  return ofAll({this});
}

Loudness LoudnessMeter::ofAll(const std::vector<const LoudnessMeter*>& meters) {
  Loudness all{-std::numeric_limits<double>::infinity(), 0.0};
  std::vector<ebur128_state*> states;
  for (const LoudnessMeter* meter : meters) {
    states.push_back(stateOf(meter->m_state));
    all.true_peak = std::max(all.true_peak, truePeak(states.back()));
  }
  if (states.empty()) return all;
  if (ebur128_loudness_global_multiple(states.data(), states.size(), &all.lufs) != EBUR128_SUCCESS)
    throw std::bad_alloc();
  return all;
}

LoudnessMeter measureTrack(const PageDisc& disc, size_t track, const SectorsDone& progress) {
  DiscAudio audio(disc);
  LoudnessMeter meter;
  std::vector<int16_t> samples(static_cast<size_t>(kOneSecond) * disc::kFramesPerSector * 2);
  const Stretch place = *disc.tracks[track].place;
  for (int64_t at = place.begin; at < place.end; at += kOneSecond) {
    const int64_t now = std::min(kOneSecond, place.end - at);
    audio.read(at, now, samples.data());
    meter.add(samples.data(), static_cast<size_t>(now * disc::kFramesPerSector));
    progress(now);
  }
  return meter;
}

}  // namespace velmor::page
