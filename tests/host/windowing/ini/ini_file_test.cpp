#include "host/windowing/ini/ini_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "host/windowing/functions/layer_functions.h"
#include "tests/kit/scratch_folder.h"
#include "tests/kit/whole_files.h"

namespace velmor::windowing {
namespace {

namespace fs = std::filesystem;
using functions::GetPrivateProfileInt;
using functions::GetPrivateProfileString;
using functions::WritePrivateProfileString;

class IniFileTest : public testing::Test {
 protected:
  void TearDown() override { fs::permissions(m_folder.path(), fs::perms::owner_all); }
  void put(std::string_view text) const { std::ofstream(m_path, std::ios::binary) << text; }
  std::string content() const { return test_kit::contentOf(m_path); }
  BOOL write(const char* key, const char* value) const {
    return WritePrivateProfileString("velmor_cd", key, value, m_path.c_str());
  }
  int read(const char* key, int fallback) const {
    return GetPrivateProfileInt("velmor_cd", key, fallback, m_path.c_str());
  }
  std::string text(const char* key) const {
    char buffer[64];
    GetPrivateProfileString("velmor_cd", key, "-", buffer, sizeof buffer, m_path.c_str());
    return buffer;
  }
  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(m_folder.path()), {}));
  }

  const test_kit::ScratchFolder m_folder;
  std::string m_path = m_folder.file("host.ini");
};

TEST_F(IniFileTest, SettingsAreWrittenInOrderAndReadBack) {
  EXPECT_EQ(write("eject", "1"), 1);
  EXPECT_EQ(write("deletefiles", "0"), 1);
  EXPECT_EQ(write("drive", "-1"), 1);
  EXPECT_EQ(content(), "[velmor_cd]\neject=1\ndeletefiles=0\ndrive=-1\n");
  EXPECT_EQ(read("eject", 5), 1);
  EXPECT_EQ(read("deletefiles", 5), 0);
  EXPECT_EQ(read("drive", 5), -1);
  EXPECT_EQ(read("method", 5), 5);
  EXPECT_EQ(files(), 1U) << "nothing is left beside it";
}

TEST_F(IniFileTest, NumbersAreReadAsFarAsTheyGo) {
  const struct {
    const char* value;
    int number;
  } cases[] = {{"12abc", 12},
               {" 7 ", 7},
               {"abc", 0},
               {"", 5},
               {"\"3\"", 3},
               {"99999999999", 2147483647},
               {"-99999999999", -2147483647 - 1},
               {"010", 10}};
  for (const auto& each : cases) {
    put(std::string("[velmor_cd]\nkey=") + each.value + "\n");
    EXPECT_EQ(read("key", 5), each.number) << each.value;
  }
}

TEST_F(IniFileTest, NamesMatchInAnyLetterCaseAndBlanksDoNotCount) {
  put("[ Velmor_CD ]\n  Eject =  yes please  \n");
  EXPECT_EQ(text("EJECT"), "yes please");
  EXPECT_EQ(write("ejecT", "no"), 1);
  EXPECT_EQ(content(), "[ Velmor_CD ]\n  Eject =no\n");
}

TEST_F(IniFileTest, EverythingElseStaysAsItWas) {
  const std::string before =
      "\xEF\xBB\xBF; by hand\r\n[other]\r\nkey=1\r\n\r\n; mine\r\n[velmor_cd]\r\neject=1\r\n"
      "not an entry\r\n\r\n; about the last one\r\n[last]\r\nkey = 2\r\n";
  put(before);
  write("eject", "0");
  write("drive", "3");
  EXPECT_EQ(content(),
            "\xEF\xBB\xBF; by hand\r\n[other]\r\nkey=1\r\n\r\n; mine\r\n[velmor_cd]\r\neject=0\r\n"
            "drive=3\r\nnot an entry\r\n\r\n; about the last one\r\n[last]\r\nkey = 2\r\n");
}

TEST_F(IniFileTest, ACommentedSettingIsNone) {
  put("[velmor_cd]\n;eject=1\n# eject=2\n");
  EXPECT_EQ(read("eject", 9), 9);
  EXPECT_EQ(read(";eject", 9), 9);
}

