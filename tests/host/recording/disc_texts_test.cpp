#include "host/recording/texts/disc_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"
#include "host/recording/texts/disc_codes.h"
#include "host/recording/texts/latin1.h"

namespace velmor::recording::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

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
                                 "?\xF3"
                                 "d? ??",
                                 {"Ł", "ź"}},
                      Conversion{"日本", "??", {"日", "本"}}, Conversion{"🎵", "?", {"🎵"}},
                      Conversion{"a\tb\x01", "a b ", {}},
                      Conversion{"Caf\xE9", "Caf\xE9", {}},      // was no UTF-8 already
                      Conversion{"\xE2\x82", "\xE2 ", {}},       // cut inside a character
                      Conversion{"\xC0\xAF", "\xC0\xAF", {}}));  // overlong: no UTF-8

struct Code {
  const char* given;
  const char* code;
  const char* warning;  // a part of it; null: none
};
class Catalog : public ::testing::TestWithParam<Code> {};
class Isrc : public ::testing::TestWithParam<Code> {};

void expectCode(const DiscCode& result, const Code& expected) {
  EXPECT_EQ(result.code, expected.code);
  if (expected.warning == nullptr)
    EXPECT_EQ(result.warning, "");
  else
    EXPECT_THAT(result.warning, HasSubstr(expected.warning));
}

