// Fields as other writers have them, and as none may have them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ddp/check/rules.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

using testing::Contains;
using testing::IsEmpty;

class SetVariants : public testing::Test {
 protected:
  SetVariants() {
    m_sheets.write("set");
    m_sheets.dropChecksums("set");
  }

  void patch(const std::string& name, size_t at, const std::string& bytes) const {
    m_sheets.patch("set/" + name, at, bytes);
  }
  std::string bytes(const std::string& name) const {
    return readFile(m_sheets.folder / "set" / name);
  }
  void replace(const std::string& name, const std::string& bytes) const {
    writeFile(m_sheets.folder / "set" / name, bytes);
  }
  /// All findings but that on the check sums that this test took away.
  std::vector<std::string> findings() const {
    std::vector<std::string> rules = m_sheets.findings("set");
    std::erase(rules, "no-check-sums");
    return rules;
  }

  SheetFolder m_sheets;
};

TEST_F(SetVariants, OfOtherWritersAreNotMinded) {
  patch("DDPMS", 14, "00000");  // numbers with zeros before them
  patch("DDPMS", kPqPacket + 14, "00000");
  patch("DDPMS", kAudioPacket + 14, "0000");
  patch("DDPMS", kAudioPacket + 22, "00000000");  // the start of the audio
  patch("DDPMS", kAudioPacket + 41, "0");
  patch("DDPMS", kAudioPacket + 40, "0");
  patch("DDPMS", kAudioPacket + 46, "0150");
  patch("DDPMS", kAudioPacket + 71, "017");
  patch("DDPMS", 55, "  ");  // blank for the texts as well
  patch("DDPID", 86, "O");
  patch("DDPID", 93, " 05Hello");  // the user's text, one byte further on
  patch("SD", 8, "00");
  for (size_t at = 64; at < bytes("SD").size(); at += 64) patch("SD", at + 32, "0731452345622");
  patch("SD", 2 * 64 + 20, "USABC2600001");  // the ISRC once more on index 01
  EXPECT_THAT(findings(), IsEmpty());
  EXPECT_EQ(m_sheets.check("set").identifier.user_text, "Hello");
}

TEST_F(SetVariants, OfTheUsersTextInItsUsualPlaceAreRead) {
  patch("DDPID", 93, "05Hello");
  EXPECT_THAT(findings(), IsEmpty());
  EXPECT_EQ(m_sheets.check("set").identifier.user_text, "Hello");
}

TEST_F(SetVariants, WithOneLeadOutAreTaken) {
  std::string pq = bytes("SD");
  pq.resize(pq.size() - 64);
  replace("SD", pq);
  patch("DDPMS", kPqPacket + 14, "     448");
  EXPECT_THAT(findings(), IsEmpty());
}

TEST_F(SetVariants, WithAUpcOfTwelveDigitsHaveTheNumberOfThirteen) {
  patch("DDPID", 8, "731452345622 ");
  patch("SD", 32, "731452345622 ");
  EXPECT_THAT(findings(), IsEmpty());
  EXPECT_EQ(m_sheets.check("set").layout.catalogue, "0731452345622");
}

TEST_F(SetVariants, WithAHeaderOrAStrayByteInTheTextsAreWarnedOf) {
  const std::string packs = bytes("CDTEXT.BIN");
  const auto length = [&](size_t more) {
    std::string field = std::to_string(packs.size() + more);
    patch("DDPMS", 14, std::string(8 - field.size(), ' ') + field);
  };
  replace("CDTEXT.BIN", packs + '\0');
  length(1);
  EXPECT_THAT(findings(), testing::ElementsAre("cd-text-odd"));
  replace("CDTEXT.BIN", std::string("\x01\x02\0\0", 4) + packs);
  length(4);
  EXPECT_THAT(findings(), testing::ElementsAre("cd-text-odd"));
  EXPECT_EQ(m_sheets.check("set").texts.block(disc::TextKind::kTitle).disc, "Night Drive");
}

TEST_F(SetVariants, WithASecondStreamOfAudioAreNotGuessedAt) {
  const std::string map = bytes("DDPMS");
  replace("DDPMS", map + map.substr(kAudioPacket));
  EXPECT_THAT(m_sheets.errors("set"), Contains("second-audio"));
}

struct Variant {
  const char* name;
  const char* file;
  size_t at;
  const char* bytes;
  const char* rule;
};

