#include "host/render/plan/tag_places.h"

#include <strings.h>

#include <algorithm>
#include <utility>

#include "host/render/album/mark_names.h"

namespace velmor::render {

namespace {

constexpr const char* kIsrcTag = "ISRC=";
constexpr double kTagAllowance = 0.001;  // seconds

bool beginsWith(const std::string& name, const char* tag) {
  return strncasecmp(name.c_str(), tag, kTagLength) == 0;
}

}  // namespace

std::vector<TagPlace> placesOfTags(const TrackPlan& plan, const std::vector<Mark>& marks) {
  std::vector<TagPlace> places;
  for (size_t i = 0; i < marks.size(); ++i)
    if (isTag(marks[i].name)) places.push_back({i, {}, {}});
  for (size_t track = 0; track < plan.tracks.size(); ++track) {
    const double from = plan.tracks[track].source_start - kTagAllowance;
    const double to = from + plan.tracks[track].source_length;
    std::vector<const char*> taken;  // a name of each kind
    for (TagPlace& place : places) {
      const Mark& mark = marks[place.mark];
      if (mark.start < from || mark.start >= to) continue;
      if (std::any_of(taken.begin(), taken.end(),
                      [&](const char* other) { return beginsWith(mark.name, other); })) {
        place.second_in = track;
      } else {
        place.given_to.push_back(track);
        taken.push_back(mark.name.c_str());
      }
    }
  }
  return places;
}

std::vector<IsrcPlace> placesOfIsrcs(const TrackPlan& plan, const std::vector<Mark>& marks) {
  std::vector<IsrcPlace> isrcs;
  for (TagPlace& place : placesOfTags(plan, marks)) {
    const Mark& mark = marks[place.mark];
    if (!beginsWith(mark.name, kIsrcTag)) continue;
    isrcs.push_back({mark.name.substr(kTagLength), mark.start, mark.input,
                     std::move(place.given_to), place.second_in});
  }
  return isrcs;
}

}  // namespace velmor::render
