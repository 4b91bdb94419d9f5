// Hosts and projects that go to the limits.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <filesystem>
#include <limits>

#include "tests/fake_host/allocation.h"
#include "tests/fake_host/system_call_script.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using fake_host::SystemCallScript;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::Pair;

constexpr int64_t kLongestSilence = 2147483647 / 2352 * 2352;
constexpr int64_t kLongestSilenceFrames = kLongestSilence / 4;
constexpr int64_t kMebibyte = 1 << 20;

class HostileInput : public RenderCase {
 protected:
  std::string render(const std::vector<Mark>& marks, const Settings& settings = {},
                     double start = 0.0) {
    return RenderCase::render(marks, 12 * kSecond, settings, {.lengths = {44100}}, start);
  }
  void expectWholeSignal() { expectImage(file("disc.bin"), Image().signal(0, 12 * kSecond)); }
};

// The length of a sink's image so far, as its writes tell, and whether it is silence throughout.
struct Written {
  int64_t bytes = 0;
  bool silent = true;
  int64_t longest = 0;
};

Written writtenBy(const SystemCallScript& calls) {
  Written written;
  int image = -1;
  for (const SystemCallScript::Open& open : calls.opens) {
    if (open.path.ends_with(".bin")) image = open.fd;
  }
  for (const SystemCallScript::Pwrite& write : calls.pwrites) {
    if (write.fd != image) continue;
    EXPECT_EQ(write.offset, written.bytes) << "a gap or an overlap";
    written.bytes = write.offset + write.length;
    written.silent = written.silent && write.only_zeros;
    written.longest = std::max(written.longest, write.length);
  }
  return written;
}

// Markers.

TEST_F(HostileInput, AMarkerAtNoPlaceIsPassedOver) {
  const std::string found = render(
      {marker(kNaN, "nowhere"), marker(1.0, "One"), marker(kNaN, "nowhere"), marker(5.0, "Two")});
  EXPECT_EQ(found, sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    TITLE \"One\"",
                          "    INDEX 01 00:00:00", "  TRACK 02 AUDIO", "    TITLE \"Two\"",
                          "    INDEX 01 00:05:00"}));
  expectWholeSignal();
}

TEST_F(HostileInput, ATagAtNoPlaceIsPassedOver) {
  EXPECT_THAT(render({marker(kNaN, "PERF=nobody"), marker(2.0, "PERF=P")}),
              HasSubstr("    PERFORMER \"P\"\r\n"));
}

TEST_F(HostileInput, AMarkerBeyondAllTimeLiesAhead) {
  for (const double far : {kInfinity, 1e300, 9.3e18, 2.1e14, 1e10}) {
    EXPECT_EQ(render({marker(5.0, "Two"), marker(far, "Far")}),
              sheet({"FILE \"disc.bin\" BINARY", "  TRACK 01 AUDIO", "    INDEX 01 00:00:00",
                     "  TRACK 02 AUDIO", "    TITLE \"Two\"", "    INDEX 01 00:05:00"}))
        << far;
    expectWholeSignal();
  }
}

TEST_F(HostileInput, AMarkerBeforeAllTimeIsPassedOver) {
  for (const double far : {-kInfinity, -1e300, -9.3e18, -1e10}) {
    EXPECT_THAT(render({marker(far, "Far"), marker(5.0, "Two")}),
                HasSubstr("  TRACK 02 AUDIO\r\n    TITLE \"Two\"\r\n    INDEX 01 00:05:00"))
        << far;
    expectWholeSignal();
  }
}

TEST_F(HostileInput, AStartTimeThatIsNoTimeLosesNoAudio) {
  for (const double start : {kNaN, kInfinity, -kInfinity, 1e300, -1e300}) {
    render({marker(1.0, "One"), marker(5.0, "Two"), region(2.0, 3.0, "R")}, {}, start);
    expectWholeSignal();
  }
}

// Regions.

TEST_F(HostileInput, ARegionWithAnEndAtNoPlaceIsPassedOver) {
  for (const Mark& broken :
       {region(kNaN, 4.0, "x"), region(2.0, kNaN, "x"), region(kNaN, kNaN, "x")}) {
    EXPECT_THAT(render({broken, region(5.0, 11.0, "Real")}, {.track_mode = kTracksFromRegions}),
                HasSubstr("  TRACK 01 AUDIO\r\n    TITLE \"Real\"\r\n"));
    expectImage(file("disc.bin"), Image().signal(5 * kSecond, 11 * kSecond));
  }
}

