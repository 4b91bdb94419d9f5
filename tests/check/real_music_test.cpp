// What the checker hears, tried on songs of Debian's extremetuxracer-data and on noise: each
// mistake is found at its place, and songs as they are raise no alarm.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <random>
#include <set>

#include "check/check.h"
#include "check/image/byte_order.h"
#include "check/image/sector_edge.h"
#include "check/report/report_text.h"
#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using Samples = std::vector<int16_t>;

constexpr size_t kSector = 1176;  // samples
const fs::path kSongs = "/usr/share/games/etr/music";

Samples noise(size_t sectors, unsigned seed = 1) {
  std::mt19937 random(seed);
  Samples samples(sectors * kSector);
  for (int16_t& s : samples) s = static_cast<int16_t>(static_cast<int>(random() % 16384) - 8192);
  return samples;
}

std::string bytesOf(const Samples& samples) {
  return {reinterpret_cast<const char*>(samples.data()), samples.size() * sizeof(int16_t)};
}

void swapBytes(Samples& samples, size_t first_sector, size_t end_sector) {
  for (size_t i = first_sector * kSector; i < end_sector * kSector; ++i) {
    const auto raw = static_cast<uint16_t>(samples[i]);
    samples[i] = static_cast<int16_t>(static_cast<uint16_t>(raw << 8 | raw >> 8));
  }
}

Samples joined(Samples a, const Samples& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

TEST(ByteOrder, OfNoSectorsTellsNothing) {
  Samples tone(10 * kSector);
  for (size_t i = 0; i < tone.size(); ++i)
    tone[i] = static_cast<int16_t>(8000 * std::sin(static_cast<double>(i) / 100));
  swapBytes(tone, 0, 10);
  const TemporaryFolder folder;
  writeFile(folder / "tone.bin", bytesOf(tone));
  const ImageFile image(folder / "tone.bin", "BINARY");
  EXPECT_TRUE(bytesLookSwapped(image, 2, 8));
  EXPECT_FALSE(bytesLookSwapped(image, 5, 5));
}

TEST(SectorEdge, ThatBeginsWithAPauseHasNoTail) {
  for (const int64_t silent : {kPauseFrames - 1, kPauseFrames}) {
    Samples samples(kSector);
    std::fill_n(samples.begin() + 2 * silent, 200, int16_t{1000});
    const TemporaryFolder folder;
    writeFile(folder / "edge.bin", bytesOf(samples));
    const SectorEdge edge = lookAtSector(ImageFile(folder / "edge.bin", "BINARY"), 0);
    EXPECT_EQ(edge.first_sound, silent);
    EXPECT_EQ(edge.tail, silent < kPauseFrames ? silent + 100 : 0);
  }
}

TEST(SectorEdge, IsSilentWhereBothChannelsAre) {
  for (const size_t sounding : {size_t{0}, size_t{1}}) {
    Samples samples(kSector);
    for (size_t i = sounding; i < samples.size(); i += 2) samples[i] = 1000;
    const TemporaryFolder folder;
    writeFile(folder / "edge.bin", bytesOf(samples));
    const SectorEdge edge = lookAtSector(ImageFile(folder / "edge.bin", "BINARY"), 0);
    EXPECT_EQ(edge.first_sound, 0) << sounding;
    EXPECT_EQ(edge.tail, 0) << sounding;
  }
}

/// The album of the ten songs, rendered once with pauses between them.
class RealMusic : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (s_folder) return;
    s_folder = std::make_unique<TemporaryFolder>();
    std::vector<std::string> command = {VELMOR_RENDER, "--quiet",        "-o",
                                        "album.cue",   "--track-leadin", "2000"};
    for (const auto& song : fs::directory_iterator(kSongs))
      if (song.path().extension() == ".ogg") command.push_back(song.path().string());
    std::sort(command.begin() + 6, command.end());
    const ProcessResult rendered = runProcess(command, s_folder->path().string());
    ASSERT_EQ(rendered.status, 0) << rendered.all;
    s_sheet = readSheet(*s_folder / "album.cue");
    const std::string image = readFile(*s_folder / "album.bin");
    s_album.resize(image.size() / sizeof(int16_t));
    std::copy(image.begin(), image.end(), reinterpret_cast<char*>(s_album.data()));
  }

  void SetUp() override { ASSERT_EQ(s_sheet.tracks.size(), 10u); }

  /// INDEX `number` of a track, which counts from 1, in sectors.
  static size_t sectorOf(size_t track, int number) {
    return static_cast<size_t>(s_sheet.tracks[track - 1].index(number)->time.sectors());
  }

  /// The album's sheet with an image of the samples.
  Report reportOnAlbum(const Samples& samples) {
    writeFile(m_folder / "album.bin", bytesOf(samples));
    return check(s_sheet, m_folder / "album.cue", {});
  }

  Report reportOn(const std::string& sheet, const Samples& samples) {
    writeFile(m_folder / "image.bin", bytesOf(samples));
    writeFile(m_folder / "image.cue", sheet);
    return check(m_folder / "image.cue", {});
  }

  /// Two tracks of the samples, the second one begins at the sector.
  Report reportOnTwo(const Samples& samples, size_t second) {
    return reportOn(
        "FILE image.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
        "INDEX 01 " +
            msf(second) + "\n",
        samples);
  }

  static std::string msf(size_t sector) { return disc::msfText(static_cast<int64_t>(sector)); }

  /// Of the rules about sound: "rule track", each once.
  static std::set<std::string> heard(const Report& report) {
    std::set<std::string> said;
    for (const Finding& f : report.findings)
      for (const std::string_view rule : {"byte-order-swapped", "channel-silent", "channels-same",
                                          "sound-in-pause", "start-cut-into-sound"})
        if (f.rule == rule) said.insert(std::string(rule) + ' ' + std::to_string(f.track));
    return said;
  }

  static std::string textOf(const Report& report, std::string_view rule) {
    for (const Finding& f : report.findings)
      if (f.rule == rule) return findingLine(f);
    return {};
  }

  /// Eight seconds from the inside of a song, different ones for different numbers.
  static Samples piece(size_t number) {
    const size_t track = number % 10 + 1;
    const size_t begin = sectorOf(track, 1) + 75;
    const size_t end = track == 10 ? s_album.size() / kSector : sectorOf(track + 1, 0);
    const size_t length = std::min<size_t>(600, (end - begin) / 2);
    const size_t first = begin + (end - begin - length) * (number * 37 % 100) / 100;
    return {s_album.begin() + static_cast<std::ptrdiff_t>(first * kSector),
            s_album.begin() + static_cast<std::ptrdiff_t>((first + length) * kSector)};
  }

  static std::unique_ptr<TemporaryFolder> s_folder;
  static disc::Sheet s_sheet;
  static Samples s_album;
  TemporaryFolder m_folder;
};

