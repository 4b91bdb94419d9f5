// An input whose samples are made ready for 16 bits by dither.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/render/input/audio_input.h"
#include "host/render/input/channel_dither.h"

namespace velmor::render {

/// Another input with dither on it; both channels of a mono source get the same.
class DitheredInput : public AudioInput {
 public:
  explicit DitheredInput(std::unique_ptr<AudioInput> source);

  const InputInfo& info() const override { return m_source->info(); }
  size_t read(double* left, double* right, size_t frames) override;
  bool hasAddedDither() const override;

 private:
  void load();

  // The seeds never change: the same input makes the same image on every day and machine.
  static constexpr uint64_t kLeftSeed = 1;
  static constexpr uint64_t kRightSeed = 0x5851f42d4c957f2dU;

  std::unique_ptr<AudioInput> m_source;
  ChannelDither m_left_dither{kLeftSeed};
  ChannelDither m_right_dither{kRightSeed};
  std::vector<double> m_left, m_right;
  size_t m_used = 0;     ///< frames of the buffers that were read
  size_t m_decided = 0;  ///< frames from the buffers' start that can be read
  size_t m_filled = 0;   ///< frames in the buffers
  bool m_ended = false;  ///< nothing follows them
};

}  // namespace velmor::render