TEST_F(HostileInput, ARegionWithoutAnEndTakesTheRestOfTheRender) {
  for (const double far : {kInfinity, 1e300, 9.3e18, 2.1e14}) {
    render({region(5.0, far, "On")}, {.track_mode = kTracksFromRegions});
    expectImage(file("disc.bin"), Image().signal(5 * kSecond, 12 * kSecond));
    render({region(-far, 5.0, "Before")}, {.track_mode = kTracksFromRegions});
    expectImage(file("disc.bin"), Image().signal(0, 5 * kSecond));
    render({region(-far, far, "All")}, {.track_mode = kTracksFromRegions});
    expectWholeSignal();
  }
}

TEST_F(HostileInput, ARegionBeyondTheRenderWritesNothing) {
  for (const double far : {1e10, 9.3e18, 1e300}) {
    render({region(far, far * 1.5, "Far")}, {.track_mode = kTracksFromRegions});
    EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), 0) << far;
    render({region(-far * 1.5, -far, "Long ago")}, {.track_mode = kTracksFromRegions});
    EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), 0) << far;
  }
}

TEST_F(HostileInput, ARegionThatRunsBackwardsLetsTheRestOfTheBlockWithBothItsEndsThrough) {
  // Its end has passed where it begins.
  const std::string sheet =
      RenderCase::render({region(6.0, 5.5, "Backwards")}, 12 * kSecond,
                         {.track_mode = kTracksFromRegions}, {.lengths = {4 * 44100}});
  expectImage(file("disc.bin"), Image().signal(6 * kSecond, 8 * kSecond));
  EXPECT_EQ(sheet,
            tracks({"  TRACK 01 AUDIO", "    TITLE \"Backwards\"", "    INDEX 01 00:00:00"}));
}

TEST_F(HostileInput, ARegionThatEndsInABlockBeforeItBeginsIsPassedOver) {
  EXPECT_EQ(render({region(6.0, 5.5, "Backwards")}, {.track_mode = kTracksFromRegions}),
            tracks({"  TRACK 01 AUDIO", "    INDEX 01 00:00:00"}));
  EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), 0);
}

// Lead-ins.

TEST_F(HostileInput, ALeadInOverTwelveSecondsIsAsLongAsAsked) {
  for (const int ms : {12173, 12174, 12175, 20000, 60000}) {
    Sink sink = createSink("disc.cue", {.disc_leadin_ms = ms});
    ASSERT_TRUE(sink);
    sink.finish();
    sink.destroy();
    const int64_t bytes = int64_t{ms} * 176400 / 1000;
    EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")), (bytes + 2351) / 2352 * 2352) << ms;
  }
}

TEST_F(HostileInput, ALongTrackLeadInIsAsLongAsAsked) {
  render({marker(5.0, "Two")}, {.track_leadin_ms = 13000});
  expectImage(
      file("disc.bin"),
      Image().signal(0, 5 * kSecond).silence(13 * kSecond).signal(5 * kSecond, 12 * kSecond));
  EXPECT_THAT(readText(file("disc.cue")), HasSubstr("INDEX 00 00:05:00\r\n    INDEX 01 00:18:00"));
}

TEST_F(HostileInput, ADiscLeadInPastTwoGibibytesIsCappedAtWholeSectors) {
  for (const int ms : {2000000000, INT_MAX}) {
    SystemCallScript calls;
    calls.swallowWritesTo(".bin");
    {
      const fake_host::MemoryLimit limit(64 * kMebibyte);
      Sink sink = createSink("disc.cue", {.disc_leadin_ms = ms});
      ASSERT_TRUE(sink);
      EXPECT_EQ(sink->GetLength(), static_cast<double>(kLongestSilenceFrames) / 44100.0) << ms;
      sink.finish();
    }
    if (ms == 2000000000) {
      EXPECT_THAT(readText(file("disc.cue")), HasSubstr("    INDEX 01 33333:20:00\r\n"))
          << "the sheet tells the length that was asked for";
    }
    const Written written = writtenBy(calls);
    EXPECT_EQ(written.bytes, kLongestSilence) << ms;
    EXPECT_TRUE(written.silent);
  }
}

TEST_F(HostileInput, TheCapBeginsWhereTheBytesNoLongerFit) {
  // 12173944 ms are 2,147,483,721 bytes, one millisecond less 2,147,483,545.
  struct Case {
    int ms;
    int64_t bytes;
  };
  for (const Case& c : {Case{12173943, 2147483545}, Case{12173944, kLongestSilence}}) {
    SystemCallScript calls;
    calls.swallowWritesTo(".bin");
    Sink sink = createSink("disc.cue", {.disc_leadin_ms = c.ms});
    ASSERT_TRUE(sink);
    sink.destroy();
    EXPECT_EQ(writtenBy(calls).bytes, (c.bytes + 2351) / 2352 * 2352) << c.ms;
  }
}

