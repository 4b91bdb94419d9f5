#include "fuzz/module/finished_disc.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "fuzz/kit/fuzz_target.h"

namespace fuzz {

namespace {

constexpr int kSectorBytes = 2352;
constexpr int kFrameBytes = 4;
constexpr int kSectorsPerSecond = 75;
constexpr double kSampleRate = 44100.0;

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  require(file.good(), "the finished sheet can be read");
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The sheet's text behind `at` up to the next line end. Names hold no line break here, so that
/// only the sheet's own lines end.
std::string lineAt(const std::string& sheet, size_t at) {
  return sheet.substr(at, sheet.find("\r\n", at) - at);
}

/// Counts the tracks, which must be numbered without a gap.
int countTracks(const std::string& sheet) {
  int tracks = 0;
  for (size_t at = 0; (at = sheet.find(" AUDIO\r\n", at)) != std::string::npos; ++at) {
    char expected[64];
    snprintf(expected, sizeof(expected), "  TRACK %02d", ++tracks);
    const std::string line(expected);
    require(at >= line.size() && sheet.compare(at - line.size(), line.size(), line) == 0,
            "the sheet's tracks count up from 1");
  }
  return tracks;
}

/// The sectors of the sheet's INDEX 01 lines.
std::vector<long long> trackStarts(const std::string& sheet) {
  const std::string key = "    INDEX 01 ";
  std::vector<long long> starts;
  for (size_t at = 0; (at = sheet.find(key, at)) != std::string::npos; ++at) {
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

void requireWholeDisc(const std::string& sheet_path, const std::string& image_path,
                      double seconds) {
  const auto bytes = static_cast<long long>(std::filesystem::file_size(image_path));
  require(bytes % kSectorBytes == 0, "the image is whole sectors");

  const std::string sheet = contentsOf(sheet_path);
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

void requireClosed(const std::string& path) {
  const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  require(fd >= 0, "a render's file is there after it");
  require(flock(fd, LOCK_EX | LOCK_NB) == 0, "nobody holds a render's file after it");
  close(fd);
}

}  // namespace fuzz
