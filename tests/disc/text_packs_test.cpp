// CD-TEXT as packs, and back.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "disc/cd_text/pack_reading.h"
#include "disc/cd_text/pack_writing.h"
#include "disc/text/latin1.h"

namespace velmor::disc::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

DiscTexts someTexts() {
  DiscTexts texts;
  texts.recording_codes.resize(2);
  texts.block(TextKind::kTitle) = {"Disc", {"One", std::string(40, 'x')}};
  texts.block(TextKind::kMessage) = {"", {"\xE9", ""}};
  texts.block(TextKind::kCode) = {"0731452345622", {"USABC0500001", ""}};
  return texts;
}

std::string problemsOf(const std::string& bytes) {
  std::string all;
  for (const PackProblem& problem : readPacks(bytes).problems) {
    if (problem.pack != 0) all += "pack " + std::to_string(problem.pack) + ": ";
    all += problem.what + '\n';
  }
  return all;
}

/// `bytes` with byte `at` of pack `pack` changed, under a check sum that fits.
std::string changed(std::string bytes, size_t pack, size_t at, char value) {
  bytes[pack * 18 + at] = value;
  const uint16_t sum = packCheckSum(std::string_view(bytes).substr(pack * 18, 16));
  bytes[pack * 18 + 16] = static_cast<char>(sum >> 8);
  bytes[pack * 18 + 17] = static_cast<char>(sum & 0xFF);
  return bytes;
}

TEST(ReadPacks, AreWhatWasWritten) {
  const ReadPacks read = readPacks(packBytes(someTexts()));
  EXPECT_THAT(read.problems, IsEmpty());
  EXPECT_EQ(read.last_track, 2);
  for (size_t kind = 0; kind < kTextKinds; ++kind) {
    EXPECT_EQ(read.texts.blocks[kind].disc, someTexts().blocks[kind].disc);
    EXPECT_EQ(read.texts.blocks[kind].tracks, someTexts().blocks[kind].tracks);
  }
}

TEST(ReadPacks, TakeATabForTheTextOfTheTrackBefore) {
  DiscTexts texts;
  texts.recording_codes.resize(3);
  texts.block(TextKind::kTitle) = {"Disc", {"One", "\t", "\t"}};
  EXPECT_THAT(readPacks(packBytes(texts)).texts.block(TextKind::kTitle).tracks,
              ElementsAre("One", "One", "One"));
}

TEST(ReadPacks, SayWhatIsWrong) {
  const std::string bytes = packBytes(someTexts());
  const size_t packs = bytes.size() / 18;
  std::string broken = bytes;
  broken[5] = 'x';
  EXPECT_THAT(problemsOf(broken), HasSubstr("the check sum does not fit the pack"));
  EXPECT_THAT(problemsOf(changed(bytes, 0, 0, '\x10')), HasSubstr("type 0x10, which is none"));
  EXPECT_THAT(problemsOf(changed(bytes, 1, 2, '\x07')), HasSubstr("the number 7 where 1"));
  EXPECT_THAT(problemsOf(changed(bytes, 1, 1, '\x02' + 1)), HasSubstr("begins at letter"));
  EXPECT_THAT(problemsOf(changed(bytes, packs - 1, 0, '\x80')), HasSubstr("follows one of"));
  EXPECT_THAT(problemsOf(bytes.substr(18)), HasSubstr("the number 1 where 0"));
  EXPECT_THAT(problemsOf(bytes.substr(0, bytes.size() - 18)), HasSubstr("2 size packs where 3"));
  EXPECT_THAT(problemsOf(bytes.substr(0, bytes.size() - 5)), HasSubstr("no whole pack of 18"));
  EXPECT_EQ(problemsOf(std::string(4, '\0') + bytes),
            "a header of 4 bytes stands before the packs\n");
  EXPECT_EQ(problemsOf(bytes + '\0'), "a stray zero byte stands behind the packs\n");
  EXPECT_EQ(problemsOf(std::string(4, '\0') + bytes + '\0'),
            "a header of 4 bytes stands before the packs\n"
            "a stray zero byte stands behind the packs\n");
  EXPECT_THAT(problemsOf(""), HasSubstr("there is no pack"));
  EXPECT_THAT(problemsOf(changed(bytes, packs - 3, 4 + 4, '\x09')),
              HasSubstr("say 9 packs of the type 0x80, and there are 5"));
  EXPECT_THAT(problemsOf(changed(bytes, packs - 3, 4 + 2, '\x01')),
              HasSubstr("hold more texts than tracks"));
  EXPECT_THAT(problemsOf(changed(bytes, packs - 2, 4 + 8, '\x01')),
              HasSubstr("the last pack is 1"));
}

/// With byte `at` of the 36 in the three size packs changed.
std::string problemsOfSizes(size_t at, char value) {
  const std::string bytes = packBytes(someTexts());
  return problemsOf(changed(bytes, bytes.size() / 18 - 3 + at / 12, 4 + at % 12, value));
}

TEST(ReadPacks, SayWhatIsOddInTheSizePacks) {
  EXPECT_THAT(problemsOfSizes(0, '\x02'), HasSubstr("the texts are in the character set"));
  EXPECT_THAT(problemsOfSizes(3, '\x03'), HasSubstr("claim a right to the texts"));
  EXPECT_THAT(problemsOfSizes(21, '\x05'), HasSubstr("name a second language that is missing"));
  EXPECT_THAT(problemsOfSizes(27, '\x05'), HasSubstr("name a second language that is missing"));
  EXPECT_THAT(problemsOfSizes(28, '\x08'), HasSubstr("not English"));
  for (const size_t block : {size_t{1}, size_t{7}})
    EXPECT_THAT(problemsOfSizes(28 + block, '\x09'),
                HasSubstr("give the language of blocks that are not there"));
  EXPECT_EQ(problemsOfSizes(0, '\x01'), "") << "ASCII";
}

TEST(ReadPacks, SayWhatIsWrongInTheHeadsOfTheSizePacks) {
  const std::string bytes = packBytes(someTexts());
  const size_t packs = bytes.size() / 18;
  EXPECT_THAT(problemsOf(changed(bytes, packs - 2, 1, '\x05')),
              HasSubstr("number 5 of three, not 1"));
  EXPECT_THAT(problemsOf(changed(bytes, packs - 1, 3, '\x01')), HasSubstr("a place in a text"));
}

TEST(Latin1, ComesBackAsTheSameLetters) {
  std::string all;
  for (int c = 0xA0; c < 0x100; ++c) all += static_cast<char>(c);
  EXPECT_EQ(toLatin1(fromLatin1(all)).text, all);
  EXPECT_EQ(fromLatin1("\xE9"), "\xC3\xA9");
}

}  // namespace
}  // namespace velmor::disc::test
