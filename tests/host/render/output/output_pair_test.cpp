#include "host/render/output/output_pair.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "disc/failure.h"
#include "tests/host/render/input/sound_files.h"
#include "tests/kit/fork.h"
#include "tests/kit/whole_files.h"

namespace velmor::render {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::UnorderedElementsAre;

class OutputPairTest : public testing::Test {
 protected:
  /// The refusal's sentence, empty when there is none.
  static std::string refusal(const std::string& output, bool force = false,
                             const std::vector<std::string>& inputs = {}) {
    try {
      const OutputPair pair(output, force, inputs);
    } catch (const Failure& error) {
      return error.what();
    }
    return {};
  }

  /// Everything in the folder, hidden files too.
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const auto& entry : fs::directory_iterator(m_folder.path(""))) {
      found.push_back(entry.path().filename().string());
    }
    return found;
  }

  static void fill(const OutputPair& pair) {
    std::ofstream(pair.workingSheet()) << "new sheet";
    std::ofstream(pair.workingImage()) << "new image";
  }

  test::Folder m_folder;
};

TEST_F(OutputPairTest, ASheetWithoutItsEndingGetsIt) {
  for (const auto& [given, sheet, image] : {std::tuple{"disc", "disc.cue", "disc.bin"},
                                            {"disc.cue", "disc.cue", "disc.bin"},
                                            {"DISC.CUE", "DISC.CUE", "DISC.bin"},
                                            {"a.b", "a.b.cue", "a.b.bin"},
                                            {"a.wav", "a.wav.cue", "a.wav.bin"},
                                            {"abcd", "abcd.cue", "abcd.bin"},
                                            {"x.cue.cue", "x.cue.cue", "x.cue.bin"}}) {
    const OutputPair pair(m_folder.path(given), false, {});
    EXPECT_EQ(pair.sheet(), m_folder.path(sheet));
    EXPECT_EQ(pair.image(), m_folder.path(image));
    EXPECT_EQ(fs::path(pair.workingSheet()).filename(), sheet);
    EXPECT_EQ(fs::path(pair.workingImage()).filename(), image);
  }
}

TEST_F(OutputPairTest, OneLetterAndTheEndingAreAName) {
  const fs::path before = fs::current_path();
  fs::current_path(m_folder.path("."));
  const std::string sheet = fs::path(OutputPair("a.cue", false, {}).sheet()).filename();
  fs::current_path(before);
  EXPECT_EQ(sheet, "a.cue");
}