TEST_F(IniFileTest, TheFirstOfTwoCounts) {
  put("[velmor_cd]\nk=1\nk=2\n[velmor_cd]\nk=3\nother=4\n");
  EXPECT_EQ(read("k", 0), 1);
  EXPECT_EQ(read("other", 0), 0);
  write("k", "9");
  EXPECT_EQ(content(), "[velmor_cd]\nk=9\nk=2\n[velmor_cd]\nk=3\nother=4\n");
}

TEST_F(IniFileTest, ANullValueRemovesTheKeyAndANullKeyTheSection) {
  put("[a]\nx=1\n\n[velmor_cd]\neject=1\ndrive=2\n\n; about b\n[b]\ny=2\n");
  EXPECT_EQ(write("EJECT", nullptr), 1);
  EXPECT_EQ(content(), "[a]\nx=1\n\n[velmor_cd]\ndrive=2\n\n; about b\n[b]\ny=2\n");
  EXPECT_EQ(write(nullptr, "ignored"), 1);
  EXPECT_EQ(content(), "[a]\nx=1\n\n\n; about b\n[b]\ny=2\n");
  EXPECT_EQ(write(nullptr, nullptr), 1);
  EXPECT_EQ(write("eject", nullptr), 1);
}

TEST_F(IniFileTest, RemovingFromAFileThatThereIsNotMakesNone) {
  EXPECT_EQ(write("eject", nullptr), 1);
  EXPECT_EQ(files(), 0U);
}

TEST_F(IniFileTest, AFileWithoutAFinalLineEndGetsOne) {
  put("[a]\nx=1");
  write("eject", "1");
  EXPECT_EQ(content(), "[a]\nx=1\n\n[velmor_cd]\neject=1\n");
  put("[velmor_cd]");
  write("eject", "1");
  EXPECT_EQ(content(), "[velmor_cd]\neject=1\n");
}

TEST_F(IniFileTest, WhatALineCannotHoldIsRefused) {
  put("[velmor_cd]\neject=1\n");
  const std::string before = content();
  for (const char* key : {"", "a=b", "a\nb", "[x", ";x", "#x"}) {
    EXPECT_EQ(write(key, "1"), 0) << key;
  }
  EXPECT_EQ(write("key", "a\nb"), 0);
  EXPECT_EQ(WritePrivateProfileString("a]b", "k", "v", m_path.c_str()), 0);
  EXPECT_EQ(WritePrivateProfileString("", "k", "v", m_path.c_str()), 0);
  EXPECT_EQ(WritePrivateProfileString(nullptr, "k", "v", m_path.c_str()), 0);
  EXPECT_EQ(WritePrivateProfileString("s", "k", "v", nullptr), 0);
  EXPECT_EQ(content(), before);
}

