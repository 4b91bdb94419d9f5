#include "tests/fake_host/sink.h"

#include <algorithm>

namespace fake_host {

namespace {

constexpr double kPoison = 0.7771;

// Lays one block of a channel out as the schedule says, in a buffer without a sample to spare.
std::vector<double> layOut(const double* frames, int count, const BlockSchedule& schedule) {
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

SinkConfig makeConfig(const Settings& settings) {
  return {
      static_cast<int32_t>(kIsoFormatCode), settings.disc_leadin_ms, settings.track_leadin_ms,
      settings.burn_after_render,           settings.track_mode,     settings.hash_markers_only};
}

int16_t signalSample(int64_t frame, int channel) {
  const auto mixed = static_cast<uint64_t>(frame) * 40503U + static_cast<uint64_t>(channel) * 977U;
  return static_cast<int16_t>(static_cast<int>(mixed % 65536U) - 32768);
}

std::vector<int16_t> signalFrames(int64_t first, int64_t count) {
  std::vector<int16_t> samples;
  samples.reserve(static_cast<size_t>(2 * count));
  for (int64_t frame = first; frame < first + count; ++frame) {
    samples.push_back(signalSample(frame, 0));
    samples.push_back(signalSample(frame, 1));
  }
  return samples;
}

SignalBlock::SignalBlock(int frames) {
  for (int frame = 0; frame < frames; ++frame) {
    left.push_back(signalSample(frame, 0) / 32768.0);
    right.push_back(signalSample(frame, 1) / 32768.0);
  }
}

void SignalBlock::writeTo(PCM_sink& sink) {
  double* channels[] = {left.data(), right.data()};
  sink.WriteDoubles(channels, static_cast<int>(left.size()), 2, 0, 1);
}

void Sink::write(const std::vector<std::vector<double>>& channels, const BlockSchedule& schedule) {
  const size_t frames = channels.front().size();
  size_t turn = 0;
  for (size_t at = 0; at < frames;) {
    const auto wanted = static_cast<size_t>(schedule.lengths[turn++ % schedule.lengths.size()]);
    const size_t count = std::min(wanted, frames - at);
    std::vector<std::vector<double>> laid_out;
    std::vector<double*> pointers;
    for (int c = 0; c < schedule.channels; ++c) {
      const auto source = std::min(static_cast<size_t>(c), channels.size() - 1);
      laid_out.push_back(layOut(channels[source].data() + at, static_cast<int>(count), schedule));
      pointers.push_back(laid_out.back().data());
    }
    m_sink->WriteDoubles(pointers.data(), static_cast<int>(count), schedule.channels,
                         schedule.offset, schedule.spacing);
    at += count;
  }
}

void Sink::writeSignal(int64_t frames, const BlockSchedule& schedule) {
  std::vector<std::vector<double>> channels(2, std::vector<double>(static_cast<size_t>(frames)));
  for (int64_t i = 0; i < frames; ++i) {
    for (int c = 0; c < 2; ++c) {
      channels[static_cast<size_t>(c)][static_cast<size_t>(i)] =
          signalSample(m_signal_frame + i, c) / 32768.0;
    }
  }
  m_signal_frame += frames;
  write(channels, schedule);
}

void Sink::writeSame(int64_t frames, double value) {
  double* channels[2] = {&value, &value};
  while (frames > 0) {
    const int count = static_cast<int>(std::min<int64_t>(frames, 65536));
    m_sink->WriteDoubles(channels, count, 2, 0, 0);
    frames -= count;
  }
}

int Sink::finish(HWND parent) {
  return m_sink->Extended(kSinkRenderFinished, parent, nullptr, nullptr);
}

}  // namespace fake_host
