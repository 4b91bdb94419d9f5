// A thousand random discs, each laid out by the product and by a second writer.

#include <gtest/gtest.h>

#include <random>

#include "ddp/write/set_target.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/pq_packets.h"
#include "disc/ddp/stream_map.h"
#include "tests/ddp/model/reference_set.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

constexpr std::array<const char*, 6> kCommands = {"TITLE",    "PERFORMER", "SONGWRITER",
                                                  "COMPOSER", "ARRANGER",  "MESSAGE"};

class RandomDisc {
 public:
  explicit RandomDisc(unsigned seed) : m_random(seed) {
    if (chance(50)) m_disc.catalogue = "0731452345622";
    if (chance(30)) m_disc.master_id = text(48);
    m_disc.texts = texts();
    const int tracks = chance(5) ? 99 : upTo(1, 6);
    for (int t = 0; t < tracks; ++t) addTrack(t);
    // The last track's 4 s, and perhaps a sector that is not whole.
    m_disc.image_bytes = (m_at + 300) * 2352;
    if (chance(30)) m_disc.image_bytes += 4 * upTo(1, 587);
  }

  const ddp_model::ModelDisc& disc() const { return m_disc; }

  std::string sheet() const {
    std::string lines;
    if (!m_disc.master_id.empty()) lines += "REM MASTER_ID \"" + m_disc.master_id + "\"\n";
    if (!m_disc.catalogue.empty()) lines += "CATALOG " + m_disc.catalogue + '\n';
    lines += textLines(m_disc.texts) + "FILE \"r.bin\" BINARY\n";
    for (size_t t = 0; t < m_disc.tracks.size(); ++t) lines += trackLines(m_disc.tracks[t], t + 1);
    return lines;
  }

 private:
  int upTo(int least, int most) {
    return std::uniform_int_distribution<int>(least, most)(m_random);
  }
  bool chance(int percent) { return upTo(1, 100) <= percent; }

  /// Printable, without quotes, not blank at an end, perhaps with letters beyond ASCII.
  std::string text(int longest) {
    std::string made;
    for (int i = upTo(1, longest); i > 0; --i) made += static_cast<char>(upTo('#', '~'));
    return made;
  }
  ddp_model::Texts texts() {
    ddp_model::Texts made;
    for (std::string& kind : made) {
      if (!chance(35)) continue;
      kind = text(chance(20) ? 40 : 14);
      if (chance(20)) kind += '\xE9';  // an e with an acute accent in ISO 8859-1
    }
    return made;
  }

  void addTrack(int number) {
    ddp_model::ModelTrack track;
    if (number == 0 ? chance(40) : chance(50)) {
      track.indices.push_back({0, m_at});
      m_at += upTo(number == 0 ? 150 : 1, 400);
    }
    track.indices.push_back({1, m_at});
    m_at += 300;
    for (int i = 2; i < 2 + upTo(0, 3) * upTo(0, 1); ++i) {
      track.indices.push_back({i, m_at});
      m_at += upTo(1, 100);
    }
    // 99 tracks with long texts would not fit into the packs.
    if (m_disc.tracks.size() < 20) track.texts = texts();
    if (chance(50)) track.isrc = "USABC26000" + std::to_string(10 + number % 90);
    if (number > 89) track.isrc.clear();
    track.pre_emphasis = chance(20);
    track.four_channels = chance(20);
    track.copies_permitted = chance(30);
    track.serial_copies = !track.copies_permitted && chance(20);
    m_disc.tracks.push_back(track);
  }

