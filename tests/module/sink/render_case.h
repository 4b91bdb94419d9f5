// A render through the loaded module, from its marks to its sheet.
#pragma once

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "tests/module/sink/expected_disc.h"

namespace sink_test {

using expected::expectImage;
using expected::Image;
using expected::sheet;
using fake_host::BlockSchedule;
using fake_host::BoundSession;
using fake_host::Mark;
using fake_host::marker;
using fake_host::readText;
using fake_host::region;
using fake_host::Settings;
using fake_host::Sink;

inline constexpr int64_t kSecond = expected::kFramesPerSecond;
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

class RenderCase : public BoundSession, public testing::Test {
 protected:
  /// Renders `frames` of the signal from `start` seconds on; leaves disc.cue, whose text it
  /// returns, and disc.bin.
  std::string render(const std::vector<Mark>& marks, int64_t frames, const Settings& settings = {},
                     const BlockSchedule& schedule = {}, double start = 0.0) {
    host.marks = marks;
    Sink sink = createSink("disc.cue", settings);
    EXPECT_TRUE(sink);
    if (!sink) return {};
    sink->SetStartTime(start);
    sink.writeSignal(frames, schedule);
    EXPECT_EQ(sink.finish(), 1);
    sink.destroy();
    return readText(file("disc.cue"));
  }
  /// A sheet with these lines of tracks after the FILE line.
  static std::string tracks(const std::vector<std::string>& lines) {
    std::vector<std::string> all = {"FILE \"disc.bin\" BINARY"};
    all.insert(all.end(), lines.begin(), lines.end());
    return sheet(all);
  }
};

}  // namespace sink_test
