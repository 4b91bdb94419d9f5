#include "fuzz/module/finished_disc.h"

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "fuzz/kit/fuzz_target.h"

namespace fuzz {

namespace {

constexpr int kSectorBytes = 2352;
constexpr int kFrameBytes = 4;
constexpr int kSectorsPerSecond = 75;
constexpr double kSampleRate = 44100.0;

/// The sheet's text behind `at` up to the next line end. Names hold no line break here, so that
/// only the sheet's own lines end.
std::string lineAt(std::string_view sheet, size_t at) {
  return std::string(sheet.substr(at, sheet.find("\r\n", at) - at));
}

/// Counts the tracks, which must be numbered without a gap.
int countTracks(std::string_view sheet) {
  int tracks = 0;
  for (size_t at = 0; (at = sheet.find(" AUDIO\r\n", at)) != std::string_view::npos; ++at) {
    char expected[64];
    snprintf(expected, sizeof(expected), "  TRACK %02d", ++tracks);
    const std::string line(expected);
    require(at >= line.size() && sheet.compare(at - line.size(), line.size(), line) == 0,
            "the sheet's tracks count up from 1");
  }
  return tracks;
}

/// The sectors of the sheet's INDEX 01 lines.
std::vector<long long> trackStarts(std::string_view sheet) {
  const std::string key = "    INDEX 01 ";
  std::vector<long long> starts;
  for (size_t at = 0; (at = sheet.find(key, at)) != std::string_view::npos; ++at) {
    const std::string line = lineAt(sheet, at + key.size());
    long long minutes = 0;
    int seconds = 0;
    int frames = 0;
    int end = 0;
    const int found = sscanf(line.c_str(), "%lld:%2d:%2d%n", &minutes, &seconds, &frames, &end);
    // A title may hold such text, but then a quote follows.
    if (found != 3 || static_cast<size_t>(end) != line.size()) continue;
    require(seconds >= 0 && seconds < 60 && frames >= 0 && frames < kSectorsPerSecond,
            "a time's parts are in range");
    starts.push_back((minutes * 60 + seconds) * kSectorsPerSecond + frames);
  }
  return starts;
}

}  // namespace

void requireWholeDisc(std::string_view sheet, size_t image_bytes, double seconds) {
  const auto bytes = static_cast<long long>(image_bytes);
  require(bytes % kSectorBytes == 0, "the image is whole sectors");

  const int tracks = countTracks(sheet);
  require(tracks >= 1, "the sheet has a track");
  const double uncounted = static_cast<double>(bytes) / kFrameBytes - seconds * kSampleRate;
  require(std::abs(uncounted) <= tracks + 1.0, "the sink counts the frames that the image has");

  const std::vector<long long> starts = trackStarts(sheet);
  require(static_cast<int>(starts.size()) == tracks, "every track has one INDEX 01");
  for (size_t i = 1; i < starts.size(); ++i)
    require(starts[i] > starts[i - 1], "tracks start one after the other");
  require(starts.back() <= bytes / kSectorBytes, "the last track starts inside the image");
}

}  // namespace fuzz
