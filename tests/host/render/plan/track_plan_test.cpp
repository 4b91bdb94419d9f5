#include "host/render/plan/track_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/album/render_range.h"
#include "host/render/plan/sheet_times.h"
#include "host/render/plan/tag_places.h"
#include "tests/host/render/module/module_render.h"
#include "tests/host/render/plan/marks.h"

namespace velmor::render {
namespace {

using test::marker;
using test::ModuleRender;

Mark region(double from, double to, const std::string& name) {
  return {from, to, name};
}

SinkConfig config(int32_t mode, int32_t disc_ms, int32_t track_ms, bool hash = false) {
  return {static_cast<int32_t>(kIsoFormatCode), disc_ms, track_ms, 0, mode, hash};
}

/// Marks as the host hands them over for `frames` frames from `start` on: in order, on whole
/// frames, counted from there.
std::vector<Mark> prepared(std::vector<Mark> marks, int64_t start, int64_t frames,
                           const SinkConfig& settings) {
  std::stable_sort(marks.begin(), marks.end(),
                   [](const Mark& a, const Mark& b) { return a.start < b.start; });
  std::vector<Mark> left_out;
  marks = marksInRange(std::move(marks), start, start + frames,
                       static_cast<TrackMode>(settings.track_mode), settings.hash_markers_only != 0,
                       left_out);
  if (settings.track_mode == kTracksFromRegions) takeEmptyRegions(marks);
  return marks;
}

/// The image's samples that are no silence are those of the input that the plan says.
void expectSamples(const ModuleRender& render, const TrackPlan& plan) {
  const int16_t* at = render.left.data();
  const int16_t* const end = at + render.left.size();
  int64_t wrong = 0;
  for (const FrameStretch& stretch : plan.written) {
    for (int64_t frame = stretch.begin; frame < stretch.end; ++frame) {
      while (at != end && *at == 0) ++at;
      wrong += at == end || *at++ != test::sampleAt(frame);
    }
  }
  EXPECT_EQ(wrong, 0);
  while (at != end && *at == 0) ++at;
  EXPECT_EQ(at, end) << "more is written than planned";
}

/// The ISRC of each track as the plan has it, empty where it has none.
std::vector<std::string> isrcsOfTracks(const TrackPlan& plan, const std::vector<Mark>& marks) {
  std::vector<std::string> codes(plan.tracks.size());
  for (const IsrcPlace& place : placesOfIsrcs(plan, marks)) {
    for (const size_t track : place.given_to) codes[track] = place.code;
  }
  return codes;
}

/// The plan says what the module does: tracks, titles, times, and where each one's audio begins.
void expectPlanHolds(const SinkConfig& settings, std::vector<Mark> given, int64_t frames, int block,
                     int64_t start = 0) {
  const std::vector<Mark> marks = prepared(std::move(given), start, frames, settings);
  const TrackPlan plan = planTracks(settings, marks, frames);
  const ModuleRender render = test::renderThroughModule(settings, marks, frames, block);
  EXPECT_EQ(render.image_bytes, plan.image_frames * 4);
  EXPECT_EQ(render.seconds, static_cast<double>(plan.counted_frames) / 44100);
  ASSERT_EQ(render.indexes.size(), plan.tracks.size());
  expectSamples(render, plan);
  EXPECT_EQ(render.isrcs, isrcsOfTracks(plan, marks));
  for (size_t i = 0; i < plan.tracks.size(); ++i) {
    const PlannedTrack& track = plan.tracks[i];
    EXPECT_EQ(render.titles[i], track.title) << "track " << i + 1;
    EXPECT_EQ(render.indexes[i], test::sheetTime(track.start)) << "track " << i + 1;
    EXPECT_EQ(render.indexes[i], disc::msfText(startSectorInSheet(plan, i))) << "track " << i + 1;
    const auto gap = gapSectorInSheet(settings, plan, i);
    EXPECT_EQ(render.gaps[i], gap ? disc::msfText(*gap) : "") << "track " << i + 1;
    const bool silence_before = i == 0 ? settings.disc_leadin_ms : settings.track_leadin_ms;
    if (plan.written.empty()) continue;
    EXPECT_NE(render.left[static_cast<size_t>(track.start_frame)], 0) << "track " << i + 1;
    if (silence_before) {
      EXPECT_EQ(render.left[static_cast<size_t>(track.start_frame) - 1], 0) << "track " << i + 1;
      EXPECT_EQ(track.start_frame % 588, 0) << "track " << i + 1;
    }
  }
}

TEST(TrackPlan, IsWhatTheModuleDoesInEveryModeAndWithEveryLeadIn) {
  const std::vector<Mark> marks = {
      marker(0.0, "One"),        marker(0.2, "PERF=Ana"),         marker(3.9, "too early"),
      marker(0.3, "ISRC=first"), marker(2.0, "ISRC=late"),        marker(8.9995, "isrc=allowed"),
      marker(15.0, "ISRC=gap"),  region(9.3, 9.4, "ISRC=x"),      region(1.0, 6.5, "R1"),
      marker(5.00001, "#Two"),   region(6.0, 7.0, "R2 joins"),    marker(9.0, "exact four"),
      region(9.25, 14.0, "R3"),  marker(9.0000113, "same place"), marker(13.7, "Say \"Go\""),
      region(14.0, 14.5, "R4"),  marker(13.7, "twice"),           marker(16.9, "last one"),
      region(16.0, 40.0, "#R5"), marker(25.0, "past the end")};
  for (const int32_t mode : {kTracksFromMarkers, kTracksFromRegions, kOneTrack}) {
    for (const auto& [disc_ms, track_ms] :
         {std::pair{0, 0}, {2000, 2000}, {500, 0}, {0, 1}, {13, 1501}, {1, 3}}) {
      for (const bool hash : {false, true}) {
        SCOPED_TRACE(testing::Message() << "mode " << mode << ", lead-ins " << disc_ms << " and "
                                        << track_ms << ", hash " << hash);
        expectPlanHolds(config(mode, disc_ms, track_ms, hash), marks, 44100 * 18 + 17, 1024);
      }
    }
  }
}

TEST(TrackPlan, IsWhatTheModuleDoesForMarksAtRandom) {
  std::mt19937 random(588);
  const auto up_to = [&](int limit) {
    return std::uniform_int_distribution<int>(0, limit - 1)(random);
  };
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE(round);
    const int64_t frames = 44100 * (5 + up_to(20)) + up_to(588);
    const auto seconds = static_cast<double>(frames) / 44100.0;
    std::vector<Mark> marks;
    for (int i = up_to(12); i > 0; --i) {
      const double at = seconds * 1.1 * up_to(1000) / 1000.0;
      const std::string kind[] = {"#", "", "isrc=", "ISRC="};
      const std::string name = kind[up_to(4)] + std::to_string(i);
      marks.push_back(up_to(2) ? marker(at, name) : region(at, at + up_to(80) / 10.0, name));
    }
    const auto settings =
        config(up_to(2), up_to(2) * up_to(3000), up_to(2) * up_to(3000), up_to(2));
    const int64_t start = up_to(2) * up_to(static_cast<int>(frames) - 1);
    expectPlanHolds(settings, marks, frames - start, 1 + up_to(5000), start);
  }
}

TEST(TrackPlan, AMarkerExactlyFourSecondsAfterATrackStartMakesATrack) {
  const auto settings = config(kTracksFromMarkers, 0, 0);
  const auto tracks = [&](double at) {
    return planTracks(settings, {marker(0, "A"), marker(5, "B"), marker(at, "C")}, 44100 * 20)
        .tracks.size();
  };
  EXPECT_EQ(tracks(9.0), 3U);
  EXPECT_EQ(tracks(9.0 - 1.0 / 44100), 2U);
}

TEST(TrackPlan, TheMarkerThatMovesToTheStartKeepsTheNextOneFourSecondsAway) {
  const auto settings = config(kTracksFromMarkers, 0, 0);
  const int64_t start = 44100 * 8 + 17;
  const double four_later = static_cast<double>(start) / 44100 + 4.0;
  const auto plan = [&](double next) {
    std::vector<Mark> marks = {marker(0, "A"), marker(6, "B"), marker(next, "C")};
    SCOPED_TRACE(next);
    expectPlanHolds(settings, marks, 44100 * 10, 1024, start);
    return planTracks(settings, prepared(marks, start, 44100 * 10, settings), 44100 * 10);
  };
  EXPECT_EQ(plan(four_later).tracks.size(), 2U);
  const TrackPlan close = plan(four_later - 1.0 / 44100);
  ASSERT_EQ(close.tracks.size(), 1U);
  EXPECT_EQ(close.tracks[0].title, "B");
  EXPECT_EQ(close.track_of_mark.back(), std::nullopt);
}

using Tracks = std::vector<std::optional<size_t>>;

TEST(TrackPlan, TellsWhichMarkersMakeTracks) {
  const TrackPlan plan =
      planTracks(config(kTracksFromMarkers, 0, 0),
                 {marker(0, "One"), marker(2, "Early"), marker(5, "Two"), marker(6, "PERF=x"),
                  marker(8, "Close"), region(8, 9, "no marker"), marker(30, "behind the end")},
                 44100 * 20);
  const auto none = std::nullopt;
  EXPECT_EQ(plan.track_of_mark, (Tracks{0, none, 1, none, none, none, none}));
}

TEST(TrackPlan, TellsWhichRegionsJoinTheTrackBefore) {
  const TrackPlan plan =
      planTracks(config(kTracksFromRegions, 0, 0),
                 {region(0, 2, "One"), region(2, 8, "joined"), region(8, 14, "Three")}, 44100 * 20);
  EXPECT_EQ(plan.track_of_mark, (Tracks{0, std::nullopt, 1}));
  ASSERT_EQ(plan.tracks.size(), 2U);
  EXPECT_EQ(plan.tracks[1].title, "joined") << "titles go to the tracks in order";
}

TEST(TrackPlan, TracksFillTheImageFromTheFirstOnesAudioToTheEnd) {
  const TrackPlan plan = planTracks(config(kTracksFromMarkers, 2000, 1500),
                                    {marker(0, "A"), marker(5, "B"), marker(11, "C")}, 44100 * 20);
  ASSERT_EQ(plan.tracks.size(), 3U);
  EXPECT_EQ(plan.image_frames % 588, 0);
  int64_t at = plan.tracks[0].start_frame;
  EXPECT_EQ(at, 88200);
  for (const PlannedTrack& track : plan.tracks) {
    EXPECT_EQ(track.start_frame, at);
    at += track.frames;
  }
  EXPECT_EQ(at, plan.image_frames);
}

TEST(TrackPlan, KnowsWhichFramesOfTheInputAreWritten) {
  const auto written = [](int32_t mode, const std::vector<Mark>& marks) {
    std::vector<std::pair<int64_t, int64_t>> stretches;
    for (const FrameStretch& one : planTracks(config(mode, 0, 0), marks, 44100 * 20).written) {
      stretches.emplace_back(one.begin, one.end);
    }
    return stretches;
  };
  using Stretches = std::vector<std::pair<int64_t, int64_t>>;
  EXPECT_EQ(written(kTracksFromMarkers, {marker(0, "A"), marker(5, "B")}),
            (Stretches{{0, 44100 * 20}}));
  EXPECT_EQ(written(kOneTrack, {}), (Stretches{{0, 44100 * 20}}));
  EXPECT_EQ(written(kTracksFromRegions, {region(1, 6, "A"), region(5, 7, "B"), region(9, 30, "C")}),
            (Stretches{{44100, 44100 * 7}, {44100 * 9, 44100 * 20}}));
}

TEST(TrackPlan, ALeadInOfHoursIsAsLongAsTheModuleMakesIt) {
  const TrackPlan plan = planTracks(config(kOneTrack, 2147483647, 0), {}, 588);
  EXPECT_EQ(plan.image_frames * 4, int64_t{2147483647} / 2352 * 2352 + 2352);
}

// Pauses that an input's sheet gives to its tracks.

constexpr double kOneSector = 1.0 / 75;

struct Pause {
  double before = 0.0, behind = 0.0;
};

/// The tracks of a minute of audio that begin at these seconds with these pauses.
std::vector<PlannedTrack> tracksWith(const std::vector<std::pair<double, Pause>>& starts,
                                     bool hash_only = false) {
  std::vector<Mark> marks;
  for (const auto& [at, pause] : starts) {
    marks.push_back(marker(at, "#"));
    marks.back().pause_before = pause.before;
    marks.back().pause_behind = pause.behind;
  }
  const SinkConfig settings = config(kTracksFromMarkers, 0, 0, hash_only);
  return planTracks(settings, marks, 60 * test::kSecond).tracks;
}

TEST(PlannedPauses, LeaveFourSecondsOfTheTrackBefore) {
  const auto fitting = tracksWith({{0.0, {}}, {10.0, {.before = 6.0}}});
  EXPECT_EQ(fitting[1].pause_before, 6 * test::kSecond);
  EXPECT_FALSE(fitting[1].pause_lost);
  const auto too_long = tracksWith({{0.0, {}}, {10.0, {.before = 6.0 + kOneSector}}});
  EXPECT_EQ(too_long[1].pause_before, 0);
  EXPECT_TRUE(too_long[1].pause_lost);
}

TEST(PlannedPauses, LeaveFourSecondsOfTheTrackThatTheyBegin) {
  const auto fitting = tracksWith({{0.0, {.behind = 6.0}}, {10.0, {}}});
  EXPECT_EQ(fitting[0].pause_behind, 6 * test::kSecond);
  EXPECT_FALSE(fitting[0].pause_lost);
  const auto too_long = tracksWith({{0.0, {.behind = 6.0 + kOneSector}}, {10.0, {}}});
  EXPECT_EQ(too_long[0].pause_behind, 0);
  EXPECT_TRUE(too_long[0].pause_lost);
}

TEST(PlannedPauses, LeaveFourSecondsCountedInWholeSectors) {
  // The track loses one frame of 300 sectors, and keeps the sector in which that frame lies.
  const auto tracks = tracksWith({{0.0, {.behind = disc::secondsOf(1)}}, {4.0, {}}});
  EXPECT_EQ(tracks[0].pause_behind, 1);
}

TEST(PlannedPauses, OfTwoTracksLeaveFourSecondsBetweenThem) {
  const auto fitting = tracksWith({{0.0, {.behind = 3.0}}, {10.0, {.before = 3.0}}});
  EXPECT_EQ(fitting[1].pause_before, 3 * test::kSecond);
  const auto too_long = tracksWith({{0.0, {.behind = 3.0}}, {10.0, {.before = 3.0 + kOneSector}}});
  EXPECT_EQ(too_long[0].pause_behind, 3 * test::kSecond);
  EXPECT_FALSE(too_long[0].pause_lost);
  EXPECT_EQ(too_long[1].pause_before, 0);
  EXPECT_TRUE(too_long[1].pause_lost);
}

TEST(PlannedPauses, OfWhichOneIsLostAreTold) {
  const auto tracks = tracksWith({{0.0, {}}, {10.0, {.before = 2.0, .behind = 2.0}}, {15.0, {}}});
  EXPECT_EQ(tracks[1].pause_before, 2 * test::kSecond);
  EXPECT_EQ(tracks[1].pause_behind, 0);
  EXPECT_TRUE(tracks[1].pause_lost);
}

TEST(PlannedPauses, NeverBeginBeforeTrackOne) {
  // The first mark that counts may name track 1 from behind its start.
  const auto tracks = tracksWith({{3.0, {.before = 2.0}}, {10.0, {}}}, true);
  EXPECT_EQ(tracks[0].pause_before, 0);
  EXPECT_FALSE(tracks[0].pause_lost);
}

}  // namespace
}  // namespace velmor::render
