#include "tests/module/model/random_render.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace model {
namespace {

constexpr double kRate = 44100.0;
constexpr size_t kPoolSize = 1 << 18;
constexpr int kLongestBlock = 60000;

class Dice {
 public:
  explicit Dice(uint64_t seed) : m_engine(seed * 0x9E3779B97F4A7C15ull + 1) {}

  int below(int limit) { return static_cast<int>(m_engine() % static_cast<uint64_t>(limit)); }
  int between(int low, int high) { return low + below(high - low + 1); }
  bool chance(int percent) { return below(100) < percent; }
  double uniform(double low, double high) {
    return low + (high - low) * (static_cast<double>(m_engine() >> 11) * 0x1.0p-53);
  }
  template <class T>
  const T& pick(const std::vector<T>& choices) {
    return choices[static_cast<size_t>(below(static_cast<int>(choices.size())))];
  }

 private:
  std::mt19937_64 m_engine;
};

int randomLeadIn(Dice& dice) {
  static const std::vector<int> kCorners = {1,   2,    3,    7,    13,   40,   499, 500,
                                            999, 1000, 1001, 1500, 2000, 2001, -1,  -250};
  if (dice.chance(40)) return 0;
  if (dice.chance(3)) return dice.between(12170, 13400);  // the bytes of a second and of 32 bits
  return dice.chance(60) ? dice.pick(kCorners) : dice.between(1, 3999);
}

SinkConfig randomConfig(Dice& dice) {
  static const std::vector<int> kModes = {0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 2, 3, -1};
  static const std::vector<int> kHash = {0, 0, 0, 1, 1, 2};
  SinkConfig config{};
  config.format_code = static_cast<int32_t>(kIsoFormatCode);
  config.disc_leadin_ms = randomLeadIn(dice);
  config.track_leadin_ms = randomLeadIn(dice);
  config.track_mode = dice.pick(kModes);
  config.hash_markers_only = dice.pick(kHash);
  return config;
}

std::optional<std::string> randomName(Dice& dice, bool mostly_hash) {
  static const std::vector<std::string> kTitles = {"Intro",       "Say \"Go\"", "",       "\"",
                                                   "Caf\xC3\xA9", "100%s %d",   "a/b\\c", " ",
                                                   "PERF",        "ISRC",       "perf"};
  static const std::vector<std::string> kHashTitles = {"#Coda",      "#",          "##Twice",
                                                       "#PERF=kept", "#isrc=KEPT", "#\"quoted\""};
  static const std::vector<std::string> kTags = {
      "PERF=Ana",     "perf=Ben",          "PeRf=",       "WRIT=Cleo",     "writ=Dan \"D\"",
      "ISRC=USABC05", "Isrc=USABC0500001", "PERF=PERF=x", "WRIT= spaced ", "iSRC="};
  const int kind = dice.below(100);
  if (kind < 6) return std::nullopt;
  if (kind < 8) return std::string(static_cast<size_t>(dice.between(4070, 4100)), 'n');
  if (kind < 10) return "WRIT=" + std::string(static_cast<size_t>(dice.between(4060, 4100)), 'w');
  if (kind < 38) return dice.pick(kTags);
  return dice.pick(dice.chance(mostly_hash ? 80 : 25) ? kHashTitles : kTitles);
}

/// A time on the timeline; `others` are times that it may lie at or close to.
double randomTime(Dice& dice, double start, double length, const std::vector<double>& others) {
  if (dice.chance(30)) return others.back() + dice.uniform(3.5, 7.0);
  if (!others.empty() && dice.chance(40)) {
    static const std::vector<double> kDistances = {
        0.0, 4.0,         4.0 - 1 / kRate,   4.0 + 1 / kRate, 0.5 / kRate,
        2.0, 0.4 / kRate, -0.6 / kRate,      -0.0005,         0.0005,
        3.0, 4.0001,      4.0 - 0.5 / kRate, 588.0 / kRate,   1e-9};
    return dice.pick(others) + dice.pick(kDistances);
  }
  const double seconds = dice.uniform(-2.0, length + 2.0);
  switch (dice.below(4)) {
    case 0:
      return start + std::floor(seconds * 2) / 2;
    case 1:
      return start + std::floor(seconds * kRate) / kRate;
    case 2:
      return dice.chance(20) ? dice.uniform(-1.0, 5.0) : start + seconds;
    default:
      return start + seconds;
  }
}

double randomEnd(Dice& dice, double position, double length) {
  switch (dice.below(9)) {
    case 8:  // between two frames, where rounding may leave a frame over
      return (std::floor((position + dice.uniform(0.0, 8.0)) * kRate) + 0.5) / kRate;
    case 0:
      return position;  // empty
    case 1:
      return position - dice.uniform(0.0, 3.0);  // backward
    case 2:
      return position + dice.below(4) / kRate;
    case 3:
      return position + length;
    default:
      return position + dice.uniform(0.0, 8.0);
  }
}

void addUnreachableTime(Dice& dice, std::vector<ProjectEntry>& entries) {
  static const std::vector<double> kTimes = {std::numeric_limits<double>::quiet_NaN(),
                                             std::numeric_limits<double>::infinity(),
                                             -std::numeric_limits<double>::infinity(),
                                             1e300,
                                             -1e300,
                                             3e14,
                                             -3e14};
  if (entries.empty()) return;
  ProjectEntry& entry = entries[static_cast<size_t>(dice.below(static_cast<int>(entries.size())))];
  (dice.chance(50) ? entry.position : entry.end) = dice.pick(kTimes);
}

std::vector<ProjectEntry> randomEntries(Dice& dice, double start, double length,
                                        const SinkConfig& config) {
  const bool mostly_regions = config.track_mode == kTracksFromRegions;
  std::vector<ProjectEntry> entries;
  std::vector<double> times = {0.0, start};
  const int count = dice.chance(7) ? 0 : dice.between(1, 18);
  for (int i = 0; i < count; ++i) {
    ProjectEntry entry;
    entry.is_region = dice.chance(mostly_regions ? 70 : 15);
    entry.position = randomTime(dice, start, length, times);
    entry.end = entry.is_region ? randomEnd(dice, entry.position, length) : entry.position;
    entry.name = randomName(dice, config.hash_markers_only != 0);
    times.push_back(entry.position);
    if (entry.is_region) times.push_back(entry.end);
    entries.push_back(entry);
    if (dice.chance(10)) entries.push_back(entry);  // a duplicate
  }
  if (dice.chance(75)) {
    std::stable_sort(entries.begin(), entries.end(),
                     [](const auto& a, const auto& b) { return a.position < b.position; });
  }
  if (dice.chance(8)) addUnreachableTime(dice, entries);
  return entries;
}

std::vector<std::pair<std::string, std::string>> randomMetadata(Dice& dice) {
  static const std::vector<std::string> kKeys = {
      "CUE:DISC_TITLE",     "CUE:DISC_title",    "CUE:DISC_PERFORMER",
      "CUE:DISC_Performer", "CUE:DISC_REM",      "CUE:DISC_SONGWRITER",
      "CUE:DISC_CATALOG",   "CUE:DISC_catalog",  "cue:disc_TITLE",
      "CUE:DISC_",          "CUE:DISC_COMPOSER", "TITLE",
      "CUE:DISC_TITLES",    "CUE:DISC_TITL",     "",
      " CUE:DISC_TITLE"};
  static const std::vector<std::string> kValues = {
      "Night Drive", "The \"Lanterns\"", "", "0731452345620", "caf\xC3\xA9", "%s%n", "\r\n"};
  std::vector<std::pair<std::string, std::string>> metadata;
  const int count = dice.chance(30) ? 0 : dice.between(1, 12);
  for (int i = 0; i < count; ++i) {
    const std::string value = dice.chance(5)
                                  ? std::string(static_cast<size_t>(dice.between(4070, 4100)), 'v')
                                  : dice.pick(kValues);
    metadata.emplace_back(dice.pick(kKeys), value);
  }
  return metadata;
}

/// The frames, counted from the render's start, at which something may be cut.
std::vector<int64_t> cutsOf(const RandomRender& render) {
  std::vector<int64_t> cuts;
  for (const ProjectEntry& entry : render.project.entries) {
    for (const double time : {entry.position, entry.end}) {
      const double frame = (time - render.start_time) * kRate + 0.5;
      if (frame > 0 && frame < 1e9) cuts.push_back(static_cast<int64_t>(frame));
    }
  }
  return cuts;
}

int randomBlockLength(Dice& dice, int style) {
  static const std::vector<int> kSmall = {0, 1, 2, 3, 7, 63, 65, 587, 588, 589, 1023, 1024, 1025};
  if (dice.chance(3)) return dice.between(-1, 2);
  switch (style) {
    case 0:
      return dice.between(20000, kLongestBlock);
    case 1:
      return dice.chance(70) ? dice.between(5000, kLongestBlock) : dice.pick(kSmall);
    case 2:
      return 4099;
    default:
      return 1024;
  }
}

std::vector<Block> randomBlocks(Dice& dice, const RandomRender& render, int64_t frames) {
  const std::vector<int64_t> cuts = cutsOf(render);
  const int style = dice.below(4);
  std::vector<Block> blocks;
  for (int64_t at = 0; at < frames;) {
    Block block;
    block.frames = static_cast<int>(std::min<int64_t>(randomBlockLength(dice, style), frames - at));
    if (!cuts.empty() && dice.chance(35)) {
      const int64_t to_cut = dice.pick(cuts) - at + dice.between(-1, 1);
      if (to_cut > 0 && to_cut <= kLongestBlock) block.frames = static_cast<int>(to_cut);
    }
    block.channels = dice.chance(70) ? 2 : dice.between(1, 6);
    block.offset = dice.chance(70) ? 0 : dice.between(1, 100);
    block.spacing = dice.chance(80) ? 1 : dice.between(2, 4);
    for (int channel = 0; channel < block.channels; ++channel) {
      block.phases.push_back(static_cast<size_t>(dice.below(1000)));
    }
    at += std::max(block.frames, 0);
    blocks.push_back(block);
  }
  return blocks;
}

std::vector<double> makePool() {
  static const std::vector<double> kCorners = {1.0,
                                               -1.0,
                                               0.5 / 32768,
                                               -0.5 / 32768,
                                               32767.5 / 32768,
                                               -0.0,
                                               7.5,
                                               -1e9,
                                               std::numeric_limits<double>::quiet_NaN(),
                                               std::numeric_limits<double>::infinity()};
  Dice dice(0);
  std::vector<double> pool(kPoolSize);
  for (double& sample : pool) {
    const int kind = dice.below(50);
    if (kind == 0) {
      sample = dice.pick(kCorners);
    } else if (kind < 5) {
      sample = dice.between(-65540, 65540) / 65536.0;
    } else {
      sample = dice.uniform(-1.02, 1.02);
    }
  }
  return pool;
}

double randomLength(Dice& dice) {
  const int kind = dice.below(100);
  if (kind < 5) return 0.0;
  if (kind < 20) return dice.uniform(0.0, 4.5);
  return dice.uniform(6.0, 24.0);
}

}  // namespace

