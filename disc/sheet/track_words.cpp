#include "disc/sheet/track_words.h"

#include <algorithm>
#include <array>

namespace velmor::disc {

namespace {

constexpr std::array<std::string_view, 8> kModes = {
    "AUDIO", "CDG", "MODE1/2048", "MODE1/2352", "MODE2/2336", "MODE2/2352", "CDI/2336", "CDI/2352"};
constexpr std::array<std::string_view, 4> kFlags = {"DCP", "4CH", "PRE", "SCMS"};

}  // namespace

bool isTrackMode(std::string_view word) {
  return std::find(kModes.begin(), kModes.end(), word) != kModes.end();
}

bool isFlag(std::string_view word) {
  return std::find(kFlags.begin(), kFlags.end(), word) != kFlags.end();
}

}  // namespace velmor::disc
