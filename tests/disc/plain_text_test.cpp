// Texts that every reader takes.
#include "disc/text/plain_text.h"

#include <gtest/gtest.h>

namespace velmor::disc::test {
namespace {

struct Spelling {
  const char* from;
  const char* to;
};

class PlainTextTest : public testing::TestWithParam<Spelling> {};

TEST_P(PlainTextTest, IsSpelledInAscii) {
  EXPECT_EQ(plainText(GetParam().from).text, GetParam().to);
}

INSTANTIATE_TEST_SUITE_P(
    Text, PlainTextTest,
    testing::Values(
        Spelling{"plain", "plain"}, Spelling{"", ""}, Spelling{"Caf\xC3\xA9", "Cafe"},
        Spelling{"Caf\xE9", "Cafe"},
        Spelling{"Stra\xC3\x9F"
                 "e",
                 "Strasse"},
        Spelling{"\xC5\x81\xC3\xB3"
                 "d\xC5\xBA",
                 "Lodz"},
        Spelling{"\xE2\x80\x9CHi\xE2\x80\x9D \xE2\x80\x94 no\xE2\x80\xA6", "'Hi' - no..."},
        Spelling{"Say \"Go\"", "Say 'Go'"}, Spelling{"a\\b", "a/b"}, Spelling{"end\\", "end"},
        Spelling{"e\xCC\x81", "e"},
        Spelling{"\u0218\u0219\u021A\u021B \u20AC \u2116 1 \u2122 \u2022", "SsTt EUR No. 1 (TM) *"},
        Spelling{"tab\there", "tab here"}, Spelling{"  both  ", "both"},
        Spelling{"\xE9\x9F\xB3", "?"}));

}  // namespace
}  // namespace velmor::disc::test
