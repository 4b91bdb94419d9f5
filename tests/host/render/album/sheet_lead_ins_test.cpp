#include "host/render/album/sheet_lead_ins.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "tests/host/render/input/sound_files.h"

namespace velmor::render {
namespace {

using testing::IsEmpty;

constexpr int64_t kOneSecond = disc::kSectorsPerSecond;

double clockOf(int64_t sectors) {
  return static_cast<double>(sectors) / disc::kSectorsPerSecond;
}

struct Sectors {
  int64_t begin, end;
};

/// A sheet of one image, all places in sectors. The image sounds in every frame but in its pauses.
class SheetLeadIns : public testing::Test {
 protected:
  /// Track 1 begins behind `first_pause` sectors, each other one behind a pause of `others`.
  void makeDisc(int64_t first_pause, const std::vector<Sectors>& others, int64_t end) {
    InputInfo info;
    info.path = m_folder.path("a.bin");
    info.raw = disc::RawSamples::kLittleEndian;
    info.frames = end * disc::kFramesPerSector;
    info.marks.push_back({0.0, std::nullopt, "1"});
    info.marks.back().pause_behind = clockOf(first_pause);
    m_image = std::string(static_cast<size_t>(end) * kSectorBytes, 'x');
    silence({0, first_pause});
    for (const Sectors& pause : others) {
      info.pauses.push_back(clockOf(pause.begin));
      info.marks.push_back({clockOf(pause.end), std::nullopt, "next"});
      silence(pause);
    }
    m_infos = {info};
  }
  /// Both are read from a disc that `makeDisc` has made anew.
  int discLeadIn() { return taken().disc_ms; }
  int trackLeadIn() { return taken().track_ms; }
  /// Lets one byte of the image sound, counted back from the end of sector `sector`.
  void soundInSector(int64_t sector, size_t bytes_before_its_end) {
    m_image[static_cast<size_t>(sector + 1) * kSectorBytes - bytes_before_its_end] = '\1';
  }

  static constexpr size_t kSectorBytes = disc::kBytesPerSector;

  test::Folder m_folder;
  std::string m_image;
  std::vector<InputInfo> m_infos;