TEST_F(IniFileTest, TheFileIsReplacedInOneStepAndKeepsItsPermissions) {
  put("[velmor_cd]\neject=1\n");
  fs::permissions(m_path, fs::perms::owner_read | fs::perms::owner_write);
  const std::string other_name = (m_folder / "old").string();
  ASSERT_EQ(link(m_path.c_str(), other_name.c_str()), 0);
  EXPECT_EQ(write("eject", "0"), 1);
  std::ifstream old(other_name);
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(old), {}), "[velmor_cd]\neject=1\n")
      << "who had the file open still reads the whole old one";
  EXPECT_EQ(fs::status(m_path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(IniFileTest, AnUnchangedFileIsNotWritten) {
  put("[velmor_cd]\neject = 1\n");
  struct stat before = {};
  struct stat after = {};
  stat(m_path.c_str(), &before);
  EXPECT_EQ(write("eject", "1"), 1);
  stat(m_path.c_str(), &after);
  EXPECT_EQ(before.st_ino, after.st_ino);
}

TEST_F(IniFileTest, ASymbolicLinkStaysOne) {
  const fs::path real = m_folder / "real.ini";
  fs::create_symlink(real, m_path);
  std::ofstream(real) << "[a]\nx=1\n";
  EXPECT_EQ(write("eject", "1"), 1);
  EXPECT_TRUE(fs::is_symlink(m_path));
  EXPECT_EQ(read("eject", 0), 1);
  EXPECT_EQ(files(), 2U);
}

TEST_F(IniFileTest, AFileThatCannotBeReadIsNotReplaced) {
  fs::create_directory(m_path);
  EXPECT_EQ(write("eject", "1"), 0);
  EXPECT_EQ(read("eject", 4), 4);
  EXPECT_TRUE(fs::is_directory(m_path));
  EXPECT_EQ(files(), 1U);
}

TEST_F(IniFileTest, AFullDiskLeavesTheOldFileAndNothingBesideIt) {
  put("[velmor_cd]\neject=1\n");
  const std::string before = content();
  struct rlimit usual = {};
  getrlimit(RLIMIT_FSIZE, &usual);
  struct rlimit tight = usual;
  tight.rlim_cur = 8;
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &tight);
  const BOOL written = write("drive", "1");
  setrlimit(RLIMIT_FSIZE, &usual);
  signal(SIGXFSZ, handler);
  EXPECT_EQ(written, 0);
  EXPECT_EQ(content(), before);
  EXPECT_EQ(files(), 1U);
}

TEST_F(IniFileTest, ALeftoverOfACrashedWriterIsInNobodysWay) {
  const std::string leftover = m_path + ".new" + std::to_string(getpid()) + "-0";
  std::ofstream(leftover) << "half";
  EXPECT_EQ(write("eject", "1"), 1);
  EXPECT_EQ(read("eject", 0), 1);
  EXPECT_EQ(files(), 2U) << "what is not ours is not removed";
}

TEST_F(IniFileTest, ANewFileHasTheUsualPermissions) {
  const mode_t mask = umask(022);
  EXPECT_EQ(write("eject", "1"), 1);
  umask(mask);
  struct stat made = {};
  stat(m_path.c_str(), &made);
  EXPECT_EQ(made.st_mode & 0777U, 0644U);
}

TEST_F(IniFileTest, AMissingFolderIsAFailure) {
  m_path = (m_folder / "missing" / "host.ini").string();
  EXPECT_EQ(write("eject", "1"), 0);
}

TEST_F(IniFileTest, ATextIsCutToItsBufferAndLosesItsQuotationMarks) {
  put("[velmor_cd]\nquoted=\"  a b \"\nlong=12345\nmixed=\"a'\n");
  EXPECT_EQ(text("quoted"), "  a b ");
  EXPECT_EQ(text("mixed"), "\"a'");
  EXPECT_EQ(text("missing"), "-");
  char buffer[4];
  EXPECT_EQ(GetPrivateProfileString("velmor_cd", "long", "", buffer, 4, m_path.c_str()), 3U);
  EXPECT_STREQ(buffer, "123");
  EXPECT_EQ(GetPrivateProfileString("velmor_cd", "x", nullptr, buffer, 4, m_path.c_str()), 0U);
  EXPECT_STREQ(buffer, "");
}

TEST_F(IniFileTest, NamesAreListedWithAZeroEach) {
  put("[a]\nx=1\n[bc]\nyy=2\nz=3\n");
  char buffer[16];
  std::fill(std::begin(buffer), std::end(buffer), '?');
  EXPECT_EQ(GetPrivateProfileString(nullptr, nullptr, "", buffer, 16, m_path.c_str()), 5U);
  EXPECT_EQ(std::string(buffer, 6), std::string("a\0bc\0\0", 6));
  EXPECT_EQ(GetPrivateProfileString("bc", nullptr, "", buffer, 16, m_path.c_str()), 5U);
  EXPECT_EQ(std::string(buffer, 6), std::string("yy\0z\0\0", 6));
  EXPECT_EQ(GetPrivateProfileString("bc", nullptr, "", buffer, 5, m_path.c_str()), 3U);
  EXPECT_EQ(std::string(buffer, 5), std::string("yy\0\0\0", 5)) << "cut: two zeros at the end";
  EXPECT_EQ(GetPrivateProfileString("none", nullptr, "", buffer, 16, m_path.c_str()), 0U);
  EXPECT_EQ(std::string(buffer, 1), std::string("\0", 1));
}

}  // namespace
}  // namespace velmor::windowing
