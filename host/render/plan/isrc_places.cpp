#include "host/render/plan/isrc_places.h"

#include <strings.h>

namespace velmor::render {

namespace {

constexpr const char* kIsrcTag = "ISRC=";
constexpr size_t kIsrcTagLength = 5;
constexpr double kTagAllowance = 0.001;  // seconds

std::vector<IsrcPlace> isrcsAmong(const std::vector<Mark>& marks) {
  std::vector<IsrcPlace> places;
  for (const Mark& mark : marks) {
    if (strncasecmp(mark.name.c_str(), kIsrcTag, kIsrcTagLength) != 0) continue;
    places.push_back({mark.name.substr(kIsrcTagLength), mark.start, mark.input, {}, {}});
  }
  return places;
}

}  // namespace

std::vector<IsrcPlace> placesOfIsrcs(const TrackPlan& plan, const std::vector<Mark>& marks) {
  std::vector<IsrcPlace> places = isrcsAmong(marks);
  for (size_t track = 0; track < plan.tracks.size(); ++track) {
    const double from = plan.tracks[track].source_start - kTagAllowance;
    const double to = from + plan.tracks[track].source_length;
    bool taken = false;
    for (IsrcPlace& place : places) {
      if (place.position < from || place.position >= to) continue;
      if (taken) {
        place.second_in = track;
      } else {
        place.given_to.push_back(track);
      }
      taken = true;
    }
  }
  return places;
}

}  // namespace velmor::render
