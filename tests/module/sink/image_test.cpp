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
    host.marks = {Marker(1.0, "a"), Marker(6.0, "b"), Region(2.0, 3.0, "r")};
    Sink sink = CreateSink("disc.cue", {.track_leadin_ms = 1000, .track_mode = mode});
    ASSERT_TRUE(sink);
    sink.WriteSignal(8 * 44100 + 5);
    EXPECT_EQ(sink->GetLength(), (8 * 44100 + 5) / 44100.0);
    sink.Finish();
    ExpectImage(File("disc.bin"), Image().Signal(0, 8 * 44100 + 5).ToSector());
    EXPECT_EQ(fake_host::ReadText(File("disc.cue")),
              Sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}))
        << mode;
  }
}

TEST_F(Images, OneTrackModeLooksAtNoMarkerUntilTheSheet) {
  host.marks = {Marker(1.0, "a")};
  Sink sink = CreateSink("disc.cue", {.track_mode = 2});
  sink.WriteSignal(44100);
  EXPECT_TRUE(host.marker_calls.empty());
}

TEST_F(Images, TheBlockScheduleDoesNotShow) {
  host.marks = {Marker(0.0, "one"), Marker(4.5, "two")};
  std::string first_image;
  for (const std::vector<int>& lengths :
       {std::vector<int>{300000}, {1024}, {1, 588, 4096, 77}, {44099, 44101}}) {
    Sink sink = CreateSink("disc.cue", {.disc_leadin_ms = 100, .track_leadin_ms = 300});
    ASSERT_TRUE(sink);
    sink.WriteSignal(250000, {.lengths = lengths});
    sink.Finish();
    sink.Delete();
    const std::string image = fake_host::ReadText(File("disc.bin"));
    if (first_image.empty()) first_image = image;
    EXPECT_TRUE(image == first_image) << lengths.front();
  }
}

TEST_F(Images, LengthCountsSilencesAsTheyAreWritten) {
  host.marks = {Marker(5.0, "two")};
  Sink sink = CreateSink("disc.cue", {.disc_leadin_ms = 2000, .track_leadin_ms = 1000});
  EXPECT_EQ(sink->GetLength(), 2.0);
  sink.WriteSignal(4 * 44100);
  EXPECT_EQ(sink->GetLength(), 6.0);
  sink.WriteSignal(2 * 44100);
  EXPECT_EQ(sink->GetLength(), 9.0);
}

TEST_F(Images, AreWrittenInWholeBuffersOneAfterTheOther) {
  fake_host::SystemCallScript calls;
  Sink sink = CreateSink("disc.cue", {.track_mode = 2});
  ASSERT_TRUE(sink);
  sink.WriteSignal(100000, {.lengths = {1000, 37}});
  EXPECT_EQ(calls.count(fake_host::SystemCall::kPwrite), 3);
  sink.Delete();
  ASSERT_EQ(calls.pwrites.size(), 4U);
  for (size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(calls.pwrites[i].offset, static_cast<int64_t>(i) * 131072);
    EXPECT_EQ(calls.pwrites[i].length, i < 3 ? 131072 : 400000 - 3 * 131072);
  }
}

}  // namespace
}  // namespace sink_test