  /// Half of the letters beyond ASCII are given as UTF-8 and half as they are.
  static std::string spelled(std::string value) {
    if (value.ends_with('\xE9') && value.size() % 2 == 0) {
      value.pop_back();
      value += "\xC3\xA9";
    }
    return value;
  }
  static std::string textLines(const ddp_model::Texts& texts) {
    std::string lines;
    for (size_t kind = 0; kind < texts.size(); ++kind)
      if (!texts[kind].empty())
        lines += std::string(kCommands[kind]) + " \"" + spelled(texts[kind]) + "\"\n";
    return lines;
  }
  static std::string trackLines(const ddp_model::ModelTrack& track, size_t number) {
    char line[64];
    snprintf(line, sizeof line, "TRACK %02zu AUDIO\n", number);
    std::string lines = line + textLines(track.texts);
    std::string flags;
    if (track.copies_permitted) flags += " DCP";
    if (track.four_channels) flags += " 4CH";
    if (track.pre_emphasis) flags += " PRE";
    if (track.serial_copies) flags += " SCMS";
    if (!flags.empty()) lines += "FLAGS" + flags + '\n';
    if (!track.isrc.empty()) lines += "ISRC " + track.isrc + '\n';
    for (const ddp_model::ModelIndex& index : track.indices) {
      const auto s = static_cast<int>(index.sector);
      snprintf(line, sizeof line, "INDEX %02d %02d:%02d:%02d\n", index.number, s / 4500,
               s % 4500 / 75, s % 75);
      lines += line;
    }
    return lines;
  }

  std::mt19937 m_random;
  ddp_model::ModelDisc m_disc;
  int64_t m_at = 0;
};

class RandomDiscs : public testing::TestWithParam<unsigned> {
 protected:
  /// An image that takes no room on the disk.
  PreparedSet prepared(const RandomDisc& disc) const {
    writeFile(m_folder / "r.cue", disc.sheet());
    writeFile(m_folder / "r.bin", "");
    std::filesystem::resize_file(m_folder / "r.bin",
                                 static_cast<uintmax_t>(disc.disc().image_bytes));
    return prepareSet(m_folder / "r.cue", {});
  }

  test_kit::ScratchFolder m_folder;
};

TEST_P(RandomDiscs, HaveTheDescriptorsThatASecondWriterGivesThem) {
  for (unsigned i = 0; i < 100; ++i) {
    const RandomDisc disc(GetParam() * 1000 + i);
    const PreparedSet set = prepared(disc);
    ASSERT_FALSE(set.refused()) << set.report.findings.front().what << '\n' << disc.sheet();
    const ddp_model::ModelSet model = ddp_model::makeSet(disc.disc(), ddp_model::CdText::kWritten);
    const std::string pq = pqBytes(set.layout.set);
    ASSERT_EQ(identifierBytes(set.layout.set), model.identifier) << disc.sheet();
    ASSERT_EQ(mapBytes(set.layout.set, set.text_packs.size(), pq.size()), model.map)
        << disc.sheet();
    ASSERT_EQ(set.text_packs, model.texts) << disc.sheet();
    ASSERT_EQ(pq, model.pq) << disc.sheet();
    ASSERT_EQ(set.layout.pieces.front().file == AudioPiece::kSilence ? 150 : 0,
              model.silent_sectors);
  }
}

TEST_P(RandomDiscs, AreTheSameSetOnceMoreWhenTakenApartAndWrittenAgain) {
  const RandomDisc disc(GetParam() * 1000);
  // A few of the short ones: their audio is written four times.
  if (GetParam() % 3 != 0 || disc.disc().tracks.size() > 20) return;
  const auto write = [this](const std::string& sheet, const std::string& set) {
    SetTarget(m_folder / set, false).write(prepareSet(m_folder / sheet, {}), [](int64_t) {});
  };
  prepared(disc);
  writeFile(m_folder / "r.bin", countingFrames(disc.disc().image_bytes / 4));
  write("r.cue", "set");
  SheetFolder program;
  const auto extracted =
      program.run({"extract", m_folder.file("set"), "-o", m_folder.file("e.cue")});
  ASSERT_EQ(extracted.status, 0) << extracted.all;
  write("e.cue", "again");
  EXPECT_TRUE(sameFiles(m_folder / "set", m_folder / "again")) << disc.sheet();
}

INSTANTIATE_TEST_SUITE_P(Hundreds, RandomDiscs, testing::Range(1U, 11U));

}  // namespace
}  // namespace velmor::ddp::test
