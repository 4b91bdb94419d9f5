// The image as a whole: length, order, padding, one-track renders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/fake_host/system_call_script.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

class Images : public BoundSession, public testing::Test {};

TEST_F(Images, OneTrackModeWritesEveryFrameAndNoBoundary) {
  for (const int mode : {2, 3, 77, -1}) {
    host.marks = {marker(1.0, "a"), marker(6.0, "b"), region(2.0, 3.0, "r")};
    Sink sink = createSink("disc.cue", {.track_leadin_ms = 1000, .track_mode = mode});
    ASSERT_TRUE(sink);
    sink.writeSignal(8 * 44100 + 5);
    EXPECT_EQ(sink->GetLength(), (8 * 44100 + 5) / 44100.0);
    sink.finish();
    expectImage(file("disc.bin"), Image().signal(0, 8 * 44100 + 5).toSector());
    EXPECT_EQ(fake_host::readText(file("disc.cue")),
              sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}))
        << mode;
  }
}

TEST_F(Images, OneTrackModeLooksAtNoMarkerUntilTheSheet) {
  host.marks = {marker(1.0, "a")};
  Sink sink = createSink("disc.cue", {.track_mode = 2});
  sink.writeSignal(44100);
  EXPECT_TRUE(host.marker_calls.empty());
}

TEST_F(Images, TheBlockScheduleDoesNotShow) {
  host.marks = {marker(0.0, "one"), marker(4.5, "two")};
  std::string first_image;
  for (const std::vector<int>& lengths :
       {std::vector<int>{300000}, {1024}, {1, 588, 4096, 77}, {44099, 44101}}) {
    Sink sink = createSink("disc.cue", {.disc_leadin_ms = 100, .track_leadin_ms = 300});
    ASSERT_TRUE(sink);
    sink.writeSignal(250000, {.lengths = lengths});
    sink.finish();
    sink.destroy();
    const std::string image = fake_host::readText(file("disc.bin"));
    if (first_image.empty()) first_image = image;
    EXPECT_TRUE(image == first_image) << lengths.front();
  }
}

TEST_F(Images, LengthCountsSilencesAsTheyAreWritten) {
  host.marks = {marker(5.0, "two")};
  Sink sink = createSink("disc.cue", {.disc_leadin_ms = 2000, .track_leadin_ms = 1000});
  EXPECT_EQ(sink->GetLength(), 2.0);
  sink.writeSignal(4 * 44100);
  EXPECT_EQ(sink->GetLength(), 6.0);
  sink.writeSignal(2 * 44100);
  EXPECT_EQ(sink->GetLength(), 9.0);
}

TEST_F(Images, AreWrittenInWholeBuffersOneAfterTheOther) {
  fake_host::SystemCallScript calls;
  Sink sink = createSink("disc.cue", {.track_mode = 2});
  ASSERT_TRUE(sink);
  sink.writeSignal(100000, {.lengths = {1000, 37}});
  EXPECT_EQ(calls.count(fake_host::SystemCall::kPwrite), 3);
  sink.destroy();
  ASSERT_EQ(calls.pwrites.size(), 4U);
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(calls.pwrites[i].offset, static_cast<int64_t>(i) * 131072);
    EXPECT_EQ(calls.pwrites[i].length, i < 3 ? 131072 : 400000 - 3 * 131072);
  }
}

}  // namespace
}  // namespace sink_test
