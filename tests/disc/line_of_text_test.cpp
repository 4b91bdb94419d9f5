// Names and titles become one line of UTF-8.
#include "disc/text/line_of_text.h"

#include <gtest/gtest.h>
#include <iconv.h>

#include <array>
#include <string>

#include "disc/text/utf8.h"

namespace velmor::disc::test {
namespace {

TEST(Utf8, IsRecognisedByItsRules) {
  for (const char* good :
       {"", "plain", "\x7f", "\xc2\x80", "\xdf\xbf", "\xe0\xa0\x80", "\xed\x9f\xbf", "\xee\x80\x80",
        "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}) {
    EXPECT_TRUE(isUtf8(good)) << good;
  }
  for (const char* bad :
       {"\x80", "\xbf", "\xc0\x80", "\xc1\xbf", "\xc2", "\xc2\x41", "\xe0\x9f\xbf", "\xe1\x80",
        "\xed\xa0\x80", "\xf0\x8f\xbf\xbf", "\xf0\x90\x80", "\xf4\x90\x80\x80", "\xf5\x80\x80\x80",
        "\xff", "ok\xc3"}) {
    EXPECT_FALSE(isUtf8(bad)) << bad;
  }
}

TEST(Utf8, IsMadeOfOneToThreeBytes) {
  const struct {
    unsigned code;
    const char* bytes;
  } cases[] = {{'A', "A"},
               {0x7f, "\x7f"},
               {0x80, "\xc2\x80"},
               {0x7ff, "\xdf\xbf"},
               {0x800, "\xe0\xa0\x80"},
               {0x20ac, "\xe2\x82\xac"},
               {0xffff, "\xef\xbf\xbf"}};
  for (const auto& [code, bytes] : cases) {
    std::string text = "a";
    appendUtf8(text, code);
    EXPECT_EQ(text, std::string("a") + bytes) << code;
  }
}

/// As the C library converts it; a space for the five bytes that stand for nothing.
std::string fromWindows1252(char byte) {
  const iconv_t converter = iconv_open("UTF-8", "WINDOWS-1252");
  std::array<char, 8> made{};
  char* from = &byte;
  char* to = made.data();
  size_t bytes = 1, room = made.size();
  const bool is_none = iconv(converter, &from, &bytes, &to, &room) == static_cast<size_t>(-1);
  iconv_close(converter);
  return is_none ? " " : std::string(made.data(), to);
}

TEST(Text, ThatIsNoUtf8IsWindows1252) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    const auto c = static_cast<char>(byte);
    EXPECT_EQ(asLineOfText(std::string("a") + c + "b"), "a" + fromWindows1252(c) + "b") << byte;
  }
}

TEST(Text, IsOneTrimmedLine) {
  EXPECT_EQ(asLineOfText("  a\tb\r\nc \n"), "a b  c");
  EXPECT_EQ(asLineOfText(std::string("a\0b", 3)), "a");
  EXPECT_EQ(asLineOfText(" \n "), "");
  EXPECT_EQ(asLineOfText(""), "");
  EXPECT_EQ(asLineOfText("\xfc"
                         "ber"),
            "\xc3\xbc"
            "ber");
}

TEST(Text, ThatIsNotUtf8IsReadAsWindows1252) {
  EXPECT_EQ(asLineOfText("\x80"), "\xe2\x82\xac");
  EXPECT_EQ(asLineOfText("it\x92s"), "it\xe2\x80\x99s");
  EXPECT_EQ(asLineOfText("A \x96 B"), "A \xe2\x80\x93 B");
  EXPECT_EQ(asLineOfText("\x8a\x9f\xff"), "\xc5\xa0\xc5\xb8\xc3\xbf");
  EXPECT_EQ(asLineOfText("\xa0x\xa0"), "\xc2\xa0x\xc2\xa0") << "the upper part is Latin-1's";
  for (const char* unused : {"a\x81z", "a\x8dz", "a\x8fz", "a\x90z", "a\x9dz"}) {
    EXPECT_EQ(asLineOfText(unused), "a z");
  }
}

TEST(Utf8, IsCutBetweenItsCharacters) {
  EXPECT_EQ(beginningOf("\xe2\x82\xac\xe2\x82\xac", 5), "\xe2\x82\xac");
  EXPECT_EQ(beginningOf("\xe2\x82\xac", 2), "");
  EXPECT_EQ(beginningOf("plain", 5), "plain");
  EXPECT_EQ(beginningOf("a\xe2\x82\xac\xe2\x82\xac", 3), "a");
  EXPECT_EQ(beginningOf("\xf0\x90\x80\x80", 3), "");
}

TEST(Utf8, IsNotLookedForInBytesThatAreNone) {
  EXPECT_EQ(beginningOf("\xa0\xa1\xa2\xa3\xa4\xa5", 4), "\xa0\xa1\xa2\xa3");
  EXPECT_EQ(beginningOf("\xe2\x82\xac\x82\x83", 4), "\xe2\x82\xac\x82");
}

TEST(Printable, ShowsWhatATerminalMustNotSeeAsQuestionMarks) {
  EXPECT_EQ(printable("\x1b[31mred \xc3\xa9"), "?[31mred \xc3\xa9");
  EXPECT_EQ(printable("a\xff\xc3"), "a??");
  EXPECT_EQ(printable("\xef\xbf\xbd"), "\xef\xbf\xbd") << "U+FFFD is a character as others are";
}

}  // namespace
}  // namespace velmor::disc::test