TEST_P(Catalog, IsThirteenDigits) {
  expectCode(mediaCatalogNumber(GetParam().given), GetParam());
}
TEST_P(Isrc, IsTwelveCharacters) {
  expectCode(recordingCode(GetParam().given), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Numbers, Catalog,
                         ::testing::Values(Code{"", "", nullptr},
                                           Code{"0731452345622", "0731452345622", nullptr},
                                           Code{"731452345622", "0731452345622", nullptr},
                                           Code{"4006381333931", "4006381333931", nullptr},
                                           Code{"400-6381333931", "4006381333931", nullptr},
                                           Code{"0731452345620", "0731452345620", "should be 2"},
                                           Code{"12345678901", "", "13 digits"},
                                           Code{"40063813339312", "", "13 digits"},
                                           Code{"400638133393X", "", "13 digits"}));

INSTANTIATE_TEST_SUITE_P(
    Codes, Isrc,
    ::testing::Values(Code{"", "", nullptr}, Code{"USABC0500001", "USABC0500001", nullptr},
                      Code{"US-ABC-05-00001", "USABC0500001", nullptr},
                      Code{"deab10500001", "DEAB10500001", nullptr},
                      Code{"USABC050000", "", "left out"}, Code{"USABC05000012", "", "left out"},
                      Code{"U1ABC0500001", "", "left out"}, Code{"USABC05O0001", "", "left out"},
                      Code{"US\xC3\x84"
                           "C0500001",
                           "", "left out"}));

SheetTexts sheetOf(size_t tracks) {
  SheetTexts sheet;
  sheet.tracks.resize(tracks);
  return sheet;
}

TEST(DiscTexts, AKindThatIsNowhereGivenIsNotOnTheDisc) {
  std::vector<std::string> warnings;
  const DiscTexts texts = makeDiscTexts(sheetOf(3), 3, warnings);
  EXPECT_FALSE(texts.hasCdText());
  EXPECT_EQ(textPacks(texts), 0);
  EXPECT_THAT(warnings, IsEmpty());
}

TEST(DiscTexts, AKindThatOneTrackHasIsGivenForAll) {
  SheetTexts sheet = sheetOf(3);
  sheet.tracks[1].texts.title = "Coda";
  std::vector<std::string> warnings;
  const DiscTexts texts = makeDiscTexts(sheet, 3, warnings);
  EXPECT_THAT(texts.block(TextKind::kTitle).tracks, ElementsAre("", "Coda", ""));
  EXPECT_EQ(texts.block(TextKind::kTitle).disc, "");
  EXPECT_FALSE(texts.block(TextKind::kPerformer).present());
}

TEST(DiscTexts, ATrackWithoutAPerformerHasTheDiscs) {
  SheetTexts sheet = sheetOf(2);
  sheet.disc.performer = "The Lanterns";
  sheet.tracks[0].texts.performer = "Ana";
  std::vector<std::string> warnings;
  const DiscTexts texts = makeDiscTexts(sheet, 2, warnings);
  EXPECT_THAT(texts.block(TextKind::kPerformer).tracks, ElementsAre("Ana", "The Lanterns"));
}

TEST(DiscTexts, AWarningNamesTheCharactersAndTheirPlace) {
  SheetTexts sheet = sheetOf(2);
  sheet.tracks[1].texts.title = "Łódź";
  std::vector<std::string> warnings;
  makeDiscTexts(sheet, 2, warnings);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_THAT(warnings[0], HasSubstr("\"Ł\", \"ź\" in the title of track 2"));
}

TEST(DiscTexts, CodesThatAreNoneAreLeftOutWithAWarning) {
  SheetTexts sheet = sheetOf(2);
  sheet.catalog = "12345";
  sheet.tracks[0].isrc = "USABC0500001";
  sheet.tracks[1].isrc = "whatever";
  std::vector<std::string> warnings;
  const DiscTexts texts = makeDiscTexts(sheet, 2, warnings);
  EXPECT_EQ(texts.media_catalog, "");
  EXPECT_THAT(texts.recording_codes, ElementsAre("USABC0500001", ""));
  ASSERT_EQ(warnings.size(), 2U);
  EXPECT_THAT(warnings[1], HasSubstr("Track 2: The ISRC \"whatever\""));
}

TEST(DiscTexts, TheSameIsrcTwiceIsWarnedOf) {
  SheetTexts sheet = sheetOf(2);
  sheet.tracks[0].isrc = "USABC0500001";
  sheet.tracks[1].isrc = "US-ABC-05-00001";
  std::vector<std::string> warnings;
  makeDiscTexts(sheet, 2, warnings);
  ASSERT_EQ(warnings.size(), 1U);
  EXPECT_THAT(warnings[0], HasSubstr("stands on an earlier track too"));
}

TEST(DiscTexts, CodesStandBesideTextsButMakeNoCdTextAlone) {
  SheetTexts sheet = sheetOf(1);
  sheet.tracks[0].isrc = "USABC0500001";
  std::vector<std::string> warnings;
  EXPECT_FALSE(makeDiscTexts(sheet, 1, warnings).hasCdText());
  sheet.disc.title = "Night Drive";
  const DiscTexts texts = makeDiscTexts(sheet, 1, warnings);
  EXPECT_THAT(texts.block(TextKind::kCode).tracks, ElementsAre("USABC0500001"));
}

TEST(DiscTexts, ASheetOfAnotherDiscIsRefused) {
  std::vector<std::string> warnings;
  EXPECT_THROW(makeDiscTexts(sheetOf(9), 10, warnings), Failure);
}

/// One title of so many characters takes, with its zero, these bytes of packs of twelve.
TEST(DiscTexts, TwoHundredAndFiftyTwoPacksAreTheMost) {
  std::vector<std::string> warnings;
  SheetTexts sheet = sheetOf(1);
  sheet.tracks[0].texts.title = std::string(252 * 12 - 2, 'x');  // and the disc's empty one
  EXPECT_EQ(textPacks(makeDiscTexts(sheet, 1, warnings)), 252);
  sheet.tracks[0].texts.title += 'x';
  try {
    makeDiscTexts(sheet, 1, warnings);
    FAIL() << "253 packs were taken";
  } catch (const Failure& refusal) {
    EXPECT_THAT(refusal.what(), HasSubstr("253 packs"));
  }
}

TEST(DiscTexts, TextsGoBeforeTheirCodesWhenThePacksRunOut) {
  std::vector<std::string> warnings;
  SheetTexts sheet = sheetOf(1);
  sheet.tracks[0].texts.title = std::string(252 * 12 - 2, 'x');
  sheet.tracks[0].isrc = "USABC0500001";
  const DiscTexts texts = makeDiscTexts(sheet, 1, warnings);
  EXPECT_FALSE(texts.block(TextKind::kCode).present());
  EXPECT_THAT(texts.recording_codes, ElementsAre("USABC0500001"));
}

}  // namespace
}  // namespace velmor::recording::testing