const Variant kWrong[] = {
    {"OtherLevel", "DDPID", 0, "DDP 1.01", "level"},
    {"ADvd", "DDPID", 87, "DV", "not-a-cd"},
    {"OtherEan", "DDPID", 8, "0731452345615", "catalogue-conflict"},
    {"NoMark", "DDPMS", kAudioPacket, "VVVX", "packet-mark"},
    {"UnknownStream", "DDPMS", 4, "T3", "stream-type"},
    {"UnknownSubcode", "DDPMS", 30, "LYRICS  ", "stream-kind"},
    {"DataSectors", "DDPMS", kAudioPacket + 38, "DV", "stream-kind"},
    {"CookedSectors", "DDPMS", kAudioPacket + 40, "6", "sector-form"},
    {"AudioLength", "DDPMS", kAudioPacket + 14, "    1651", "stream-length"},
    {"HugeLength", "DDPMS", kAudioPacket + 14, "99999999", "stream-length"},
    {"LengthInLetters", "DDPMS", kAudioPacket + 14, "    165O", "stream-length"},
    {"LaterStart", "DDPMS", kAudioPacket + 22, "     150", "stream-start"},
    {"OtherPregap", "DDPMS", kAudioPacket + 46, " 151", "pregap-field"},
    {"NoPregapNumber", "DDPMS", kAudioPacket + 46, " 15x", "pregap-field"},
    {"PqLength", "DDPMS", kPqPacket + 14, "     576", "stream-length"},
    {"NameWidth", "DDPMS", kPqPacket + 71, " 12", "name-width"},
    {"MissingFile", "DDPMS", kPqPacket + 74, "PQ", "file-missing"},
    {"PqMark", "SD", 64, "VVVX", "packet-mark"},
    {"NoLeadIn", "SD", 4, "01", "no-lead-in"},
    {"LeadInLater", "SD", 14, "01", "no-lead-in"},
    {"LeadInControl", "SD", 16, "11", "lead-in-control"},
    {"TrackSkipped", "SD", 4 * 64 + 4, "03", "track-number"},
    {"TrackInLetters", "SD", 4 * 64 + 4, "0x", "track-number"},
    {"IndexSkipped", "SD", 3 * 64 + 6, "03", "index-order"},
    {"IndexInLetters", "SD", 3 * 64 + 6, "0x", "pq-field"},
    {"SecondsOver59", "SD", 3 * 64 + 12, "60", "pq-field"},
    {"FramesOver74", "SD", 3 * 64 + 14, "75", "pq-field"},
    {"TimesDescend", "SD", 3 * 64 + 12, "01", "times-descend"},
    {"DataTrack", "SD", 64 + 16, "41", "pq-field"},
    {"OtherMode", "SD", 64 + 16, "12", "pq-field"},
    {"ControlChanges", "SD", 2 * 64 + 16, "01", "control-conflict"},
    {"CopyAndScms", "SD", 4 * 64 + 17, "S", "copy-flags"},
    {"IsrcConflict", "SD", 2 * 64 + 20, "USABC2600009", "isrc-conflict"},
    {"IsrcForm", "SD", 64 + 20, "USABC26000AB", "isrc-form"},
    {"IsrcTwice", "SD", 64 + 20, "USABC2600002", "isrc-twice"},
    {"EanConflict", "SD", 3 * 64 + 32, "4006381333931", "catalogue-conflict"},
    {"EarlyLeadOut", "SD", 6 * 64 + 12, "20", "lead-out"},
    {"TwoLeadOuts", "SD", 7 * 64 + 14, "05", "lead-out"},
    {"LeadOutIndex", "SD", 6 * 64 + 6, "02", "lead-out"},
    {"FirstPregapShort", "SD", 2 * 64 + 12, "01", "first-pregap"},
    {"TrackUnderFourSeconds", "SD", 5 * 64 + 12, "19", "track-under-4-s"},
    {"TextChanged", "CDTEXT.BIN", 5, "x", "cd-text-pack"}};

TEST_F(SetVariants, ThatAreWrongAreErrorsOfTheirRule) {
  ASSERT_THAT(findings(), IsEmpty());
  for (const Variant& variant : kWrong) {
    const std::string whole = bytes(variant.file);
    patch(variant.file, variant.at, variant.bytes);
    EXPECT_THAT(m_sheets.errors("set"), Contains(variant.rule)) << variant.name;
    replace(variant.file, whole);
  }
}

TEST(CheckSums, OfEitherFormUnderEitherNameAreCompared) {
  const SheetFolder sheets;
  sheets.write("set");
  const std::string md5 = readFile(sheets.folder / "set/CHECKSUM.MD5");
  const std::string crc = readFile(sheets.folder / "set/CHECKSUM.TXT");
  writeFile(sheets.folder / "set/CHECKSUM.MD5", crc);
  writeFile(sheets.folder / "set/CHECKSUM.TXT", md5);
  EXPECT_THAT(sheets.findings("set"), IsEmpty());
  std::filesystem::remove(sheets.folder / "set/CHECKSUM.MD5");
  EXPECT_THAT(sheets.findings("set"), IsEmpty());
  std::string wrong = md5;
  wrong[0] = wrong[0] == '0' ? '1' : '0';
  writeFile(sheets.folder / "set/CHECKSUM.TXT", wrong);
  EXPECT_THAT(sheets.errors("set"), testing::ElementsAre("check-sum"));
  writeFile(sheets.folder / "set/CHECKSUM.TXT", md5.substr(md5.find('\n') + 1) + "what is this\n");
  EXPECT_THAT(sheets.findings("set"),
              testing::UnorderedElementsAre("not-in-check-sums", "check-sum-line"));
}

}  // namespace
}  // namespace velmor::ddp::test
