// The marks of WAV files, from the bytes of their chunks.
#include "host/render/input/marks/wav_marks.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "tests/host/render/input/sound_files.h"

namespace velmor::render::test {
namespace {

using Bytes = std::span<const std::byte>;

Bytes bytesOf(const std::string& text) {
  return std::as_bytes(std::span(text.data(), text.size()));
}

std::vector<WavMark> marksOf(const std::string& cue, const std::vector<std::string>& lists,
                             ByteOrder order = ByteOrder::kLittle) {
  std::vector<Bytes> views;
  views.reserve(lists.size());
  for (const std::string& list : lists) views.push_back(bytesOf(list));
  return parseWavMarks(bytesOf(cue), views, order);
}

constexpr std::array<CuePoint, 3> kUnsortedPoints{CuePoint{3, 900}, CuePoint{1, 100},
                                                  CuePoint{2, 500}};

TEST(WavMarks, ComeInAscendingOrderWithTheirNames) {
  const auto marks = marksOf(cueBody(kUnsortedPoints),
                             {"adtl" + label(1, "one") + label(2, "a pair") + label(3, "three")});
  ASSERT_EQ(marks.size(), 3U);
  EXPECT_EQ(marks[0].start, 100);
  EXPECT_EQ(marks[0].name.text, "one");
  EXPECT_EQ(marks[1].start, 500);
  EXPECT_EQ(marks[1].name.text, "a pair") << "after a label of odd length and its pad byte";
  EXPECT_EQ(marks[2].start, 900);
  EXPECT_EQ(marks[2].name.text, "three");
  for (const WavMark& mark : marks) EXPECT_EQ(mark.length, 0);
}

TEST(WavMarks, WithALengthAreRegions) {
  const auto marks =
      marksOf(cueBody(kUnsortedPoints), {"adtl" + region(2, 250, "") + label(2, "solo")});
  ASSERT_EQ(marks.size(), 3U);
  EXPECT_EQ(marks[1].length, 250);
  EXPECT_EQ(marks[1].name.text, "solo");
  EXPECT_EQ(marks[2].length, 0);
}

TEST(WavMarks, TakeTheLabelThenTheRegionsTextThenTheNote) {
  const std::string all = note(1, "note") + region(1, 5, "text") + label(1, "label");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + all})[0].name.text, "label");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + note(1, "note") + region(1, 5, "text")})[0]
                .name.text,
            "text");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + note(1, "note")})[0].name.text, "note");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + label(1, "first") + label(1, "second")})[0]
                .name.text,
            "first");
}

TEST(WavMarks, KeepLongNamesAndThoseWithoutATerminator) {
  const std::string name(300, 'n');
  const std::string bare = riffChunk("labl", little32(1) + name);
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + bare})[0].name.text, name);
}

TEST(WavMarks, ReadNamesThatAreNotUtf8AsWindows1252) {
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + label(1, "Caf\xe9")})[0].name.text,
            "Caf\xc3\xa9");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + label(1, "\x8cuvre")})[0].name.text,
            "\xc5\x92uvre");
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"adtl" + label(1, "Caf\xc3\xa9\nb")})[0].name.text,
            "Caf\xc3\xa9 b");
}

TEST(WavMarks, OfOtherListsTakeNothing) {
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {"INFO" + label(1, "no")})[0].name.text, "");
  EXPECT_EQ(
      marksOf(cueBody(kUnsortedPoints), {"INFO" + label(1, "no"), "adtl" + label(1, "yes")})[0]
          .name.text,
      "yes");
}

TEST(WavMarks, ReadBigEndianFiles) {
  const std::string cue =
      big32(1) + big32(7) + big32(0) + "data" + big32(0) + big32(0) + big32(4410);
  const std::string list = "adtl" + std::string("labl") + big32(6) + big32(7) + "x" + '\0';
  const auto marks = marksOf(cue, {list}, ByteOrder::kBig);
  ASSERT_EQ(marks.size(), 1U);
  EXPECT_EQ(marks[0].start, 4410);
  EXPECT_EQ(marks[0].name.text, "x");
}

