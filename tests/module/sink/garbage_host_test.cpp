// A host whose marker and metadata functions answer anything, each in turn.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/kit/faults/live_blocks.h"
#include "tests/kit/faults/system_calls.h"
#include "tests/module/sink/render_case.h"

namespace sink_test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int kEndless = 3000;  ///< entries after which this test's host ends a list all the same
constexpr size_t kLongText = size_t{1} << 20;

/// Texts that no person writes.
std::vector<std::optional<std::string>> garbageTexts() {
  return {std::nullopt,
          "",
          std::string(kLongText, 'x'),
          std::string(kLongText, '"'),
          std::string("PERF=") + std::string(kLongText, 'p'),
          "isrc=",
          "#",
          "\xff\xfe\x80\xc3\xf8\x88 no UTF-8 \xed\xa0\x80",
          std::string(5000, '\xc3'),
          "%s%n%1000000d",
          "a\r\nb\nINDEX 01 00:00:00\r\n"};
}

std::vector<double> garbageTimes() {
  return {kNaN, kInfinity, -kInfinity, 1e308, -1e308, 5e-324, -0.0, 9.3e18, -9.3e18};
}

class GarbageHost : public RenderCase, public testing::WithParamInterface<int> {
 protected:
  /// A render of six seconds in which the host answers this; the sheet. Whatever comes, the whole
  /// sheet and image are there, in sectors, and nothing is kept back.
  std::string renderWith(const std::vector<Mark>& marks, double start, const std::string& about) {
    const int blocks = test_kit::liveBlocks();
    {
      test_kit::SystemCalls watch;
      watch.watchOnly("/module.so");
      host.marks = marks;
      Sink sink = createSink("disc.cue", {.track_leadin_ms = 100,
                                          .track_mode = GetParam(),
                                          .hash_markers_only = GetParam() == kTracksFromMarkers});
      EXPECT_TRUE(sink) << about;
      sink->SetStartTime(start);
      sink.writeSame(6 * 44100);
      EXPECT_EQ(sink.finish(), 1) << about;
    }
    EXPECT_EQ(test_kit::liveBlocks(), blocks) << about;
    EXPECT_THAT(host.disk_counters, testing::IsEmpty()) << about;
    const int64_t bytes = fake_host::sizeOfFile(file("disc.bin"));
    EXPECT_EQ(bytes % 2352, 0) << about;
    EXPECT_GE(bytes, GetParam() == kTracksFromRegions ? 0 : kAudioBytes) << about;
    const std::string sheet = readText(file("disc.cue"));
    EXPECT_THAT(sheet, HasSubstr("FILE \"disc.bin\" BINARY\r\n  TRACK 01 AUDIO\r\n")) << about;
    EXPECT_TRUE(sheet.ends_with("\r\n")) << about;
    EXPECT_EQ(sheet.find('\0'), std::string::npos) << about;
    return sheet;
  }
  static constexpr int64_t kAudioBytes = int64_t{6} * 176400;
};

INSTANTIATE_TEST_SUITE_P(TrackModes, GarbageHost,
                         testing::Values(int{kTracksFromMarkers}, int{kTracksFromRegions},
                                         int{kOneTrack}));

TEST_P(GarbageHost, WhateverANameIsTheAlbumIsWhole) {
  for (const auto& text : garbageTexts()) {
    const std::string about = text ? "name " + text->substr(0, 20) : "no name";
    renderWith({marker(0.0, text), region(0.5, 3.0, text), marker(4.5, text),
                region(4.5, 5.5, text), marker(5.0, text)},
               0.0, about);
  }
}

TEST_P(GarbageHost, WhateverATimeIsTheAlbumIsWhole) {
  for (const double time : garbageTimes()) {
    const std::string about = "time " + std::to_string(time);
    renderWith({marker(time, "#m"), region(time, 3.0, "r")}, 0.0, about);
    renderWith({region(0.5, time, "r"), marker(4.5, "#m")}, 0.0, about);
    renderWith({region(time, time, "r"), marker(time, "PERF=p")}, 0.0, about);
    renderWith({marker(4.5, "#m"), region(1.0, 5.0, "r")}, time, about);
  }
}

TEST_P(GarbageHost, AListOfMarksWithoutAnEndIsWalkedOnceForEachTrack) {
  const std::vector<Mark> endless(kEndless, marker(0.0, "PERF=of all"));
  renderWith(endless, 0.0, "markers");
  EXPECT_LT(host.marker_calls.size(), size_t{4} * kEndless) << "and not for each block";
  host.marker_calls.clear();
  renderWith(std::vector<Mark>(kEndless, region(kNaN, kNaN, "nowhere")), 0.0, "regions");
  EXPECT_LT(host.marker_calls.size(), size_t{12} * kEndless);
  EXPECT_EQ(fake_host::sizeOfFile(file("disc.bin")),
            GetParam() == kTracksFromRegions ? 0 : kAudioBytes);
}

TEST_P(GarbageHost, WhateverTheMetadataAreTheAlbumIsWhole) {
  for (const auto& text : garbageTexts()) {
    const std::string about = text ? "metadata " + text->substr(0, 20) : "none";
    const std::string value = text.value_or("");
    host.metadata = {{text, "value"},      {"CUE:DISC_TITLE", value}, {"CUE:DISC_" + value, value},
                     {"CUE:DISC_", value}, {std::nullopt, value},     {"CUE:DISC_PERFORMER", "P"}};
    EXPECT_THAT(renderWith({}, 0.0, about), HasSubstr("PERFORMER \"P\"\r\n")) << about;
  }
}

TEST_P(GarbageHost, AListOfMetadataWithoutAnEndIsKeptOncePerKey) {
  host.metadata.assign(kEndless, {"CUE:DISC_TITLE", "The first"});
  host.metadata.back().value = "The last";
  EXPECT_THAT(renderWith({}, 0.0, "metadata"), StartsWith("TITLE \"The first\"\r\nFILE"));
}

}  // namespace
}  // namespace sink_test