SinkConfig RandomRender::effectiveConfig() const {
  return config_length >= 24 ? config : SinkConfig{};
}

RandomRender makeRandomRender(uint64_t seed) {
  static const std::vector<double> kStartTimes = {
      0.0, 0.0, 0.1, 12.345, -3.5, 3600.25, 1e-3, 4.0, 86400.0 + 1 / kRate};
  static const std::vector<std::string> kFileNames = {"disc.cue",   "disc.CUE", "disc",
                                                      "side.a.cue", "side.a",   "d.cUe",
                                                      "d.cu",       ".cue",     "My Disc (1).cue"};
  static const std::vector<int> kLengths = {24, 24, 24, 24, 24, 24, 24, 24, 25, 64, 23, 4};
  Dice dice(seed);
  RandomRender render;
  render.config = randomConfig(dice);
  render.config_length = dice.pick(kLengths);
  render.file_name = dice.pick(kFileNames);
  render.start_time = dice.chance(85) ? dice.pick(kStartTimes) : dice.uniform(-10.0, 10000.0);
  const double length = randomLength(dice);
  render.project.entries = randomEntries(dice, render.start_time, length, render.effectiveConfig());
  render.project.metadata = randomMetadata(dice);
  render.blocks = randomBlocks(dice, render, static_cast<int64_t>(length * kRate));
  render.finishes = !dice.chance(5);
  return render;
}

const std::vector<double>& samplePool() {
  static const std::vector<double> pool = makePool();
  return pool;
}

std::vector<double*> channelsOf(const Block& block) {
  static std::vector<double> pool = samplePool();
  std::vector<double*> channels;
  for (const size_t phase : block.phases) channels.push_back(pool.data() + phase);
  return channels;
}

}  // namespace model