TEST_F(HostileInput, ATrackLeadInPastTwoGibibytesIsCappedAtWholeSectors) {
  SystemCallScript calls;
  calls.swallowWritesTo(".bin");
  host.marks = {marker(5.0, "Two")};
  Sink sink = createSink("disc.cue", {.track_leadin_ms = 2000000000});
  ASSERT_TRUE(sink);
  sink.writeSame(5 * kSecond);
  {
    const fake_host::MemoryLimit limit(64 * kMebibyte);
    sink.writeSame(kSecond);
  }
  EXPECT_EQ(sink->GetLength(), static_cast<double>(6 * kSecond + kLongestSilenceFrames) / 44100.0);
  sink.finish();
  // A gap of 2000000 seconds before 12178.9 would lie before the disc.
  EXPECT_THAT(readText(file("disc.cue")),
              HasSubstr("    INDEX 00 00:00:00\r\n    INDEX 01 202:58:69\r\n"));
}

// Blocks.

TEST_F(HostileInput, ABlockOverTwoToTheThirtyFirstBytesIsNotWrittenAndIsReported) {
  Sink sink = createSink("disc.cue", {.track_mode = kOneTrack});
  ASSERT_TRUE(sink);
  sink.writeSignal(588);
  double one = 0.5;
  double* channels[] = {&one, &one};
  for (const int frames : {INT_MAX, INT_MAX - 1, 1 << 30, 1 << 29}) {
    host.disk_counters.clear();
    const fake_host::MemoryLimit limit(64 * kMebibyte);
    sink->WriteDoubles(channels, frames, 2, 0, 0);
    EXPECT_THAT(host.disk_counters, ElementsAre(Pair(0, -101010110))) << frames;
  }
  EXPECT_EQ(sink->GetLength(), 588 / 44100.0);
  sink.writeSignal(588);
  sink.finish();
  expectImage(file("disc.bin"), Image().signal(0, 1176));
}

TEST_F(HostileInput, ABlockWhoseBufferDoesNotFitIntoMemoryIsNotWrittenAndIsReported) {
  Sink sink = createSink("disc.cue", {.track_mode = kOneTrack});
  ASSERT_TRUE(sink);
  double one = 0.5;
  double* channels[] = {&one, &one};
  {
    const fake_host::MemoryLimit limit(64 * kMebibyte);
    sink->WriteDoubles(channels, 1 << 27, 2, 0, 0);
  }
  EXPECT_THAT(host.disk_counters, ElementsAre(Pair(0, -101010110)));
  EXPECT_EQ(sink->GetLength(), 0.0);
  sink.writeSignal(588);
  sink.destroy();
  expectImage(file("disc.bin"), Image().signal(0, 588));
}

TEST_F(HostileInput, TheCountOfInputFramesStaysAtItsMaximum) {
  // Nothing is converted where there is no region, so the whole range passes in no time.
  host.marks = {};
  Sink sink = createSink("disc.cue", {.track_mode = kTracksFromRegions});
  ASSERT_TRUE(sink);
  double one = 0.5;
  double* channels[] = {&one, &one};
  for (int i = 0; i < 2; ++i) sink->WriteDoubles(channels, INT_MAX, 2, 0, 0);
  // Time stands still at 2147483647 frames from here on: every block begins there.
  const double now = 2147483647.0 / 44100;
  host.marks = {region(now + 1.0, now + 5.0, "Late")};
  sink->WriteDoubles(channels, 4 * kSecond, 2, 0, 0);
  EXPECT_EQ(sink->GetLength(), 3.0);
  EXPECT_THAT(host.disk_counters, testing::IsEmpty());
}

TEST_F(HostileInput, AFloodOfMarkersPassesOnce) {
  for (int i = 0; i < 20000; ++i) host.marks.push_back(marker(5.0 + i * 1e-4, "m"));
  Sink sink = createSink("disc.cue");
  sink.writeSignal(8 * kSecond, {.lengths = {4410}});
  EXPECT_LT(host.marker_calls.size(), 20000U + 200U);
  sink.finish();
  EXPECT_THAT(readText(file("disc.cue")), HasSubstr("TRACK 02"));
  EXPECT_THAT(readText(file("disc.cue")), Not(HasSubstr("TRACK 03")));
}

// Memory.