std::unique_ptr<TemporaryFolder> RealMusic::s_folder;
disc::Sheet RealMusic::s_sheet;
Samples RealMusic::s_album;

TEST_F(RealMusic, RaisesNoAlarmAsItIs) {
  EXPECT_THAT(heard(check(*s_folder / "album.cue", {})), testing::IsEmpty());
}

TEST_F(RealMusic, SoundsAsNoiseInTheWrongByteOrder) {
  Samples whole = s_album;
  swapBytes(whole, 0, whole.size() / kSector);
  const Report report = reportOnAlbum(whole);
  EXPECT_TRUE(heard(report).contains("byte-order-swapped 0"));
  EXPECT_THAT(textOf(report, "byte-order-swapped"), HasSubstr("Write MOTOROLA instead of BINARY"));
  EXPECT_TRUE(report.failed(false));
}

TEST_F(RealMusic, SoundsAsNoiseInOneTrackOfTheWrongByteOrderWhichIsNamed) {
  for (const size_t track : {1u, 4u, 8u}) {
    Samples samples = s_album;
    swapBytes(samples, sectorOf(track, 1), sectorOf(track + 1, 0));
    EXPECT_TRUE(
        heard(reportOnAlbum(samples)).contains("byte-order-swapped " + std::to_string(track)));
  }
}

TEST_F(RealMusic, HasItsByteOrderToldWhateverTheSheetSays) {
  const Samples music = piece(1);
  const auto sheet = [](const std::string& type) {
    return "FILE image.bin " + type + "\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n";
  };
  EXPECT_FALSE(heard(reportOn(sheet("BINARY"), music)).contains("byte-order-swapped 0"));
  const Report big = reportOn(sheet("MOTOROLA"), music);
  EXPECT_TRUE(heard(big).contains("byte-order-swapped 0"));
  EXPECT_THAT(textOf(big, "byte-order-swapped"), HasSubstr("Write BINARY instead of MOTOROLA"));
}

