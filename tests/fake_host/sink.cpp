#include "tests/fake_host/sink.h"

#include <algorithm>

namespace fake_host {

namespace {

constexpr double kPoison = 0.7771;

// Lays one block of a channel out as the schedule says, in a buffer without a sample to spare.
std::vector<double> LayOut(const double* frames, int count, const BlockSchedule& schedule) {
  const auto size = static_cast<size_t>(schedule.offset) +
                    static_cast<size_t>(count - 1) * static_cast<size_t>(schedule.spacing) + 1;
  std::vector<double> buffer(size, kPoison);
  for (int i = 0; i < count; ++i) {
    buffer[static_cast<size_t>(schedule.offset) +
           static_cast<size_t>(i) * static_cast<size_t>(schedule.spacing)] = frames[i];
  }
  return buffer;
}

}  // namespace

SinkConfig MakeConfig(const Settings& settings) {
  return {
      static_cast<int32_t>(kIsoFormatCode), settings.disc_leadin_ms, settings.track_leadin_ms,
      settings.burn_after_render,           settings.track_mode,     settings.hash_markers_only};
}

int16_t SignalSample(int64_t frame, int channel) {
  const auto mixed = static_cast<uint64_t>(frame) * 40503U + static_cast<uint64_t>(channel) * 977U;
  return static_cast<int16_t>(static_cast<int>(mixed % 65536U) - 32768);
}

std::vector<int16_t> SignalFrames(int64_t first, int64_t count) {
  std::vector<int16_t> samples;
  samples.reserve(static_cast<size_t>(2 * count));
  for (int64_t frame = first; frame < first + count; ++frame) {
    samples.push_back(SignalSample(frame, 0));
    samples.push_back(SignalSample(frame, 1));
  }
  return samples;
}

void Sink::Write(const std::vector<std::vector<double>>& channels, const BlockSchedule& schedule) {
  const size_t frames = channels.front().size();
  size_t turn = 0;
  for (size_t at = 0; at < frames;) {
    const auto wanted = static_cast<size_t>(schedule.lengths[turn++ % schedule.lengths.size()]);
    const size_t count = std::min(wanted, frames - at);
    std::vector<std::vector<double>> laid_out;
    std::vector<double*> pointers;
    for (int c = 0; c < schedule.channels; ++c) {
      const auto source = std::min(static_cast<size_t>(c), channels.size() - 1);
      laid_out.push_back(LayOut(channels[source].data() + at, static_cast<int>(count), schedule));
      pointers.push_back(laid_out.back().data());
    }
    sink_->WriteDoubles(pointers.data(), static_cast<int>(count), schedule.channels,
                        schedule.offset, schedule.spacing);
    at += count;
  }
}

void Sink::WriteSignal(int64_t frames, const BlockSchedule& schedule) {
  std::vector<std::vector<double>> channels(2, std::vector<double>(static_cast<size_t>(frames)));
  for (int64_t i = 0; i < frames; ++i) {
    for (int c = 0; c < 2; ++c) {
      channels[static_cast<size_t>(c)][static_cast<size_t>(i)] =
          SignalSample(signal_frame_ + i, c) / 32768.0;
    }
  }
  signal_frame_ += frames;
  Write(channels, schedule);
}

void Sink::WriteSame(int64_t frames, double value) {
  double* channels[2] = {&value, &value};
  while (frames > 0) {
    const int count = static_cast<int>(std::min<int64_t>(frames, 65536));
    sink_->WriteDoubles(channels, count, 2, 0, 0);
    frames -= count;
  }
}

int Sink::Finish(HWND parent) {
  return sink_->Extended(kSinkRenderFinished, parent, nullptr, nullptr);
}

}  // namespace fake_host