class ShortMemory : public HostileInput, public testing::WithParamInterface<fake_host::Times> {
 protected:
  bool failsOnce() const { return GetParam() == fake_host::Times::kOnce; }
  /// What the image lacks for want of memory has been reported, and a single failure costs nothing.
  void expectReported(bool lacking) {
    EXPECT_EQ(!host.disk_counters.empty(), lacking);
    EXPECT_THAT(host.disk_counters, testing::Each(Pair(0, -101010110)));
    if (failsOnce()) {
      EXPECT_FALSE(lacking);
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Allocations, ShortMemory,
                         testing::Values(fake_host::Times::kOnce, fake_host::Times::kFromThenOn),
                         [](const auto& parameter) {
                           return parameter.param == fake_host::Times::kOnce ? "One"
                                                                             : "OneAndAllLater";
                         });

TEST_P(ShortMemory, WhicheverAllocationFailsThereIsAUsableSinkOrNone) {
  host.metadata = {{"CUE:DISC_TITLE", "a title that is longer than a short string would hold"},
                   {"CUE:DISC_PERFORMER", "p"}};
  host.marks = {marker(0.0, "a name that is longer than a short string would hold")};
  const std::string path = file("disc.cue");
  SinkConfig config = fake_host::makeConfig({.disc_leadin_ms = 2000});
  const int descriptors = fake_host::openDescriptors();
  int without_sink = 0;
  for (int nth = 1;; ++nth) {
    ASSERT_LT(nth, 200) << "no end of allocations";
    PCM_sink* made = nullptr;
    bool fired = false;
    host.disk_counters.clear();
    {
      const fake_host::FailingAllocation failing(nth, GetParam());
      EXPECT_NO_THROW(
          made = registration().CreateSink(path.c_str(), &config, sizeof config, 2, 44100, false));
      fired = failing.fired();
    }
    Sink sink(made);
    if (!sink) {
      ASSERT_TRUE(fired);
      ++without_sink;
      EXPECT_EQ(fake_host::openDescriptors(), descriptors) << "allocation " << nth;
      continue;
    }
    sink.writeSignal(588);
    sink.finish();
    const bool without_lead_in = fake_host::sizeOfFile(file("disc.bin")) == 2352;
    expectReported(without_lead_in);
    expectImage(file("disc.bin"), Image().silence(without_lead_in ? 0 : 88200).signal(0, 588));
    EXPECT_THAT(readText(path), HasSubstr("    INDEX 01 00:02:00\r\n")) << "allocation " << nth;
    if (!fired) break;
  }
  EXPECT_GE(without_sink, 3) << "a sink and its two writers at least";
}

// A block that cannot be had by growing an old one is asked for a second time as a new one, so that
// two failures in a row are what leaves a text as it was while the next text finds room.
TEST_F(HostileInput, ANameThatMemoryLeavesUnsetMakesNoSinkAndNoOtherFile) {
  SinkConfig config = fake_host::makeConfig({});
  for (const char* name : {"disc.cue", "disc"}) {
    const std::string path = file(name);
    bool fired = true;
    for (int nth = 1; fired; ++nth) {
      ASSERT_LT(nth, 200) << "no end of allocations";
      PCM_sink* made = nullptr;
      {
        const fake_host::FailingAllocation failing(nth, fake_host::Times::kOnce);
        const fake_host::FailingAllocation next(nth + 1, fake_host::Times::kOnce);
        made = registration().CreateSink(path.c_str(), &config, sizeof config, 2, 44100, false);
        fired = failing.fired();
      }
      const Sink sink(made);
      if (sink) {
        EXPECT_EQ(sink->GetFileName(), file("disc.cue")) << "allocation " << nth;
      }
      EXPECT_FALSE(std::filesystem::remove(".bin")) << "allocation " << nth;
    }
  }
}

TEST_P(ShortMemory, WhicheverAllocationFailsARenderGoesOn) {
  host.marks = {marker(0.0, "a name that is longer than a short string would hold"),
                marker(5.0, "another name that is longer than a short string would hold"),
                marker(6.0, "PERF=a performer that is longer than a short string would hold")};
  const int descriptors = fake_host::openDescriptors();
  for (int nth = 1;; ++nth) {
    ASSERT_LT(nth, 200) << "no end of allocations";
    Sink sink = createSink("disc.cue", {.track_leadin_ms = 1000});
    ASSERT_TRUE(sink);
    bool fired = false;
    double one = 0.25;
    double* channels[] = {&one, &one};
    host.disk_counters.clear();
    {
      const fake_host::FailingAllocation failing(nth, GetParam());
      EXPECT_NO_THROW(sink->WriteDoubles(channels, 10 * 44100, 2, 0, 0));
      EXPECT_NO_THROW(sink.finish());
      EXPECT_NO_THROW(sink.destroy());
      fired = failing.fired();
    }
    EXPECT_EQ(fake_host::openDescriptors(), descriptors) << "allocation " << nth;
    expectReported(fake_host::sizeOfFile(file("disc.bin")) != 11 * 44100 * 4);
    const std::string sheet = readText(file("disc.cue"));
    EXPECT_THAT(sheet, testing::StartsWith("FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n"));
    if (failsOnce()) {
      EXPECT_THAT(sheet, HasSubstr("    PERFORMER \"a performer that is longer than a short"));
      EXPECT_THAT(sheet, HasSubstr("    INDEX 00 00:05:00\r\n    INDEX 01 00:06:00\r\n"));
    }
    if (!fired) break;
  }
}

}  // namespace
}  // namespace sink_test
