// Sets whose files have check sums that somebody else's writer gives as well.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

struct KnownSet {
  const char* name;
  int64_t frames;
  const char* sheet;  ///< for "k.wav"
  /// MD5 of DDPID, DDPMS, CDTEXT.BIN ("-": there is none), SD, IMAGE.DAT.
  std::array<const char*, 5> md5;
};

constexpr int64_t kSector = 588;

const KnownSet kKnown[] = {
    {"OneTrackWithCodes",
     750 * kSector,
     "CATALOG 0123456789012\nFILE \"k.wav\" WAVE\n  TRACK 01 AUDIO\n    ISRC USABC1234567\n"
     "    INDEX 01 00:00:00\n",
     {"dd89c874714f94418b20feea4d9b2ac6", "4ddcd3c75e054c6685453524a0973a1a", "-",
      "e6d506c61b61150a572f5290379e47d9", "bcebec4d225e28c6899a24a4c5b968b3"}},
    {"TwoTracksWithTextsAndFlags",
     1500 * kSector,
     "CATALOG 0123456789012\nTITLE \"Disc\"\nFILE \"k.wav\" WAVE\n"
     "  TRACK 01 AUDIO\n    TITLE \"One\"\n    ISRC USABC1111111\n    FLAGS PRE\n"
     "    INDEX 01 00:00:00\n    INDEX 02 00:05:00\n"
     "  TRACK 02 AUDIO\n    TITLE \"Two\"\n    FLAGS DCP 4CH\n    INDEX 00 00:08:00\n"
     "    INDEX 01 00:10:00\n",
     {"dd89c874714f94418b20feea4d9b2ac6", "8cdd88389667f7fdb961eb3e11996f31",
      "665cfffec87796d5236091b226f63deb", "2700efab3adbb14722d72bc321d9589a",
      "7b4dad7a5114569b4e25550ca6278dda"}},
    {"ThreeTracksWithAPregapInTheImage",
     2250 * kSector,
     "FILE \"k.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 00 00:00:00\n    INDEX 01 00:02:00\n"
     "  TRACK 02 AUDIO\n    INDEX 00 00:10:00\n    INDEX 01 00:11:00\n    INDEX 02 00:15:00\n"
     "  TRACK 03 AUDIO\n    INDEX 00 00:20:00\n    INDEX 01 00:22:00\n",
     {"187970110683c92c25bdb82256354780", "7f773da844b9b1091352eab67fb9e670", "-",
      "2bec8bd934a93dbdfb982c209865b7d6", "16551afeac0b9d80e6d90af18c8a8d7e"}},
    {"ALastSectorThatIsNotWhole",
     750 * kSector + 100,
     "FILE \"k.wav\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n",
     {"187970110683c92c25bdb82256354780", "ae8f68525f3efdda732d9508531b0cc4", "-",
      "29bceb1a7fb2bd2cc5da45b710c09247", "b56cd23e532472094171e57281951175"}}};

class KnownAnswers : public testing::TestWithParam<KnownSet> {
 protected:
  KnownAnswers() {
    writeFile(m_sheets.folder / "k.cue", GetParam().sheet);
    writeFile(m_sheets.folder / "k.wav", test_kit::wavFile(countingFrames(GetParam().frames)));
    m_sheets.write("set", "k.cue");
  }
  SheetFolder m_sheets;
};

TEST_P(KnownAnswers, HaveEveryFileToTheByte) {
  constexpr std::array<const char*, 5> kNames = {"DDPID", "DDPMS", "CDTEXT.BIN", "SD", "IMAGE.DAT"};
  std::string expected;
  for (size_t f = 0; f < kNames.size(); ++f)
    if (std::string(GetParam().md5[f]) != "-")
      expected += std::string(GetParam().md5[f]) + " *" + kNames[f] + '\n';
  EXPECT_EQ(readFile(m_sheets.folder / "set/CHECKSUM.MD5"), expected);
}

TEST_P(KnownAnswers, HaveCheckSumsThatOtherProgramsConfirm) {
  test_kit::ProcessOptions there;
  there.folder = m_sheets.folder.file("set");
  const auto md5 = test_kit::runProcess({"md5sum", "--strict", "-c", "CHECKSUM.MD5"}, there);
  EXPECT_EQ(md5.status, 0) << md5.all;
  const auto crc =
      test_kit::runProcess({"python3", "-c",
                            "import zlib\nlines = open('CHECKSUM.TXT').read().splitlines()\n"
                            "assert lines[0] == '[CRC32 Checksum]' and len(lines) > 4\n"
                            "for line in lines[1:]:\n"
                            "    name, crc = line.split('=')\n"
                            "    assert '%08X' % zlib.crc32(open(name, 'rb').read()) == crc, line"},
                           there);
  EXPECT_EQ(crc.status, 0) << crc.all;
}

TEST_P(KnownAnswers, AreReadyByTheCheck) {
  EXPECT_THAT(m_sheets.errors("set"), testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Sets, KnownAnswers, testing::ValuesIn(kKnown),
                         [](const auto& param) { return param.param.name; });

}  // namespace
}  // namespace velmor::ddp::test
