// From audio files to the closed disc: what a person gets for one command.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/burn/burn_program_case.h"

namespace burn_test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using velmor::emulated_drive::DiscStatus;
using velmor::emulated_drive::DriveSettings;
using velmor::emulated_drive::EmulatedDisc;

class BurnProgram : public BurnProgramCase {};

TEST_F(BurnProgram, TheDiscIsTheImageAndItsTracksBeginWhereTheRenderPutThem) {
  ASSERT_EQ(render(std::string(kAlbum) + "--drive 1 --json --disc-leadin 2010 --track-leadin 1000"),
            0)
      << m_said;
  EXPECT_TRUE(burned(1) == image());
  const Json report = Json::parse(m_printed);
  ASSERT_EQ(report["tracks"].size(), 3u);
  EXPECT_THAT(starts(1), ElementsAre(report["tracks"][0]["start_sector"].get<int>(),
                                     report["tracks"][1]["start_sector"].get<int>(),
                                     report["tracks"][2]["start_sector"].get<int>()));
  EXPECT_EQ(disc(1).lead_out, report["image"]["sectors"].get<int>());
  EXPECT_EQ(disc(1).state, DiscStatus::kComplete);
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
  EXPECT_EQ(report["burn"]["written"], 1);
  EXPECT_EQ(report["burn"]["drive"], "VELMOR TEST DRIVE 2");
  EXPECT_FALSE(report["burn"].contains("failure"));
  EXPECT_THAT(m_said, testing::EndsWith("velmor-render: burning to \"VELMOR TEST DRIVE 2\"\n"
                                        "velmor-render: the CD-R is written and closed\n"));
  EXPECT_THAT(ini(), AllOf(HasSubstr("drive=1"), HasSubstr("deletefiles=0"), HasSubstr("eject=0")));
}

TEST_F(BurnProgram, ALeadInOfOddBytesLeavesTheCutsWhereTheAudioIs) {
  // The module counts whole frames of each silence only, and its own cuts lie a sector too early.
  ASSERT_EQ(render(std::string(kAlbum) + "--drive 1 --json --disc-leadin 2013 --track-leadin 1007"),
            0)
      << m_said;
  const Json report = Json::parse(m_printed);
  EXPECT_TRUE(burned(1) == image());
  EXPECT_THAT(starts(1), ElementsAre(report["tracks"][0]["start_sector"].get<int>(),
                                     report["tracks"][1]["start_sector"].get<int>(),
                                     report["tracks"][2]["start_sector"].get<int>()));
}

TEST_F(BurnProgram, NothingOfTheWorkIsLeftBesideThePair) {
  ASSERT_EQ(render(kShort), 0) << m_said;
  std::vector<std::string> hidden;
  for (const auto& entry : std::filesystem::directory_iterator(m_root)) {
    const std::string name = entry.path().filename().string();
    if (name.front() == '.') hidden.push_back(name);
  }
  EXPECT_THAT(hidden, IsEmpty());
  EXPECT_TRUE(exists("album.cue"));
  EXPECT_TRUE(exists("album.bin"));
}

TEST_F(BurnProgram, AnotherProgramReadsTracksTextsAndAudioBack) {
  ASSERT_EQ(render(std::string(kAlbum) +
                   "--drive 1 --cd-text --title 'Night Drive' --performer 'The Lanterns' "
                   "--catalog 4006381333931 --isrc 2=DEABC2000002"),
            0)
      << m_said;
  EXPECT_EQ(disc(1).mcn, "4006381333931");
  EXPECT_EQ(disc(1).tracks[1].isrc, "DEABC2000002");
  ASSERT_EQ(shell("mkdir audio; exec '" VELMOR_BINARY_DIR
                  "/velmor-emulated-drive' run drives -- cdrskin dev=/dev/sr31 -toc "
                  "extract_audio_to=audio cdtext_to_v07t=text"),
            0)
      << m_said;
  const std::string toc = m_printed + m_said + test_kit::contentOf(m_root / "text");
  EXPECT_THAT(toc, HasSubstr("track:   2 lba:       320"));
  EXPECT_THAT(toc, HasSubstr("track:   3 lba:       640"));
  EXPECT_THAT(toc, HasSubstr("track:lout lba:       960"));
  EXPECT_THAT(toc, HasSubstr("Night Drive"));
  EXPECT_THAT(toc, HasSubstr("The Lanterns"));
  EXPECT_THAT(toc, HasSubstr("song3"));
  std::string audio;
  for (int track = 1; track <= 3; ++track) {
    const std::string name = "audio/0" + std::to_string(track) + ".wav";
    audio += test_kit::contentOf(m_root / name).substr(44);
  }
  EXPECT_TRUE(audio == image());
}

