// One render through the vtable of a sink.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "abi/pcm_sink.h"
#include "abi/sink_registration.h"

namespace fake_host {

/// The settings of a configuration blob, all off by default.
struct Settings {
  int disc_leadin_ms = 0;
  int track_leadin_ms = 0;
  int burn_after_render = 0;
  int track_mode = kTracksFromMarkers;
  int hash_markers_only = 0;
};

SinkConfig makeConfig(const Settings& settings);

/// How frames are handed over: block lengths, taken in turn and from the start again, and where a
/// channel's frames lie in its buffer.
struct BlockSchedule {
  std::vector<int> lengths = {1024};
  int channels = 2;
  int offset = 0;
  int spacing = 1;
};

/// A deterministic test signal: the 16-bit sample of `channel` at `frame`. Neighbouring frames and
/// both channels differ, so that a shift by one frame shows.
int16_t signalSample(int64_t frame, int channel);
/// The signal's interleaved stereo samples of the frames [`first`, `first` + `count`).
std::vector<int16_t> signalFrames(int64_t first, int64_t count);

/// The signal as a host hands it over, made once: one buffer of doubles for each channel.
struct SignalBlock {
  explicit SignalBlock(int frames);
  /// Hands the whole of it to the sink in one call, which takes no memory of the test's.
  void writeTo(PCM_sink& sink);

  std::vector<double> left, right;
};

/// Owns a sink as the host does: ends it with `delete`. May be empty.
class Sink {
 public:
  explicit Sink(PCM_sink* sink) : m_sink(sink) {}

  explicit operator bool() const { return m_sink != nullptr; }
  PCM_sink* operator->() const { return m_sink.get(); }
  PCM_sink* get() const { return m_sink.get(); }

  /// Writes `channels[c][frame]`, all channels of equal length, in blocks. A schedule of more
  /// channels than are given repeats the last one; samples between the frames are poison.
  void write(const std::vector<std::vector<double>>& channels, const BlockSchedule& schedule = {});
  /// Writes the next `frames` frames of the test signal, continuing where the last call ended.
  void writeSignal(int64_t frames, const BlockSchedule& schedule = {});
  /// Writes `frames` frames of one value to both channels, in large blocks without a large buffer.
  void writeSame(int64_t frames, double value = 0.25);
  /// The render is finished; returns what `Extended` does.
  int finish(HWND parent = nullptr);
  /// The host deletes the sink.
  void destroy() { m_sink.reset(); }

 private:
  std::unique_ptr<PCM_sink> m_sink;
  int64_t m_signal_frame = 0;
};

}  // namespace fake_host
