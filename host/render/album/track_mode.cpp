#include "host/render/album/track_mode.h"

#include <algorithm>

#include "disc/text/phrases.h"
#include "host/render/album/mark_names.h"

namespace velmor::render {

TrackMode modeFor(const std::vector<Mark>& given, std::vector<std::string>& warnings) {
  const auto is_range = [](const Mark& mark) { return mark.end.has_value(); };
  const auto ranges = std::count_if(given.begin(), given.end(), is_range);
  if (ranges == 0) return kTracksFromMarkers;
  const bool has_points = std::any_of(given.begin(), given.end(), [&](const Mark& mark) {
    return !is_range(mark) && !isTag(mark.name);
  });
  if (!has_points) {
    warnings.emplace_back(
        "all marks are ranges, so each makes a track, and audio outside of them is left out; "
        "--track-mode markers keeps all audio, --track-mode regions says that this is meant");
    return kTracksFromRegions;
  }
  warnings.push_back("there are points and " + disc::counted(ranges, "range") +
                     " among the marks: points make tracks, ranges make none; --track-mode regions "
                     "does it the other way round");
  return kTracksFromMarkers;
}

}  // namespace velmor::render
