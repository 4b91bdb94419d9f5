// Names and titles become one line of UTF-8.
#include "host/render/input/text_encoding.h"

#include <gtest/gtest.h>

#include <string>

namespace velmor::render {
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

}  // namespace
}  // namespace velmor::render