TEST_F(BurnProgram, ADriveIsFoundByAPartOfItsNameInEitherCase) {
  ASSERT_EQ(render(std::string(kShort) + "--drive 'drive 2'"), 0) << m_said;
  EXPECT_EQ(disc(1).state, DiscStatus::kComplete);
}

TEST_F(BurnProgram, ADriveIsFoundByItsDeviceFile) {
  ASSERT_EQ(render(std::string(kShort) + "--drive /dev/sr31"), 0) << m_said;
  EXPECT_EQ(disc(1).state, DiscStatus::kComplete);
}

TEST_F(BurnProgram, ADriveThatIsNotThereStopsBeforeTheRender) {
  const std::pair<const char*, const char*> cases[] = {
      {"2", "there is no drive \"2\": 2 drives found, counting from 0"},
      {"plotter", "there is no drive \"plotter\""},
      {"velmor", "\"velmor\" may be 0 \"VELMOR TEST DRIVE 1 (/dev/sr30)\" or 1 \"VELMOR"}};
  for (const auto& [drive, words] : cases) {
    EXPECT_EQ(render(std::string(kShort) + "--drive " + drive), 1);
    EXPECT_THAT(m_said, HasSubstr(words));
    EXPECT_FALSE(exists("album.bin"));
  }
}

TEST_F(BurnProgram, WithoutAChoiceTheDriveOfLastTimeIsTaken) {
  ASSERT_EQ(render(std::string(kShort) + "--drive 1"), 0) << m_said;
  insert(1, EmulatedDisc());
  ASSERT_EQ(render(std::string(kShort) + "--force"), 0) << m_said;
  EXPECT_EQ(disc(1).state, DiscStatus::kComplete);
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
}

TEST_F(BurnProgram, EjectsWhenAskedTo) {
  ASSERT_EQ(render(std::string(kShort) + "--eject"), 0) << m_said;
  EXPECT_TRUE(m_drives[0].trayOpen());
}

TEST_F(BurnProgram, DoesNotEjectBecauseItDidLastTime) {
  ASSERT_EQ(render(std::string(kShort) + "--eject"), 0) << m_said;
  insert(0, EmulatedDisc());
  ASSERT_EQ(render(std::string(kShort) + "--force"), 0) << m_said;
  EXPECT_FALSE(m_drives[0].trayOpen());
}

TEST_F(BurnProgram, DeletesTheImageAfterAGoodBurn) {
  ASSERT_EQ(render(std::string(kShort) + "--delete-image"), 0) << m_said;
  EXPECT_FALSE(exists("album.cue"));
  EXPECT_FALSE(exists("album.bin"));
  EXPECT_THAT(m_printed, HasSubstr("1 disc written"));
  EXPECT_THAT(m_printed, HasSubstr("the sheet and the image are deleted"));
}

TEST_F(BurnProgram, ReplacedFilesDoNotComeBackWhenTheImageIsDeleted) {
  test_kit::writeFile(m_root / "album.cue", "old");
  test_kit::writeFile(m_root / "album.bin", "old");
  ASSERT_EQ(render(std::string(kShort) + "--delete-image --force"), 0) << m_said;
  EXPECT_FALSE(exists("album.cue"));
  EXPECT_FALSE(exists("album.bin"));
}

TEST_F(BurnProgram, AFailedBurnDeletesNothingAlsoAfterOneThatDid) {
  ASSERT_EQ(render(std::string(kShort) + "--delete-image"), 0) << m_said;
  EXPECT_THAT(ini(), HasSubstr("deletefiles=1"));
  EXPECT_EQ(render(std::string(kShort) + "--delete-image"), 1) << "the disc is closed now";
  EXPECT_TRUE(exists("album.cue"));
  EXPECT_TRUE(exists("album.bin"));
}

TEST_F(BurnProgram, ADryRunStoresAndDeletesNothing) {
  ASSERT_EQ(render(std::string(kShort) + "--dry-run --delete-image --json"), 0) << m_said;
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
  EXPECT_EQ(burned(0), "");
  EXPECT_TRUE(exists("album.bin"));
  const Json burn = Json::parse(m_printed)["burn"];
  EXPECT_EQ(burn["tested"], true);
  EXPECT_EQ(burn["written"], 0);
  EXPECT_EQ(burn["image_deleted"], false);
}

TEST_F(BurnProgram, ReadsTheDiscBackWhenAskedTo) {
  ASSERT_EQ(render(std::string(kShort) + "--verify --json"), 0) << m_said;
  EXPECT_EQ(Json::parse(m_printed)["burn"]["compared"], true);
  EXPECT_THAT(m_said, HasSubstr("equals the image"));
}

TEST_F(BurnProgram, QuietSaysNothingOfAGoodBurn) {
  ASSERT_EQ(render(std::string(kShort) + "--quiet"), 0);
  EXPECT_EQ(m_said, "");
  EXPECT_EQ(m_printed, "");
}