 private:
  void silence(const Sectors& part) {
    m_image.replace(static_cast<size_t>(part.begin) * kSectorBytes,
                    static_cast<size_t>(part.end - part.begin) * kSectorBytes,
                    static_cast<size_t>(part.end - part.begin) * kSectorBytes, '\0');
  }
  LeadIns taken() {
    m_folder.write("a.bin", m_image);
    return takeLeadIns(m_infos);
  }
};

TEST_F(SheetLeadIns, ThePauseBeforeTrackOneIsOneFromTwoSecondsOn) {
  makeDisc(2 * kOneSecond, {}, 10 * kOneSecond);
  EXPECT_EQ(discLeadIn(), 2000);
  ASSERT_EQ(m_infos[0].cuts.size(), 1U);
  EXPECT_EQ(m_infos[0].cuts[0].at, 0);
  EXPECT_EQ(m_infos[0].cuts[0].frames, 2 * 44100);
  EXPECT_EQ(m_infos[0].frames, 8 * 44100);
  EXPECT_EQ(m_infos[0].marks[0].pause_behind, 0.0);
  makeDisc(2 * kOneSecond - 3, {}, 10 * kOneSecond);
  EXPECT_EQ(discLeadIn(), 0);
  EXPECT_THAT(m_infos[0].cuts, IsEmpty());
}

TEST_F(SheetLeadIns, ThePauseBeforeTrackOneLastsWholeMilliseconds) {
  for (const int64_t odd : {1, 2}) {
    makeDisc(2 * kOneSecond + odd, {}, 10 * kOneSecond);
    EXPECT_EQ(discLeadIn(), 0) << odd;
  }
  makeDisc(2 * kOneSecond + 3, {}, 10 * kOneSecond);
  EXPECT_EQ(discLeadIn(), 2040);
}

TEST_F(SheetLeadIns, TrackOneKeepsFourSeconds) {
  makeDisc(2 * kOneSecond, {}, 6 * kOneSecond);
  EXPECT_EQ(discLeadIn(), 2000);
  makeDisc(2 * kOneSecond, {}, 6 * kOneSecond - 1);
  EXPECT_EQ(discLeadIn(), 0);
  makeDisc(2 * kOneSecond, {{6 * kOneSecond - 1, 8 * kOneSecond - 1}}, 20 * kOneSecond);
  EXPECT_EQ(discLeadIn(), 0);
}

TEST_F(SheetLeadIns, APauseWithASoundAtEitherEndIsNone) {
  // A byte of each channel, of the first and of the last frame.
  for (const size_t bytes : {kSectorBytes, kSectorBytes - 2, size_t{4}, size_t{2}, size_t{1}}) {
    // The longer one ends less than a sector behind a block of the reading, 16384 frames.
    for (const int64_t pause : {int64_t{150}, int64_t{168}}) {
      for (const int64_t sector : {int64_t{0}, pause - 1}) {
        makeDisc(pause, {}, 10 * kOneSecond);
        soundInSector(sector, bytes);
        EXPECT_EQ(discLeadIn(), 0) << "sector " << sector << ", byte " << bytes;
      }
    }
    for (const int64_t sector :
         {7 * kOneSecond, 8 * kOneSecond - 1, 15 * kOneSecond, 16 * kOneSecond - 1}) {
      makeDisc(0, {{7 * kOneSecond, 8 * kOneSecond}, {15 * kOneSecond, 16 * kOneSecond}},
               25 * kOneSecond);
      soundInSector(sector, bytes);
      EXPECT_EQ(trackLeadIn(), 0) << "sector " << sector << ", byte " << bytes;
    }
  }
}

TEST_F(SheetLeadIns, ThePausesOfTheOthersAreEquallyLongInWholeSeconds) {
  makeDisc(0, {{7 * kOneSecond, 8 * kOneSecond}, {15 * kOneSecond, 16 * kOneSecond}},
           25 * kOneSecond);
  EXPECT_EQ(trackLeadIn(), 1000);
  EXPECT_EQ(m_infos[0].frames, 23 * 44100);
  EXPECT_EQ(m_infos[0].marks[2].start, 14.0);
  EXPECT_THAT(m_infos[0].pauses, IsEmpty());
  makeDisc(0, {{7 * kOneSecond, 8 * kOneSecond}, {15 * kOneSecond, 16 * kOneSecond + 1}},
           25 * kOneSecond);
  EXPECT_EQ(trackLeadIn(), 0);
  makeDisc(0, {{7 * kOneSecond, 8 * kOneSecond + 1}, {15 * kOneSecond, 16 * kOneSecond + 1}},
           25 * kOneSecond);
  EXPECT_EQ(trackLeadIn(), 0);
}

TEST_F(SheetLeadIns, ATrackThatStartsInsideASectorHasNone) {
  makeDisc(0, {{7 * kOneSecond, 8 * kOneSecond}}, 20 * kOneSecond);
  // All moves by a frame, which is silent too.
  m_infos[0].pauses[0] += disc::secondsOf(1);
  m_infos[0].marks[1].start += disc::secondsOf(1);
  m_image.replace(8 * kOneSecond * kSectorBytes, disc::kBytesPerFrame, disc::kBytesPerFrame, '\0');
  EXPECT_EQ(trackLeadIn(), 0);
}

TEST_F(SheetLeadIns, EachOtherTrackKeepsFourSeconds) {
  const Sectors first{7 * kOneSecond, 8 * kOneSecond}, second{12 * kOneSecond, 13 * kOneSecond};
  makeDisc(0, {first, second}, 17 * kOneSecond);
  EXPECT_EQ(trackLeadIn(), 1000);
  makeDisc(0, {first, second}, 17 * kOneSecond - 1);
  EXPECT_EQ(trackLeadIn(), 0);
  makeDisc(0, {first, {second.begin - 1, second.end - 1}}, 20 * kOneSecond);
  EXPECT_EQ(trackLeadIn(), 0);
}

TEST_F(SheetLeadIns, ADiscBeyondAllTimesIsNotReadForThem) {
  // The file is not there, so that a look at it throws.
  makeDisc(2 * kOneSecond, {}, 10 * kOneSecond);
  m_infos[0].frames = disc::kLongestTimeSectors * disc::kFramesPerSector;
  EXPECT_THROW(takeLeadIns(m_infos), Failure);
  m_infos[0].frames += disc::kFramesPerSector;
  EXPECT_EQ(takeLeadIns(m_infos).disc_ms, 0);
}

}  // namespace
}  // namespace velmor::render
