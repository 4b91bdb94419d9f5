#include "page/measure/loudness.h"

#include <ebur128.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "disc/units/disc_units.h"
#include "page/measure/disc_audio.h"

namespace velmor::page {

namespace {

constexpr int64_t kOneSecond = disc::kSectorsPerSecond;
/// Sectors before a piece whose sound still reaches into the filter between its samples. The
/// library's is far shorter than one, 49 taps at four times the rate.
constexpr int64_t kFilterReach = 1;

ebur128_state* stateOf(void* state) {
  return static_cast<ebur128_state*>(state);
}

ebur128_state* newState(int mode) {
  ebur128_state* state = ebur128_init(2, disc::kSampleRate, mode);
  if (!state) throw std::bad_alloc();
  return state;
}

void addTo(ebur128_state* state, const int16_t* samples, size_t frames) {
  if (ebur128_add_frames_short(state, samples, frames) != EBUR128_SUCCESS) throw std::bad_alloc();
}

/// Of what was added last.
double lastTruePeak(ebur128_state* state) {
  double left = 0.0, right = 0.0;
  ebur128_prev_true_peak(state, 0, &left);
  ebur128_prev_true_peak(state, 1, &right);
  return std::max(left, right);
}

/// Reads a stretch of the disc, a second at a time at most.
void readThrough(const PageDisc& disc, const Stretch& stretch,
                 const std::function<void(const int16_t* samples, int64_t sectors)>& take) {
  DiscAudio audio(disc);
  std::vector<int16_t> samples(static_cast<size_t>(kOneSecond) * disc::kFramesPerSector * 2);
  for (int64_t at = stretch.begin; at < stretch.end; at += kOneSecond) {
    const int64_t now = std::min(kOneSecond, stretch.end - at);
    audio.read(at, now, samples.data());
    take(samples.data(), now);
  }
}

size_t framesIn(int64_t sectors) {
  return static_cast<size_t>(sectors * disc::kFramesPerSector);
}

}  // namespace

LoudnessMeter::LoudnessMeter() : m_state(newState(EBUR128_MODE_I)) {}

LoudnessMeter::~LoudnessMeter() {
  ebur128_state* state = stateOf(m_state);
  if (state) ebur128_destroy(&state);
}

LoudnessMeter::LoudnessMeter(LoudnessMeter&& other) noexcept
    : m_state(std::exchange(other.m_state, nullptr)) {}

void LoudnessMeter::add(const int16_t* samples, size_t frames) {
  addTo(stateOf(m_state), samples, frames);
}

double LoudnessMeter::lufsOf(const std::vector<const LoudnessMeter*>& meters) {
  double lufs = -std::numeric_limits<double>::infinity();
  std::vector<ebur128_state*> states;
  states.reserve(meters.size());
  for (const LoudnessMeter* meter : meters) states.push_back(stateOf(meter->m_state));
  if (!states.empty() &&
      ebur128_loudness_global_multiple(states.data(), states.size(), &lufs) != EBUR128_SUCCESS)
    throw std::bad_alloc();
  return lufs;
}

LoudnessMeter measureLoudness(const PageDisc& disc, size_t track, const SectorsDone& progress) {
  LoudnessMeter meter;
  readThrough(disc, *disc.tracks[track].place, [&](const int16_t* samples, int64_t sectors) {
    meter.add(samples, framesIn(sectors));
    progress(sectors);
  });
  return meter;
}

double measureTruePeak(const PageDisc& disc, size_t track, const Stretch& piece,
                       const SectorsDone& progress) {
  const auto destroy = [](ebur128_state* state) { ebur128_destroy(&state); };
  const std::unique_ptr<ebur128_state, decltype(destroy)> state(newState(EBUR128_MODE_TRUE_PEAK),
                                                                destroy);
  const int64_t before = std::max(disc.tracks[track].place->begin, piece.begin - kFilterReach);
  readThrough(disc, {before, piece.begin}, [&](const int16_t* samples, int64_t sectors) {
    addTo(state.get(), samples, framesIn(sectors));
  });
  double peak = 0.0;
  readThrough(disc, piece, [&](const int16_t* samples, int64_t sectors) {
    addTo(state.get(), samples, framesIn(sectors));
    peak = std::max(peak, lastTruePeak(state.get()));
    progress(sectors);
  });
  return peak;
}

}  // namespace velmor::page
