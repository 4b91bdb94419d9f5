// What the loaded module leaves on disk against the reference model, over many random renders.
//
// VELMOR_MODEL_SEEDS: how many renders (400); VELMOR_MODEL_FIRST_SEED: the first one (1).
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <limits>
#include <string>

#include "tests/fake_host/session.h"
#include "tests/module/model/random_render.h"
#include "tests/module/model/reference_model.h"

namespace model {
namespace {

uint64_t fromEnvironment(const char* name, uint64_t otherwise) {
  const char* text = std::getenv(name);
  return text ? std::strtoull(text, nullptr, 10) : otherwise;
}

void script(fake_host::PluginHost& host, const Project& project) {
  host.marks.clear();
  for (const ProjectEntry& entry : project.entries) {
    host.marks.push_back({entry.is_region, entry.position, entry.end, entry.name});
  }
  host.metadata.clear();
  for (const auto& [key, value] : project.metadata) {
    const bool null_key = key.empty() && !value.empty();
    host.metadata.push_back({null_key ? std::nullopt : std::optional(key), value});
  }
  host.marker_calls.clear();
  host.metadata_calls.clear();
  host.localize_calls.clear();
  host.journal.clear();
}

std::string differenceFromImage(const std::vector<uint8_t>& expected, const std::string& actual) {
  if (expected.size() != actual.size()) {
    return "the image has " + std::to_string(actual.size()) + " bytes instead of " +
           std::to_string(expected.size());
  }
  if (expected.empty() || std::memcmp(expected.data(), actual.data(), actual.size()) == 0) {
    return {};
  }
  const auto [at, other] = std::mismatch(
      expected.begin(), expected.end(), actual.begin(),
      [](uint8_t byte, char character) { return byte == static_cast<uint8_t>(character); });
  return "the image differs from byte " + std::to_string(at - expected.begin()) + " of " +
         std::to_string(actual.size());
}

std::string describe(const RandomRender& render) {
  std::string text = "mode " + std::to_string(render.config.track_mode) + ", disc lead-in " +
                     std::to_string(render.config.disc_leadin_ms) + ", track lead-in " +
                     std::to_string(render.config.track_leadin_ms) + ", # only " +
                     std::to_string(render.config.hash_markers_only) + ", blob of " +
                     std::to_string(render.config_length) + ", start " +
                     std::to_string(render.start_time) + "\n";
  for (const ProjectEntry& entry : render.project.entries) {
    text += (entry.is_region ? "region " : "marker ") + std::to_string(entry.position) + " to " +
            std::to_string(entry.end) + " " + entry.name.value_or("(null)").substr(0, 40) + "\n";
  }
  return text;
}

/// How often the renders met what they are there for.
struct Coverage {
  int tracks = 0;
  int renders_of_several_tracks = 0;
  int renders_with_tags = 0;
  int renders_with_joined_regions = 0;
};

class RandomComparison : public testing::Test {
 protected:
  /// Empty when the module and the model agree.
  std::string differenceOf(const RandomRender& render) {
    script(m_session.host, render.project);
    const std::string path = m_session.file(render.file_name);
    const OutputPaths paths = *outputPathsFor(path);
    ReferenceDisc disc(render.project, render.effectiveConfig(), paths.image);

    unsigned char blob[64] = {};
    std::memcpy(blob, &render.config, sizeof render.config);
    fake_host::Sink sink(m_session.registration().CreateSink(
        path.c_str(), blob, render.config_length, 2, 44100, false));
    if (!sink) return "no sink";
    std::string difference;
    if (sink->GetFileName() != paths.reported_sheet) difference = "the file name";
    sink->SetStartTime(render.start_time);
    disc.setStartTime(render.start_time);
    for (const Block& block : render.blocks) {
      std::vector<double*> channels = channelsOf(block);
      sink->WriteDoubles(channels.data(), block.frames, block.channels, block.offset,
                         block.spacing);
      disc.writeBlock(channels.data(), block.frames, block.channels, block.offset, block.spacing);
      if (sink->GetLength() != disc.length()) return "the length after a block";
    }
    if (render.finishes) {
      sink.finish();
      disc.finish();
    }
    if (sink->GetLength() != disc.length()) difference = "the length at the end";
    sink.destroy();
    if (difference.empty()) {
      difference = differenceFromImage(disc.image(), fake_host::readText(paths.image));
    }
    if (difference.empty()) {
      difference = differenceFromSheet(disc.sheet(), fake_host::readText(path));
    }
    if (!m_session.host.disk_counters.empty()) difference = "a write failed";
    std::filesystem::remove(path);
    std::filesystem::remove(paths.image);
    count(disc);
    return difference;
  }

  void count(const ReferenceDisc& disc) {
    m_coverage.tracks += static_cast<int>(disc.trackCount());
    m_coverage.renders_of_several_tracks += disc.trackCount() > 1;
    m_coverage.renders_with_tags += disc.sheet().body.find("    PERFORMER") != std::string::npos ||
                                    disc.sheet().body.find("    ISRC") != std::string::npos;
    m_coverage.renders_with_joined_regions += disc.titleCount() > disc.trackCount();
  }

