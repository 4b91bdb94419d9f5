#include "host/render/input/resampler.h"

#include <cassert>

#include "disc/failure.h"
#include "disc/units/disc_units.h"
#include "host/render/input/audio_input.h"

namespace velmor::render {
namespace {

void check(soxr_error_t error) {
  if (error) throw Failure(error);
}

}  // namespace

int64_t framesAtDiscRate(int64_t frames, int rate) {
  assert(frames >= 0 && rate > 0);
  // Whole seconds apart from the rest: frames times rate would overflow 64 bits for the longest
  // files.
  const int64_t seconds = frames / rate;
  const int64_t rest = frames % rate;
  return seconds * disc::kSampleRate +
         (2 * rest * disc::kSampleRate + rate) / (2 * static_cast<int64_t>(rate));
}

Resampler::Resampler(int rate, unsigned channels) {
  assert(rate > 0 && (channels == 1 || channels == 2));
  const soxr_io_spec_t samples = soxr_io_spec(SOXR_FLOAT64_S, SOXR_FLOAT64_S);
  const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
  const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
  soxr_error_t error = nullptr;
  m_soxr.reset(
      soxr_create(rate, disc::kSampleRate, channels, &error, &samples, &quality, &runtime));
  check(error);
  if (!m_soxr) throw Failure("the resampler cannot be set up");
}

Resampler::Step Resampler::process(const double* const* in, size_t in_frames, double* const* out,
                                   size_t out_frames) {
  Step step;
  check(soxr_process(m_soxr.get(), in, in_frames, &step.taken, const_cast<double**>(out),
                     out_frames, &step.made));
  return step;
}

size_t Resampler::drain(double* const* out, size_t out_frames) {
  size_t made = 0;
  check(soxr_process(m_soxr.get(), nullptr, 0, nullptr, const_cast<double**>(out), out_frames,
                     &made));
  return made;
}

}  // namespace velmor::render