TEST_F(RealMusic, IsNotTakenForNoiseNorNoiseForSwappedMusic) {
  for (const int shift : {0, 4, 8}) {
    Samples samples = noise(600);
    for (int16_t& s : samples) s = static_cast<int16_t>(s >> shift);
    EXPECT_FALSE(heard(reportOnTwo(samples, 300)).contains("byte-order-swapped 0")) << shift;
    swapBytes(samples, 0, 600);
    EXPECT_FALSE(heard(reportOnTwo(samples, 300)).contains("byte-order-swapped 0")) << shift;
  }
}

TEST_F(RealMusic, HasASilentChannelToldWithItsTrack) {
  for (const bool with_residue : {false, true}) {
    Samples samples = s_album;
    for (size_t i = sectorOf(3, 1) * kSector; i < sectorOf(4, 0) * kSector; i += 2)
      samples[i + 1] = static_cast<int16_t>(with_residue ? static_cast<int>(i % 5) - 2 : 0);
    const Report report = reportOnAlbum(samples);
    EXPECT_THAT(heard(report), testing::ElementsAre("channel-silent 3"));
    EXPECT_THAT(textOf(report, "channel-silent"), HasSubstr("the right channel is silent"));
  }
}

TEST_F(RealMusic, WithEqualChannelsIsCalledMonoByTrackOrAsADisc) {
  Samples samples = s_album;
  for (size_t i = sectorOf(6, 1) * kSector; i < sectorOf(7, 0) * kSector; i += 2)
    samples[i + 1] = samples[i];
  EXPECT_THAT(heard(reportOnAlbum(samples)), testing::ElementsAre("channels-same 6"));
  for (size_t i = 0; i < samples.size(); i += 2) samples[i + 1] = samples[i];
  const Report mono = reportOnAlbum(samples);
  EXPECT_THAT(heard(mono), testing::ElementsAre("channels-same 1"));
  EXPECT_THAT(textOf(mono, "channels-same"), HasSubstr("the disc is mono"));
}

TEST_F(RealMusic, OrNoiseInOneChannelIsHeardAlike) {
  Samples samples = noise(600);
  for (size_t i = 0; i < samples.size(); i += 2) samples[i] = 0;
  EXPECT_TRUE(heard(reportOnTwo(samples, 300)).contains("channel-silent 2"));
  // A single sample is enough to make it two channels.
  samples[400 * kSector] = 500;
  EXPECT_FALSE(heard(reportOnTwo(samples, 300)).contains("channel-silent 2"));
}

TEST_F(RealMusic, ThatBeginsInItsPauseIsHeardThere) {
  disc::Sheet late = s_sheet;
  const size_t start = sectorOf(8, 1);
  for (disc::Index& index : late.tracks[7].indices)
    if (index.number == 1) index.time = disc::msfOf(static_cast<int64_t>(start) + 150);
  fs::create_hard_link(*s_folder / "album.bin", m_folder / "album.bin");
  const Report report = check(late, m_folder / "album.cue", {});
  EXPECT_TRUE(heard(report).contains("sound-in-pause 8"));
  const std::string text = textOf(report, "sound-in-pause");
  // The sheet of the render names a sector up to one before the start.
  const bool next = text.find("at " + msf(start + 1)) != std::string::npos;
  const std::string begin = msf(next ? start + 1 : start);
  EXPECT_THAT(text, HasSubstr("the sound begins in the pause, at " + begin));
  EXPECT_THAT(text, HasSubstr("Move INDEX 01 to " + begin));
}

TEST_F(RealMusic, OrNoiseThatRunsThroughAPauseIsHeardThere) {
  const std::string sheet =
      "FILE image.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\nTRACK 02 AUDIO\n"
      "INDEX 00 00:04:00\nINDEX 01 00:05:00\n";
  for (const Samples& samples : {piece(5), noise(600)}) {
    const Report report = reportOn(sheet, samples);
    EXPECT_TRUE(heard(report).contains("sound-in-pause 2"));
    EXPECT_THAT(textOf(report, "sound-in-pause"),
                HasSubstr("sound runs through the whole pause before the track, 1.00 s"));
  }
  // The end of the track before rings out in the pause.
  Samples rings = noise(600);
  std::fill(rings.begin() + 350 * kSector, rings.begin() + 375 * kSector, int16_t{3});
  EXPECT_FALSE(heard(reportOn(sheet, rings)).contains("sound-in-pause 2"));
}

TEST_F(RealMusic, ThatRunsOnOverAStartRaisesNoAlarm) {
  for (size_t n = 0; n < 20; ++n) {
    const Samples music = piece(n);
    const size_t middle = music.size() / kSector / 2;
    EXPECT_FALSE(heard(reportOnTwo(music, middle)).contains("start-cut-into-sound 2")) << n;
  }
  EXPECT_FALSE(heard(reportOnTwo(noise(600), 300)).contains("start-cut-into-sound 2"));
}

