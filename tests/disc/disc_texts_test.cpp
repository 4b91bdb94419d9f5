#include "disc/cd_text/disc_texts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/failure.h"

namespace velmor::disc::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

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

TEST(DiscTexts, AreLeftAsTheyAreForAPlant) {
  SheetTexts sheet = sheetOf(2);
  sheet.disc.performer = "The Lanterns";
  sheet.tracks[0].texts.composer = "Someone";
  sheet.tracks[0].isrc = "USABC0500001";
  std::vector<std::string> warnings;
  const DiscTexts texts = textsAsGiven(sheet, warnings);
  EXPECT_THAT(texts.block(TextKind::kPerformer).tracks, ElementsAre("", ""));
  EXPECT_THAT(texts.block(TextKind::kComposer).tracks, ElementsAre("Someone", ""));
  EXPECT_FALSE(texts.block(TextKind::kCode).present());
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
  EXPECT_THAT(warnings[1], HasSubstr("track 2: the ISRC \"whatever\""));
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
TEST(DiscTexts, TwoHundredAndFiftyThreePacksAreTheMost) {
  std::vector<std::string> warnings;
  SheetTexts sheet = sheetOf(1);
  sheet.tracks[0].texts.title = std::string(253 * 12 - 2, 'x');  // and the disc's empty one
  EXPECT_EQ(textPacks(makeDiscTexts(sheet, 1, warnings)), 253);
  sheet.tracks[0].texts.title += 'x';
  try {
    makeDiscTexts(sheet, 1, warnings);
    FAIL() << "254 packs were taken";
  } catch (const Failure& refusal) {
    EXPECT_THAT(refusal.what(), HasSubstr("254 packs"));
  }
}

TEST(DiscTexts, TextsGoBeforeTheirCodesWhenThePacksRunOut) {
  std::vector<std::string> warnings;
  SheetTexts sheet = sheetOf(1);
  sheet.tracks[0].texts.title = std::string(253 * 12 - 2, 'x');
  sheet.tracks[0].isrc = "USABC0500001";
  const DiscTexts texts = makeDiscTexts(sheet, 1, warnings);
  EXPECT_FALSE(texts.block(TextKind::kCode).present());
  EXPECT_THAT(texts.recording_codes, ElementsAre("USABC0500001"));
}

}  // namespace
}  // namespace velmor::disc::test
