// Programs of other makers read what we write.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/host/render/program/program.h"

namespace render_test {
namespace {

using testing::HasSubstr;

/// Three tracks with codes, texts and both kinds of lead-in.
class Reader : public testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"a", "b", "c"}) writeWav(m_folder / (std::string(name) + ".wav"), 6);
    const Ended ended = render({m_folder / "a.wav", m_folder / "b.wav", m_folder / "c.wav",
                                "--title", "T", "--performer", "P", "--catalog", "0731452345622",
                                "--isrc", "1=USABC2600001", "--isrc", "3=USABC2600003",
                                "--disc-leadin", "2000", "--track-leadin", "2000", "-o", m_sheet});
    ASSERT_EQ(ended.status, 0) << ended.err;
  }
  bool has(const char* program) { return isInstalled(program); }

  Scratch m_folder;
  const std::string m_sheet = m_folder / "disc.cue";
  const std::string m_image = m_folder / "disc.bin";
};

TEST_F(Reader, MetaflacTakesTheSheetWithItsCodes) {
  if (!has("metaflac") || !has("flac")) GTEST_SKIP() << "flac is not installed";
  const std::string flac = m_folder / "disc.flac";
  ASSERT_EQ(run("flac", {"--silent", "--force-raw-format", "--endian=little", "--sign=signed",
                         "--channels=2", "--bps=16", "--sample-rate=44100", m_image, "-o", flac})
                .status,
            0);
  const Ended import = run("metaflac", {"--import-cuesheet-from=" + m_sheet, flac});
  ASSERT_EQ(import.status, 0) << import.err;
  const Ended list = run("metaflac", {"--list", "--block-type=CUESHEET", flac});
  EXPECT_THAT(list.out, HasSubstr("media catalog number: 0731452345622"));
  EXPECT_THAT(list.out, HasSubstr("ISRC: USABC2600001"));
  EXPECT_THAT(list.out, HasSubstr("ISRC: USABC2600003"));
}

TEST_F(Reader, CuebreakpointsSeesTheTracksWhereTheyAre) {
  if (!has("cuebreakpoints")) GTEST_SKIP() << "cuetools is not installed";
  EXPECT_EQ(run("cuebreakpoints", {m_sheet}).out, "0:10.00\n0:18.00\n");
}

TEST_F(Reader, ChdmanGivesTheImageBackToTheByte) {
  if (!has("chdman")) GTEST_SKIP() << "mame-tools is not installed";
  ASSERT_EQ(run("chdman", {"createcd", "-i", m_sheet, "-o", m_folder / "disc.chd"}).status, 0);
  ASSERT_EQ(run("chdman", {"extractcd", "-i", m_folder / "disc.chd", "-o", m_folder / "back.cue",
                           "-ob", m_folder / "back.bin"})
                .status,
            0);
  EXPECT_TRUE(readFile(m_folder / "back.bin") == readFile(m_image));
}

}  // namespace
}  // namespace render_test
