// Sets that want to be read as something else.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "ddp/check/set_files.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

namespace fs = std::filesystem;
using testing::Contains;
using testing::HasSubstr;

class HostileSets : public testing::Test {
 protected:
  HostileSets() { m_sheets.write("set"); }

  void nameAudio(const std::string& name) const {
    std::string field = name;
    field.resize(17, ' ');
    m_sheets.patch("set/DDPMS", kAudioPacket + kNameField, field);
    m_sheets.dropChecksums("set");
  }
  /// Neither the check nor the extraction takes the set.
  void expectRefused(const std::string& rule) const {
    EXPECT_THAT(m_sheets.errors("set"), Contains(rule));
    const std::vector<std::string> before = namesIn(m_sheets.folder.path());
    EXPECT_EQ(m_sheets.run({"extract", "set", "-o", "out.cue"}).status, 1);
    EXPECT_EQ(m_sheets.run({"extract", "set", "--tracks", "out"}).status, 1);
    EXPECT_EQ(namesIn(m_sheets.folder.path()), before);
  }

  SheetFolder m_sheets;
};

TEST_F(HostileSets, ThatNameAFileOutsideAreNotFollowed) {
  fs::rename(m_sheets.folder / "set/IMAGE.DAT", m_sheets.folder / "IMAGE.DAT");
  for (const char* name : {"../IMAGE.DAT", "/etc/passwd", "..", ".", "", "a\\..\\IMAGE.DAT",
                           "sub/../IMAGE.DAT", "IMAGE\x01.DAT"}) {
    nameAudio(name);
    expectRefused("file-name");
  }
}

TEST_F(HostileSets, WithALinkToAFileElsewhereAreNotFollowed) {
  fs::rename(m_sheets.folder / "set/IMAGE.DAT", m_sheets.folder / "elsewhere");
  fs::create_symlink("../elsewhere", m_sheets.folder / "set/IMAGE.DAT");
  expectRefused("file-missing");
}

TEST_F(HostileSets, WithAPipeOrAFolderInAFilesPlaceEndTheCheck) {
  for (const char* name : {"SD", "IMAGE.DAT", "CDTEXT.BIN"}) {
    const fs::path file = m_sheets.folder / "set" / name;
    const std::string whole = readFile(file);
    fs::remove(file);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    expectRefused("file-missing");
    fs::remove(file);
    fs::create_directory(file);
    expectRefused("file-missing");
    fs::remove(file);
    writeFile(file, whole);
  }
  EXPECT_TRUE(m_sheets.check("set").ready());
}

TEST_F(HostileSets, WithoutAMapAreNoSets) {
  for (const char* name : {"DDPMS", "DDPID"}) {
    const fs::path file = m_sheets.folder / "set" / name;
    const std::string whole = readFile(file);
    fs::remove(file);
    EXPECT_EQ(m_sheets.run({"check", "set"}).status, 2);
    ASSERT_EQ(mkfifo(file.c_str(), 0600), 0);
    const auto ended = m_sheets.run({"check", "set"});
    EXPECT_EQ(ended.status, 2);
    EXPECT_THAT(ended.err, HasSubstr("is no DDP 2.00 set"));
    fs::remove(file);
    writeFile(file, whole);
  }
}

TEST_F(HostileSets, WithLengthsOfGigabytesTakeNoMemory) {
  m_sheets.patch("set/DDPMS", 14, "99999999");
  m_sheets.patch("set/DDPMS", 128 + 14, "99999999");
  m_sheets.patch("set/DDPMS", kAudioPacket + 14, "99999999");
  fs::resize_file(m_sheets.folder / "set/SD", uintmax_t{5} << 30);  // takes no room on the disk
  const auto ended = m_sheets.run({"check", "set"});
  EXPECT_EQ(ended.status, 1);
  EXPECT_THAT(ended.out, HasSubstr("[file-unreadable]"));
  EXPECT_LT(ended.peak_kilobytes, 500'000);
}

TEST_F(HostileSets, WithAThousandStreamsAndPacketsComeToAnEnd) {
  const std::string map = readFile(m_sheets.folder / "set/DDPMS");
  std::string many = map;
  for (int i = 0; i < 3000; ++i) many += map.substr(128, 128);
  writeFile(m_sheets.folder / "set/DDPMS", many);
  const std::string pq = readFile(m_sheets.folder / "set/SD");
  std::string packets;
  for (int i = 0; i < 1900; ++i) packets += pq;
  writeFile(m_sheets.folder / "set/SD", packets);
  EXPECT_THAT(m_sheets.errors("set"), Contains("second-stream"));
}

TEST_F(HostileSets, ListCheckSumsOfFilesOutsideInVain) {
  writeFile(m_sheets.folder / "set/CHECKSUM.MD5",
            "00000000000000000000000000000000 *../a.bin\n"
            "00000000000000000000000000000000 */etc/passwd\n");
  EXPECT_TRUE(m_sheets.check("set").ready());
}

TEST_F(HostileSets, DoNotGetTheirTextsOntoTheTerminalAsTheyAre) {
  m_sheets.patch("set/DDPID", 38, "\x1B[2Jred\xFF");
  const auto ended = m_sheets.run({"check", "set"});
  EXPECT_EQ(ended.out.find('\x1B'), std::string::npos);
  EXPECT_EQ(m_sheets.run({"check", "set", "--json"}).out.find('\x1B'), std::string::npos);
}

TEST(PlainNames, AreThoseOfFilesInTheFolder) {
  for (const char* name : {"IMAGE.DAT", "a b", "..x", "-"}) EXPECT_TRUE(isPlainName(name)) << name;
  for (const char* name : {"", ".", "..", "a/b", "a\\b", "\x01", "\xE9"})
    EXPECT_FALSE(isPlainName(name)) << name;
}

}  // namespace
}  // namespace velmor::ddp::test
