// A drive's folder: what a disc's description must say, and what goes wrong with its files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/emulated_drive/two_emulated_drives.h"
#include "tools/emulated_drive/directory/disc_text.h"
#include "tools/emulated_drive/directory/file_surface.h"

namespace velmor::emulated_drive {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

/// What is said of a disc described so, empty when it is taken.
std::string complaint(const fs::path& file) {
  try {
    readDisc(file);
  } catch (const DirectoryError& error) {
    return error.what();
  }
  return {};
}

struct Flaw {
  const char* name;
  const char* line;  // takes the place of `instead`, or comes at the end
  const char* instead;
  const char* said;
};

class ADiscDescription : public TwoEmulatedDrives, public ::testing::WithParamInterface<Flaw> {};

constexpr const char* kTrackOne = "track = 1 0 -150 DEABC2000001 0\n";
constexpr const char* kTrackTwo = "track = 2 2 300 - 375 500\n";
constexpr const char* kLeadOut = "lead-out = 775\n";

std::string described() {
  return std::string("medium = cd-r\nstate = complete\nmcn = 4006381333931\n") + kLeadOut +
         kTrackOne + kTrackTwo;
}

TEST_F(ADiscDescription, IsReadBackAsItWasWritten) {
  const fs::path file = m_root / "disc.txt";
  writeFile(file, described());
  const EmulatedDisc disc = readDisc(file);
  EXPECT_EQ(disc.tracks.at(0).isrc, "DEABC2000001");
  EXPECT_EQ(disc.tracks.at(1).indices, (std::vector<int32_t>{375, 500}));
  writeFile(file, discText(disc));
  EXPECT_EQ(discText(readDisc(file)), discText(disc));
}

TEST_P(ADiscDescription, IsRefused) {
  const Flaw& flaw = GetParam();
  std::string text = described();
  const std::string instead = flaw.instead;
  text.replace(instead.empty() ? text.size() : text.find(instead), instead.size(), flaw.line);
  writeFile(m_root / "disc.txt", text);
  const std::string said = complaint(m_root / "disc.txt");
  EXPECT_THAT(said, HasSubstr(flaw.said));
  EXPECT_THAT(said, HasSubstr(" of \"" + (m_root / "disc.txt").string() + '"'));
}

INSTANTIATE_TEST_SUITE_P(
    Because, ADiscDescription,
    ::testing::Values(
        Flaw{"TheMcnIsTooLong", "mcn = 40063813339310000\n", "", "13 digits"},
        Flaw{"TheMcnHasALetter", "mcn = 400638133393X\n", "", "13 digits"},
        Flaw{"AnIsrcIsTooLong", "track = 2 2 300 DEABC20000010000 375\n", kTrackTwo,
             "12 capital letters and digits"},
        Flaw{"AnIsrcHasADash", "track = 2 2 300 DE-ABC200001 375\n", kTrackTwo,
             "12 capital letters and digits"},
        Flaw{"ATrackNumberIsLeftOut", "track = 3 2 300 - 375\n", kTrackTwo, "the next track's"},
        Flaw{"ATrackNumberIsAHundred", "track = 100 2 300 - 375\n", kTrackOne, "number, control"},
        Flaw{"ATrackHasNoIndex", "track = 2 2 300 -\n", kTrackTwo, "number, control"},
        Flaw{"AnIndexIsNoNumber", "track = 2 2 300 - x\n", kTrackTwo, "number, control"},
        Flaw{"ThePregapStartsBehindTheTrack", "track = 2 2 376 - 375\n", kTrackTwo, "ascend"},
        Flaw{"IndicesGoBack", "track = 2 2 300 - 375 374\n", kTrackTwo, "ascend"},
        Flaw{"ATrackStartsInTheOneBefore", "track = 2 2 0 - 375\n", kTrackTwo, "ascend"},
        Flaw{"TheLeadOutLiesInATrack", "lead-out = 500\n", kLeadOut, "a lead-out behind them"},
        Flaw{"AFactIsUnknown", "colour = green\n", "", "a fact about a disc"},
        Flaw{"ANumberIsNone", "capacity = many\n", "", "a whole number"},
        Flaw{"ALineHasNoEquals", "capacity\n", "", "key = value"},
        Flaw{"APackIsShort", "cd-text = 80\n", "", "18 bytes"},
        Flaw{"TheStateIsUnknown", "state = open\n", "", "blank, incomplete or complete"},
        Flaw{"TheMediumIsUnknown", "medium = dvd\n", "", "cd-r or cd-rw"}),
    [](const auto& flaw) { return std::string(flaw.param.name); });

TEST_F(ADiscDescription, OfAClosedDiscHasTracks) {
  writeFile(m_root / "disc.txt", "lead-out = 775\nstate = complete\n");
  EXPECT_THAT(complaint(m_root / "disc.txt"), HasSubstr("tracks and a lead-out behind them"));
}

class AFolder : public TwoEmulatedDrives {};

TEST_F(AFolder, SaysWhenItsDiscCannotBeTakenAway) {
  fs::create_directories(m_drives[0].audioFile() / "in the way");
  EXPECT_THROW(m_drives[0].saveDisc(std::nullopt), DirectoryError);
}

TEST_F(AFolder, SaysWhenItsTrayCannotBeClosed) {
  fs::create_directories(m_drives[0].trayFile() / "in the way");
  EXPECT_THROW(m_drives[0].saveTray(false), DirectoryError);
}

TEST_F(AFolder, KeepsNoDraftOfAFileThatCannotBeReplaced) {
  fs::remove(m_drives[0].discFile());
  fs::create_directories(m_drives[0].discFile() / "in the way");
  EXPECT_THROW(m_drives[0].saveDisc(EmulatedDisc{}), DirectoryError);
  for (const auto& entry : fs::directory_iterator(m_drives[0].path())) {
    EXPECT_THAT(entry.path().filename(), ::testing::AnyOf("drive.conf", "disc.txt"));
  }
}

TEST_F(AFolder, HasNoAudioFileForHavingBeenReadFrom) {
  FileSurface surface(m_drives[0].audioFile());
  ByteBuffer sector(kSectorBytes, 0xFF);
  EXPECT_TRUE(surface.read(0, sector));
  EXPECT_EQ(sector, ByteBuffer(kSectorBytes));
  EXPECT_FALSE(fs::exists(m_drives[0].audioFile()));
  EXPECT_TRUE(surface.write(0, ByteBuffer(kSectorBytes, 0x55)));
  EXPECT_TRUE(surface.read(0, sector));
  EXPECT_EQ(sector, ByteBuffer(kSectorBytes, 0x55));
}

TEST_F(AFolder, TellsTheDriveWhenItsAudioFileFails) {
  fs::create_directories(m_drives[0].audioFile());
  FileSurface surface(m_drives[0].audioFile());
  ByteBuffer sector(kSectorBytes);
  EXPECT_FALSE(surface.read(0, sector));
  EXPECT_FALSE(surface.write(0, sector));
  EXPECT_FALSE(surface.erase());
}

}  // namespace
}  // namespace velmor::emulated_drive
