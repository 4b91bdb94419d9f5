// Marks and lengths as tests write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/render/input/audio_input.h"

namespace velmor::render::test {

inline constexpr int64_t kSecond = 44100;

inline Mark marker(double at, const std::string& name) {
  return {at, std::nullopt, name};
}

}  // namespace velmor::render::test