  fake_host::BoundSession m_session;
  Coverage m_coverage;
};

TEST_F(RandomComparison, TheModuleLeavesWhatTheModelSays) {
  const uint64_t first = fromEnvironment("VELMOR_MODEL_FIRST_SEED", 1);
  const uint64_t count = fromEnvironment("VELMOR_MODEL_SEEDS", 400);
  int failures = 0;
  for (uint64_t seed = first; seed < first + count && failures < 5; ++seed) {
    const RandomRender render = makeRandomRender(seed);
    const std::string difference = differenceOf(render);
    if (difference.empty()) continue;
    ++failures;
    ADD_FAILURE() << "VELMOR_MODEL_FIRST_SEED=" << seed << " VELMOR_MODEL_SEEDS=1\n"
                  << describe(render) << difference;
  }
  std::printf("%d tracks, %d renders of several, %d with tags, %d with joined regions\n",
              m_coverage.tracks, m_coverage.renders_of_several_tracks, m_coverage.renders_with_tags,
              m_coverage.renders_with_joined_regions);
  if (count < 100) return;
  // Otherwise the renders would show little.
  const int renders = static_cast<int>(count);
  EXPECT_GT(m_coverage.renders_of_several_tracks, renders / 4);
  EXPECT_GT(m_coverage.tracks, renders * 3 / 2);
  EXPECT_GT(m_coverage.renders_with_tags, renders / 5);
  EXPECT_GT(m_coverage.renders_with_joined_regions, renders / 20);
}

/// A render of whole-second blocks and one long one, without lead-ins.
RandomRender handMade(int mode, std::vector<ProjectEntry> entries,
                      const std::vector<int>& block_lengths) {
  RandomRender render;
  render.config.format_code = static_cast<int32_t>(kIsoFormatCode);
  render.config.track_mode = mode;
  render.file_name = "disc.cue";
  render.project.entries = std::move(entries);
  for (const int frames : block_lengths) render.blocks.push_back({frames, 2, 0, 1, {0, 500}});
  return render;
}

TEST_F(RandomComparison, ARegionThatEndsJustBeforeTheStartIsNotYetATrack) {
  // It lets the whole first block through, and the next region still joins track 1.
  const double just_before = -0.5 / 44100;
  const RandomRender render =
      handMade(kTracksFromRegions, {{true, -1.0, just_before, "over"}, {true, 5.0, 10.0, "next"}},
               {200000, 200000, 100000});
  EXPECT_EQ(differenceOf(render), "");
  EXPECT_EQ(m_coverage.tracks, 1);
}

TEST_F(RandomComparison, ARegionEndThatRoundingLeavesOpenByAFrameLetsTheRestOfItsBlockThrough) {
  // From 1.0 s on the region holds 26906 frames and a half, less than a double can tell; after
  // these have been written it seems to hold one more.
  const RandomRender render =
      handMade(kTracksFromRegions, {{true, 0.5, 1.610124716553288, "a"}, {true, 5.0, 7.0, "b"}},
               {44100, 44100, 200000});
  EXPECT_EQ(differenceOf(render), "");
}

TEST_F(RandomComparison, AMarkerWithoutATimeTagsNoTrack) {
  const double no_time = std::numeric_limits<double>::quiet_NaN();
  const RandomRender render = handMade(kTracksFromMarkers,
                                       {{false, no_time, 0.0, "PERF=Nobody"},
                                        {false, 1.0, 0.0, "PERF=Ana"},
                                        {false, 5.0, 0.0, "Two"}},
                                       {200000, 200000});
  EXPECT_EQ(differenceOf(render), "");
  EXPECT_EQ(m_coverage.tracks, 2);
}

TEST_F(RandomComparison, AStartTimeThatIsNoTimeHarmsNothing) {
  for (const double start :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e308, -1e308, 1e17}) {
    for (const int mode : {kTracksFromMarkers, kTracksFromRegions, kOneTrack}) {
      RandomRender render = handMade(mode,
                                     {{false, 1.0, 0.0, "PERF=Ana"},
                                      {true, 1.5, 5.0, "a"},
                                      {false, 5.0, 0.0, "Two"},
                                      {true, 5.0, 7.0, "ISRC=USABC0500001"}},
                                     {200000, 44100});
      render.start_time = start;
      EXPECT_EQ(differenceOf(render), "") << start << " in mode " << mode;
    }
  }
}

TEST_F(RandomComparison, AnEmptyRegionLetsTheRestOfItsBlockThrough) {
  const RandomRender render = handMade(
      kTracksFromRegions, {{true, 1.0, 1.0, "empty"}, {true, 5.5, 7.0, "next"}}, {88200, 200000});
  EXPECT_EQ(differenceOf(render), "");
}

}  // namespace
}  // namespace model