TEST_F(RealMusic, CutTogetherInItsMiddleIsHeardAtTheJoin) {
  int heard_joins = 0;
  for (size_t n = 0; n < 20; ++n) {
    const Samples first = piece(n);
    const Report report = reportOnTwo(joined(first, piece(n + 3)), first.size() / kSector);
    heard_joins += heard(report).contains("start-cut-into-sound 2") ? 1 : 0;
  }
  // Two sounds may meet by chance where they fit.
  EXPECT_GE(heard_joins, 16);
}

TEST_F(RealMusic, OrNoiseCutIntoBehindSilenceIsHeardAtTheStart) {
  int heard_starts = 0;
  for (size_t n = 0; n < 20; ++n) {
    const Report report = reportOnTwo(joined(Samples(300 * kSector), piece(n)), 300);
    heard_starts += heard(report).contains("start-cut-into-sound 2") ? 1 : 0;
  }
  // A cut where the sound passes through zero makes no click.
  EXPECT_GE(heard_starts, 10);
  const Report report = reportOnTwo(joined(Samples(300 * kSector), noise(300)), 300);
  EXPECT_THAT(textOf(report, "start-cut-into-sound"),
              HasSubstr("track 2 [start-cut-into-sound] the track starts in the middle of a sound, "
                        "at 00:04:00"));
  EXPECT_TRUE(heard(reportOnTwo(noise(600), 300)).contains("start-cut-into-sound 1"));
}

/// The same over two FILEs, where the second track begins its own.
class MusicInTwoFiles : public RealMusic {
 protected:
  Report reportOnFiles(const Samples& first, const Samples& second, const std::string& indices,
                       const std::string& head = "") {
    writeFile(m_folder / "a.bin", bytesOf(first));
    return reportOn("FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n" + head +
                        "TRACK 02 AUDIO\n" + indices,
                    second);
  }
};

TEST_F(MusicInTwoFiles, RunsOnOrBreaksOffBetweenThemAsInOne) {
  const Samples music = piece(2);
  const auto middle =
      music.begin() + static_cast<std::ptrdiff_t>(music.size() / kSector / 2 * kSector);
  const std::string start = "FILE image.bin BINARY\nINDEX 01 00:00:00\n";
  EXPECT_FALSE(heard(reportOnFiles({music.begin(), middle}, {middle, music.end()}, start))
                   .contains("start-cut-into-sound 2"));
  EXPECT_TRUE(heard(reportOnFiles({middle, music.end()}, {middle, music.end()}, start))
                  .contains("start-cut-into-sound 2"));
}

TEST_F(MusicInTwoFiles, BreaksOffWhereTheFirstEndsInsideASectorOrAPregapFollows) {
  const Samples sound = noise(600);
  const std::string start = "FILE image.bin BINARY\nINDEX 01 00:00:00\n";
  EXPECT_FALSE(heard(reportOnFiles(sound, sound, start)).contains("start-cut-into-sound 2"));
  Samples odd = sound;
  odd.resize(odd.size() - kSector / 2);
  EXPECT_TRUE(heard(reportOnFiles(odd, sound, start)).contains("start-cut-into-sound 2"));
  const std::string pregap = "FILE image.bin BINARY\nPREGAP 00:02:00\nINDEX 01 00:00:00\n";
  EXPECT_TRUE(heard(reportOnFiles(sound, sound, pregap)).contains("start-cut-into-sound 2"));
  EXPECT_TRUE(heard(reportOnFiles(sound, sound, start, "POSTGAP 00:02:00\n"))
                  .contains("start-cut-into-sound 2"));
}

TEST_F(MusicInTwoFiles, IsHeardInAPauseAtTheEndOfTheFirst) {
  const std::string pause = "INDEX 00 00:06:00\nFILE image.bin BINARY\nINDEX 01 00:00:00\n";
  const Report report = reportOnFiles(noise(600), noise(600), pause);
  EXPECT_TRUE(heard(report).contains("sound-in-pause 2"));
  EXPECT_THAT(textOf(report, "sound-in-pause"), HasSubstr("2.00 s"));
  Samples quiet = noise(600);
  std::fill(quiet.begin() + 500 * kSector, quiet.end(), int16_t{0});
  EXPECT_FALSE(heard(reportOnFiles(quiet, noise(600), pause)).contains("sound-in-pause 2"));
}

}  // namespace
}  // namespace velmor::check::test
