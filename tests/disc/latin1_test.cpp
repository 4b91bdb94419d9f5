// CD-TEXT's letters.
#include "disc/text/latin1.h"

#include <gtest/gtest.h>

namespace velmor::disc::test {
namespace {

struct Conversion {
  const char* utf8;
  const char* latin1;
  std::vector<std::string> replaced;
};
class Latin1 : public ::testing::TestWithParam<Conversion> {};

TEST_P(Latin1, KeepsWhatItCanAndNamesTheRest) {
  const Latin1Text result = toLatin1(GetParam().utf8);
  EXPECT_EQ(result.text, GetParam().latin1);
  EXPECT_EQ(result.replaced, GetParam().replaced);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Latin1,
    ::testing::Values(Conversion{"", "", {}}, Conversion{"Night Drive", "Night Drive", {}},
                      Conversion{"Café Größe ÿ",
                                 "Caf\xE9 Gr\xF6\xDF"
                                 "e \xFF",
                                 {}},
                      Conversion{"Don’t – stop…", "Don't - stop...", {"’", "–", "…"}},
                      Conversion{"Łódź źź",
                                 "L\xF3"
                                 "dz zz",
                                 {"Ł", "ź"}},
                      Conversion{"日本", "??", {"日", "本"}}, Conversion{"🎵", "?", {"🎵"}},
                      Conversion{"a\tb\x01", "a b ", {}},
                      Conversion{"\x7F\xC2\x80\xC2\x9F\xC2\xA0", "   \xA0", {}},
                      Conversion{"Caf\xE9", "Caf\xE9", {}},      // was no UTF-8 already
                      Conversion{"\xE2\x82", "\xE2 ", {}},       // cut inside a character
                      Conversion{"\xC0\xAF", "\xC0\xAF", {}}));  // overlong: no UTF-8

}  // namespace
}  // namespace velmor::disc::test