// Some programs write chunks of odd length without the byte that pads them.
TEST(WavMarks, KeepTheirNamesWherePadBytesAreMissing) {
  const auto unpadded = [](const std::string& chunk) { return chunk.substr(0, chunk.size() - 1); };
  const std::string one = unpadded(label(1, "pair"));
  const std::string two = unpadded(label(2, "dual"));
  ASSERT_EQ(one.size() % 2, 1U);
  for (const std::string& list :
       {one + two + label(3, "three"), one + label(2, "dual") + label(3, "three"),
        one + label(2, "dual") + note(9, "") + label(3, "three"),
        label(1, "pair") + two + note(3, "three"), one + two + region(3, 7, "three")}) {
    const auto marks = marksOf(cueBody(kUnsortedPoints), {"adtl" + list});
    EXPECT_EQ(marks[0].name.text, "pair");
    EXPECT_EQ(marks[1].name.text, "dual");
    EXPECT_EQ(marks[2].name.text, "three");
  }
}

TEST(WavMarks, OfADamagedCueChunkAreNone) {
  const std::string cue = cueBody(kUnsortedPoints);
  EXPECT_TRUE(marksOf("", {}).empty());
  EXPECT_TRUE(marksOf(std::string(3, '\1'), {}).empty());
  EXPECT_TRUE(marksOf(little32(0), {}).empty());
  EXPECT_TRUE(marksOf(cue.substr(0, cue.size() - 1), {}).empty());
  EXPECT_TRUE(marksOf(little32(0xffffffffU) + cue.substr(4), {}).empty());
  EXPECT_TRUE(marksOf(little32(4) + cue.substr(4), {}).empty());
  EXPECT_EQ(marksOf(cue + "trailing", {}).size(), 3U);
}

TEST(WavMarks, OfADamagedListKeepWhatIsWholeBeforeTheDamage) {
  const std::string list = "adtl" + label(1, "one") + label(2, "two") + label(3, "three");
  for (size_t length = 0; length <= list.size(); ++length) {
    const auto marks = marksOf(cueBody(kUnsortedPoints), {list.substr(0, length)});
    ASSERT_EQ(marks.size(), 3U) << length;
    EXPECT_TRUE(marks[2].name.text.empty() || marks[2].name.text == "three") << length;
  }
  const std::string huge = "adtl" + label(1, "one") + "labl" + little32(0xfffffffeU) + little32(2);
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {huge})[0].name.text, "one");
  const std::string tiny = "adtl" + riffChunk("labl", "ab") + riffChunk("ltxt", little32(1));
  EXPECT_EQ(marksOf(cueBody(kUnsortedPoints), {tiny})[0].name.text, "");
}

TEST(WavMarks, OfRandomBytesNeverLeaveTheirSpans) {
  std::mt19937 random(11);
  const std::string cue = cueBody(kUnsortedPoints);
  const std::string list = "adtl" + label(1, "one") + region(2, 9, "two") + note(3, "three");
  for (int round = 0; round < 3000; ++round) {
    std::string broken_cue = cue;
    std::string broken_list = list;
    for (int i = 0; i < 4; ++i) {
      broken_cue[random() % broken_cue.size()] = static_cast<char>(random());
      broken_list[random() % broken_list.size()] = static_cast<char>(random());
    }
    // Copies of the exact size, so that a sanitizer sees the first byte beyond.
    const auto marks = marksOf(std::string(broken_cue.begin(), broken_cue.end()),
                               {std::string(broken_list.begin(), broken_list.end())});
    ASSERT_LE(marks.size(), 3U);
    for (size_t i = 1; i < marks.size(); ++i) ASSERT_LE(marks[i - 1].start, marks[i].start);
  }
}

}  // namespace
}  // namespace velmor::render::test