TEST_F(OutputPairTest, ANameThatASheetCannotHoldIsRefused) {
  EXPECT_THAT(refusal(m_folder.path("a\"b.cue")), AllOf(HasSubstr("\""), HasSubstr("-o")));
  EXPECT_THAT(refusal(m_folder.path("a\nb.cue")), HasSubstr("line break"));
  EXPECT_THAT(refusal(m_folder.path("a\x01"
                                    "b.cue")),
              HasSubstr("control character"));
  EXPECT_THAT(refusal(m_folder.path("a\\b.cue")), HasSubstr("backslash"));
  EXPECT_THAT(refusal(m_folder.path(".cue")), HasSubstr("no usable file name"));
  EXPECT_THAT(refusal(m_folder.path("")), HasSubstr("no usable file name"));
  EXPECT_THAT(refusal(""), HasSubstr("no usable file name"));
  EXPECT_THAT(refusal(m_folder.path(std::string(230, 'x'))), HasSubstr("no usable file name"));
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(OutputPairTest, TheFolderMustBeThere) {
  EXPECT_THAT(refusal(m_folder.path("no/disc.cue")),
              AllOf(HasSubstr("there is no folder"), HasSubstr(m_folder.path("no"))));
  const std::string file = m_folder.write("file", "x");
  EXPECT_THAT(refusal(file + "/disc.cue"), HasSubstr("there is no folder"));
  EXPECT_THAT(refusal("/proc/disc.cue"), HasSubstr("nothing can be written"));
}

TEST_F(OutputPairTest, AnInputInTheWayIsRefusedUnderWhateverName) {
  const std::string input = m_folder.write("disc.bin", "audio");
  EXPECT_THAT(refusal(m_folder.path("disc.cue"), true, {input}), HasSubstr("one of the inputs"));
  const std::string hard = m_folder.path("hard.bin");
  fs::create_hard_link(input, hard);
  EXPECT_THAT(refusal(m_folder.path("hard"), true, {input}), HasSubstr("one of the inputs"));
  const std::string soft = m_folder.path("soft.cue");
  fs::create_symlink(input, soft);
  EXPECT_THAT(refusal(soft, true, {input}), HasSubstr("one of the inputs"));
  EXPECT_EQ(test_kit::contentOf(input), "audio");
}

TEST_F(OutputPairTest, ANameThatIsNoUtf8IsConvertedAndTold) {
  const OutputPair pair(m_folder.path("Caf\xe9.cue"), false, {});
  EXPECT_EQ(pair.sheet(), m_folder.path("Caf\xc3\xa9.cue"));
  EXPECT_EQ(pair.image(), m_folder.path("Caf\xc3\xa9.bin"));
  EXPECT_THAT(pair.warnings(),
              ElementsAre(AllOf(HasSubstr("no UTF-8"), HasSubstr("Caf\xc3\xa9.cue\""))));
}

TEST_F(OutputPairTest, AnExistingPairNeedsForce) {
  m_folder.write("disc.bin", "old");
  EXPECT_THAT(refusal(m_folder.path("disc.cue")),
              AllOf(HasSubstr("disc.bin"), HasSubstr("--force")));
  EXPECT_EQ(refusal(m_folder.path("disc.cue"), true), "");
  fs::create_symlink("/nowhere", m_folder.path("link.cue"));
  EXPECT_THAT(refusal(m_folder.path("link.cue")), HasSubstr("--force"));
}

TEST_F(OutputPairTest, WhatIsNoFileIsNeverReplaced) {
  fs::create_directory(m_folder.path("disc.bin"));
  EXPECT_THAT(refusal(m_folder.path("disc.cue"), true), HasSubstr("is a folder"));
  ASSERT_EQ(mkfifo(m_folder.path("pipe.cue").c_str(), 0600), 0);
  EXPECT_THAT(refusal(m_folder.path("pipe.cue"), true), HasSubstr("is no regular file"));
}

TEST_F(OutputPairTest, APairThatAnotherProgramHoldsIsRefused) {
  const std::string image = m_folder.write("disc.bin", "old");
  const int fd = open(image.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(fd, LOCK_EX), 0);
  EXPECT_THAT(refusal(m_folder.path("disc.cue"), true),
              AllOf(HasSubstr("disc.bin"), HasSubstr("in use")));
  close(fd);
  EXPECT_EQ(refusal(m_folder.path("disc.cue"), true), "");
}

TEST_F(OutputPairTest, NothingIsSeenBeforeTheEndAndNothingIsLeftWithoutIt) {
  {
    const OutputPair pair(m_folder.path("disc"), false, {});
    fill(pair);
    EXPECT_THAT(names(), ElementsAre(HasSubstr(".velmor-render-")));
  }
  EXPECT_THAT(names(), testing::IsEmpty());
}

/// What another process leaves in `folder` when it is killed after `stage` has been called.
template <typename Stage>
void killWithAPair(const std::string& sheet, Stage stage) {
  test_kit::runUntilKilled([&] {
    OutputPair pair(sheet, true, {});
    stage(pair);
    raise(SIGKILL);
  });
}

TEST_F(OutputPairTest, WhatAKilledRunHasLeftIsRemovedAndTold) {
  killWithAPair(m_folder.path("disc"), [](OutputPair& pair) {
    fill(pair);
    fs::resize_file(pair.workingImage(), 3'000'000);
  });
  ASSERT_THAT(names(), ElementsAre(HasSubstr(".velmor-render-")));
  const std::string left = names()[0];
  {
    const OutputPair pair(m_folder.path("other"), false, {});
    EXPECT_THAT(pair.warnings(),
                ElementsAre(AllOf(HasSubstr(left), HasSubstr("was removed, 3 MB"))));
    EXPECT_THAT(names(), Not(testing::Contains(left)));
  }
  EXPECT_THAT(names(), testing::IsEmpty());
}

TEST_F(OutputPairTest, WhatARunHasLeftThatWasKilledInItsBurnIsRemovedWithoutItsAlbum) {
  killWithAPair(m_folder.path("disc"), [](OutputPair& pair) {
    fill(pair);
    pair.commitAndKeepWorkingNames();
    EXPECT_EQ(test_kit::contentOf(pair.workingSheet()), "new sheet") << "through its working name";
  });
  ASSERT_EQ(names().size(), 3U);
  EXPECT_EQ(OutputPair(m_folder.path("other"), false, {}).warnings().size(), 1U);
  EXPECT_THAT(names(), UnorderedElementsAre("disc.cue", "disc.bin"));
}

TEST_F(OutputPairTest, AnOldAlbumThatOnlyAKilledRunHasStaysThere) {
  m_folder.write("disc.cue", "old sheet");
  killWithAPair(m_folder.path("disc"), [this](OutputPair& pair) {
    const fs::path replaced =
        fs::path(pair.workingSheet()).parent_path().parent_path() / "replaced";
    fs::create_directory(replaced);
    fs::rename(m_folder.path("disc.cue"), replaced / "disc.cue");
  });
  const OutputPair pair(m_folder.path("other"), false, {});
  EXPECT_THAT(pair.warnings(), ElementsAre(AllOf(HasSubstr("stays"), HasSubstr("replaced\""))));
  EXPECT_EQ(names().size(), 2U);
}

TEST_F(OutputPairTest, AnOldAlbumWithTwoNamesLosesTheOneThatAKilledRunGaveIt) {
  m_folder.write("disc.cue", "old sheet");
  killWithAPair(m_folder.path("disc"), [this](OutputPair& pair) {
    const fs::path replaced =
        fs::path(pair.workingSheet()).parent_path().parent_path() / "replaced";
    fs::create_directory(replaced);
    fs::create_hard_link(m_folder.path("disc.cue"), replaced / "disc.cue");
  });
  EXPECT_EQ(OutputPair(m_folder.path("other"), false, {}).warnings().size(), 1U);
  EXPECT_THAT(names(), ElementsAre("disc.cue"));
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.cue")), "old sheet");
}

TEST_F(OutputPairTest, AFolderThatAnotherRunStillHoldsIsLeftAlone) {
  const OutputPair one(m_folder.path("one"), false, {});
  fill(one);
  const OutputPair other(m_folder.path("other"), false, {});
  EXPECT_THAT(other.warnings(), testing::IsEmpty());
  EXPECT_EQ(test_kit::contentOf(one.workingSheet()), "new sheet");
}

TEST_F(OutputPairTest, FoldersOfOtherNamesAndFilesAreNobodysLeavings) {
  fs::create_directory(m_folder.path(".velmor-render-notes"));
  fs::create_directory(m_folder.path(".velmor-render-"));
  m_folder.write(".velmor-render-abcdef", "a file");
  fs::create_directory(m_folder.path("elsewhere"));
  fs::create_directory_symlink("elsewhere", m_folder.path(".velmor-render-ghijkl"));
  EXPECT_THAT(OutputPair(m_folder.path("disc"), false, {}).warnings(), testing::IsEmpty());
  EXPECT_EQ(names().size(), 5U);
}

TEST_F(OutputPairTest, TheNewPairTakesThePlaceOfTheOld) {
  m_folder.write("disc.cue", "old sheet");
  m_folder.write("disc.bin", "old image");
  {
    OutputPair pair(m_folder.path("disc"), true, {});
    fill(pair);
    EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.cue")), "old sheet");
    pair.commit();
  }
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.cue")), "new sheet");
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.bin")), "new image");
  EXPECT_THAT(names(), UnorderedElementsAre("disc.cue", "disc.bin"));
}

TEST_F(OutputPairTest, AFailureWhileItTakesItsPlaceLeavesTheOldPair) {
  m_folder.write("disc.cue", "old sheet");
  m_folder.write("disc.bin", "old image");
  {
    OutputPair pair(m_folder.path("disc"), true, {});
    fill(pair);
    fs::remove(pair.workingSheet());  // the last of the four moves
    EXPECT_THROW(pair.commit(), Failure);
  }
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.cue")), "old sheet");
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.bin")), "old image");
  EXPECT_THAT(names(), UnorderedElementsAre("disc.cue", "disc.bin"));
}

TEST_F(OutputPairTest, APairThatHasComeMeanwhileIsNotReplacedWithoutForce) {
  {
    OutputPair pair(m_folder.path("disc"), false, {});
    fill(pair);
    m_folder.write("disc.cue", "another's");
    try {
      pair.commit();
      ADD_FAILURE() << "replaced without --force";
    } catch (const Failure& error) {
      EXPECT_THAT(error.what(), AllOf(HasSubstr("disc.cue"), HasSubstr("--force")));
    }
  }
  EXPECT_EQ(test_kit::contentOf(m_folder.path("disc.cue")), "another's");
  EXPECT_THAT(names(), ElementsAre("disc.cue"));
}

TEST_F(OutputPairTest, APairThatIsHeldMeanwhileIsNotReplaced) {
  const std::string sheet = m_folder.write("disc.cue", "old sheet");
  const int fd = open(sheet.c_str(), O_RDWR | O_CLOEXEC);
  {
    OutputPair pair(m_folder.path("disc"), true, {});
    fill(pair);
    ASSERT_EQ(flock(fd, LOCK_SH), 0);
    EXPECT_THROW(pair.commit(), Failure);
  }
  close(fd);
  EXPECT_EQ(test_kit::contentOf(sheet), "old sheet");
  EXPECT_THAT(names(), ElementsAre("disc.cue"));
}

}  // namespace
}  // namespace velmor::render