TEST_F(BurnProgram, CopiesWithNobodyToChangeTheDiscEndAfterTheFirst) {
  EXPECT_EQ(render(std::string(kShort) + "--copies 2 --delete-image"), 1);
  EXPECT_THAT(m_said, HasSubstr("copy 2 of 2 was not begun: no other disc was put in"));
  EXPECT_EQ(disc(0).state, DiscStatus::kComplete);
  EXPECT_TRUE(m_drives[0].trayOpen()) << "the first disc is handed out";
  EXPECT_TRUE(exists("album.bin")) << "one copy is missing";
}

// What can go wrong.

class BurnFault : public BurnProgramCase, public testing::WithParamInterface<size_t> {
 public:
  struct Case {
    const char* name;
    void (*prepare)(const BurnFault&);
    const char* words;
    bool spoils_the_disc;
  };
  static const std::vector<Case>& cases();
};

const std::vector<BurnFault::Case>& BurnFault::cases() {
  static const std::vector<Case> kCases = {
      {"MediumError",
       [](const BurnFault& test) {
         test.change(0, [](DriveSettings& settings) { settings.faults.write_error_at = 500; });
       },
       "(track 2)", true},
      {"EmptyTray", [](const BurnFault& test) { test.insert(0, std::nullopt); },
       "there is no disc in the drive", false},
      {"ClosedDisc", [](const BurnFault& test) { test.insert(0, closed()); },
       "a CD-R that is written and closed", false},
      {"SmallDisc",
       [](const BurnFault& test) {
         EmulatedDisc small;
         small.capacity = 900;
         test.insert(0, small);
       },
       "00:00:60 too much", false},
      {"RewritableWithNobodyToAsk",
       [](const BurnFault& test) {
         EmulatedDisc disc;
         disc.medium = velmor::emulated_drive::MediumType::kCdRw;
         test.insert(0, closed(disc));
       },
       "which was not to be erased", false},
      {"Busy",
       [](const BurnFault& test) {
         test.change(0, [](DriveSettings& settings) { settings.busy = true; });
       },
       "\"/dev/sr30\" is in use by another program", false},
      {"NoPermission",
       [](const BurnFault& test) {
         test.change(0, [](DriveSettings& settings) { settings.deny = true; });
       },
       "sudo usermod -aG cdrom", false},
  };
  return kCases;
}

TEST_P(BurnFault, IsToldAndCostsNoImage) {
  const Case& fault = cases()[GetParam()];
  ASSERT_EQ(render("song1.wav song2.wav song3.wav -o expected.cue"), 0) << m_said;
  fault.prepare(*this);
  EXPECT_EQ(render(std::string(kAlbum) + "--drive /dev/sr30 --delete-image"), 1);
  EXPECT_THAT(m_said, HasSubstr(fault.words));
  EXPECT_THAT(m_said, Not(HasSubstr("Try again"))) << "nobody is there to answer";
  EXPECT_TRUE(image() == test_kit::contentOf(m_root / "expected.bin"));
  EXPECT_TRUE(exists("album.cue"));
  if (!fault.spoils_the_disc) {
    EXPECT_EQ(burned(0), "");
  }
  EXPECT_EQ(disc(1).state, DiscStatus::kBlank) << "no other drive is taken instead";
}

INSTANTIATE_TEST_SUITE_P(Each, BurnFault, testing::Range(size_t{0}, BurnFault::cases().size()),
                         [](const auto& test) {
                           return std::string(BurnFault::cases()[test.param].name);
                         });

TEST_F(BurnProgram, AnImageIsToldOfAsPutOutWhenTheSpoiledDiscIsEjected) {
  change(0, [](DriveSettings& settings) { settings.faults.write_error_at = 100; });
  EXPECT_EQ(render(std::string(kShort) + "--eject"), 1);
  EXPECT_TRUE(m_drives[0].trayOpen());
  EXPECT_THAT(m_said, HasSubstr("cannot be used any more"));
}

TEST_F(BurnProgram, WithoutAnyRecorderThePersonIsToldToSelectOne) {
  std::filesystem::remove_all(m_root / "drives");
  std::filesystem::create_directory(m_root / "drives");
  EXPECT_EQ(render(kShort), 1);
  EXPECT_THAT(m_said, HasSubstr("warning: no recorder can be used at the moment"));
  EXPECT_THAT(m_said, HasSubstr("the module says \"CD Burn Error\": Select a recorder"));
  EXPECT_THAT(m_said, HasSubstr("no recorder was found"));
  EXPECT_TRUE(exists("album.bin"));
}

