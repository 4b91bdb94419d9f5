#include "host/render/plan/mark_fates.h"

#include <algorithm>
#include <utility>

#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"
#include "host/render/album/mark_names.h"
#include "host/render/plan/tag_places.h"

namespace velmor::render {

namespace {

constexpr const char* kTooNear = "within 4 seconds of a track's start there is no other track";
constexpr const char* kNoAudio = "there is no audio in it that the regions before do not hold";
constexpr const char* kJoins =
    "the track before lasts under 4 seconds and is joined; the name stays in the list, and from "
    "there on titles, performers and codes are out of step with the tracks";
constexpr const char* kRangeAmongPoints =
    "where markers make tracks, ranges do not; --track-mode regions makes tracks of ranges";
constexpr const char* kPointAmongRanges =
    "where regions make tracks, points do not; --track-mode markers makes tracks of points";
constexpr const char* kNoHash = "--hash-markers-only wants a # at the beginning of the name";
constexpr const char* kOneTrackWanted = "--track-mode one makes a single track";
constexpr const char* kOutside = "outside the part that is rendered";

MarkFate fateOfTag(const Mark& tag, const TagPlace& place) {
  if (!place.given_to.empty()) return {tag, MarkUse::kTag, place.given_to.front(), ""};
  return {tag, MarkUse::kNone, std::nullopt,
          place.second_in ? "another of its kind stands before it in track " +
                                std::to_string(*place.second_in + 1)
                          : "outside of every track"};
}

std::string whyNoTrack(const Mark& mark, TrackMode mode, bool hash_only) {
  if (mode == kOneTrack) return kOneTrackWanted;
  if (mode == kTracksFromRegions) return mark.end ? kJoins : kPointAmongRanges;
  if (mark.end) return kRangeAmongPoints;
  return namesTrack(mark.name, hash_only) ? kTooNear : kNoHash;
}

MarkFate inTimeline(MarkFate fate, double render_start) {
  fate.mark.start += render_start;
  if (fate.mark.end) *fate.mark.end += render_start;
  return fate;
}

std::string shown(const Mark& mark) {
  const std::string by =
      mark.given_by.empty() ? "input " + std::to_string(mark.input) : mark.given_by;
  return disc::inQuotes(mark.name) + " (" + by + ")";
}

}  // namespace

std::vector<MarkFate> fatesOf(const Album& album, const TrackPlan& plan, bool hash_only) {
  const double render_start = disc::secondsOf(album.render_start);
  const std::vector<Mark>& marks = album.project.marks;
  const std::vector<TagPlace> tags = placesOfTags(plan, marks);
  auto tag = tags.begin();
  std::vector<MarkFate> fates;
  for (size_t i = 0; i < marks.size(); ++i) {
    MarkFate fate{marks[i], MarkUse::kTrack, plan.track_of_mark[i], ""};
    const bool is_tag = tag != tags.end() && tag->mark == i;
    if (!fate.track && is_tag) {
      fate = fateOfTag(marks[i], *tag);
    } else if (!fate.track) {
      fate = {marks[i], MarkUse::kNone, std::nullopt,
              whyNoTrack(marks[i], album.track_mode, hash_only)};
    }
    if (is_tag) ++tag;
    fates.push_back(inTimeline(std::move(fate), render_start));
  }
  for (const Mark& region : album.empty_regions)
    fates.push_back(inTimeline({region, MarkUse::kNone, std::nullopt, kNoAudio}, render_start));
  for (const Mark& mark : album.marks_outside)
    fates.push_back({mark, MarkUse::kNone, std::nullopt, kOutside});
  return fates;
}

void warnOfLostMarks(const std::vector<MarkFate>& fates, PreflightFindings& findings) {
  std::vector<std::pair<std::string, std::vector<std::string>>> by_reason;
  for (const MarkFate& fate : fates) {
    // What the checks of the codes say of lost ISRCs says more.
    if (fate.use != MarkUse::kNone || fate.why == kOutside || isTag(fate.mark.name)) continue;
    auto group = std::find_if(by_reason.begin(), by_reason.end(),
                              [&](const auto& one) { return one.first == fate.why; });
    if (group == by_reason.end()) group = by_reason.insert(group, {fate.why, {}});
    group->second.push_back(shown(fate.mark));
  }
  for (const auto& [why, marks] : by_reason) {
    findings.warnings.push_back(disc::listed(marks) +
                                (marks.size() == 1 ? " makes no track: " : " make no tracks: ") +
                                why);
  }
}

}  // namespace velmor::render
