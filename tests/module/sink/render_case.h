// A render through the loaded module, from its marks to its sheet.
#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/module/sink/expected_disc.h"

namespace sink_test {

using expected::ExpectImage;
using expected::Image;
using expected::Sheet;
using fake_host::BlockSchedule;
using fake_host::BoundSession;
using fake_host::Mark;
using fake_host::Marker;
using fake_host::ReadText;
using fake_host::Region;
using fake_host::Settings;
using fake_host::Sink;

inline constexpr int64_t kSecond = expected::kFramesPerSecond;
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class RenderCase : public BoundSession, public testing::Test {
 protected:
  /// Renders `frames` of the signal from `start` seconds on; leaves disc.cue, whose text it
  /// returns, and disc.bin.
  std::string Render(const std::vector<Mark>& marks, int64_t frames, const Settings& settings = {},
                     const BlockSchedule& schedule = {}, double start = 0.0) {
    host.marks = marks;
    Sink sink = CreateSink("disc.cue", settings);
    EXPECT_TRUE(sink);
    if (!sink) return {};
    sink->SetStartTime(start);
    sink.WriteSignal(frames, schedule);
    EXPECT_EQ(sink.Finish(), 1);
    sink.Delete();
    return ReadText(File("disc.cue"));
  }
  /// A sheet with these lines of tracks after the FILE line.
  static std::string Tracks(const std::vector<std::string>& lines) {
    std::vector<std::string> all = {"FILE \"disc.bin\" BINARY"};
    all.insert(all.end(), lines.begin(), lines.end());
    return Sheet(all);
  }
};

}  // namespace sink_test