TEST_F(BurnProgram, WhenNoRecorderMayBeOpenedEachIsNamedWithTheReason) {
  for (const int drive : {0, 1})
    change(drive, [](DriveSettings& settings) { settings.deny = true; });
  EXPECT_EQ(render(kShort), 1);
  EXPECT_THAT(m_said,
              AllOf(HasSubstr("Select a recorder"), HasSubstr("\"/dev/sr30\" may not be opened"),
                    HasSubstr("\"/dev/sr31\" may not be opened"), HasSubstr("group cdrom")));
}

TEST_F(BurnProgram, AnImageThatIsNotWholeIsNotBurned) {
  // The last block does not reach the disk, which shows when the sink closes the file only.
  EXPECT_EQ(render(kAlbum, "prlimit --fsize=2242560 "), 1);
  EXPECT_THAT(m_said, HasSubstr("the image is not complete"));
  EXPECT_THAT(m_said, Not(HasSubstr("Burning")));
  EXPECT_EQ(disc(0).state, DiscStatus::kBlank);
  EXPECT_EQ(burned(0), "");
  EXPECT_FALSE(exists("album.bin"));
}

// Listing.

TEST_F(BurnProgram, ListsTheDrivesWithTheirDiscs) {
  insert(1, closed());
  ASSERT_EQ(render("--list-drives"), 0) << m_said;
  EXPECT_EQ(m_printed,
            " 0  VELMOR TEST DRIVE 1 (/dev/sr30): a blank CD-R, 79:57:70 free\n"
            " 1  VELMOR TEST DRIVE 2 (/dev/sr31): a CD-R that is written and closed\n");
  EXPECT_EQ(m_said, "");
}

TEST_F(BurnProgram, ListsDrivesThatCannotBeUsedWithTheReason) {
  change(0, [](DriveSettings& settings) { settings.deny = true; });
  ASSERT_EQ(render("--list-drives --json"), 0) << m_said;
  const Json drives_listed = Json::parse(m_printed)["drives"];
  ASSERT_EQ(drives_listed.size(), 2u);
  EXPECT_EQ(drives_listed[0]["number"], 0);
  EXPECT_EQ(drives_listed[0]["address"], "/dev/sr30");
  EXPECT_EQ(drives_listed[0]["usable"], false);
  EXPECT_THAT(drives_listed[0]["obstacle"].get<std::string>(), HasSubstr("group cdrom"));
  EXPECT_EQ(drives_listed[1]["number"], 1);
  EXPECT_EQ(drives_listed[1]["address"], "/dev/sr31");
  EXPECT_EQ(drives_listed[1]["product"], "TEST DRIVE 2");
  EXPECT_EQ(drives_listed[1]["usable"], true);
  EXPECT_EQ(drives_listed[1]["disc"], "a blank CD-R, 79:57:70 free");
}

TEST_F(BurnProgram, ANumberOfTheListMeansItsDriveWhileAnotherIsBusy) {
  change(0, [](DriveSettings& settings) { settings.busy = true; });
  ASSERT_EQ(render(std::string(kShort) + "--drive 1"), 0) << m_said;
  EXPECT_TRUE(burned(1) == image());
  EXPECT_EQ(render(std::string(kShort) + "--force --drive 0"), 1);
  EXPECT_THAT(m_said, HasSubstr("\"/dev/sr30\" is in use by another program"));
}

TEST_F(BurnProgram, ListsNoDriveInPlainWords) {
  std::filesystem::remove_all(m_root / "drives");
  std::filesystem::create_directory(m_root / "drives");
  EXPECT_EQ(render("--list-drives"), 0);
  EXPECT_EQ(m_printed, "No drive was found.\n");
  EXPECT_EQ(render("--list-drives --json"), 0);
  EXPECT_EQ(Json::parse(m_printed)["drives"], Json::array());
}

// Usage.

TEST_F(BurnProgram, OptionsOfABurnNeedTheBurn) {
  for (const char* option : {"--drive 0", "--eject", "--delete-image", "--dry-run", "--speed 4",
                             "--copies 2", "--verify", "--cd-text"}) {
    EXPECT_EQ(render(std::string("song1.wav -o album.cue ") + option), 2) << option;
    EXPECT_THAT(m_said, HasSubstr("add --burn")) << option;
    EXPECT_FALSE(exists("album.bin"));
  }
}

TEST_F(BurnProgram, NumbersThatMakeNoSenseAreRefused) {
  for (const char* option :
       {"--copies 0", "--copies x", "--speed 0", "--speed -4", "--dry-run --copies 2"}) {
    EXPECT_EQ(render(std::string(kShort) + option), 2) << option;
    EXPECT_THAT(m_said, Not(IsEmpty()));
  }
}

TEST_F(BurnProgram, HelpTellsWhereTheSettingsAre) {
  ASSERT_EQ(render("--help"), 0);
  EXPECT_THAT(m_printed, HasSubstr((m_root / "config/velmor/velmor-render.ini").string()));
}

}  // namespace
}  // namespace burn_test
