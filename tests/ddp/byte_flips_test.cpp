// Every byte of the descriptors changed, one at a time.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "ddp/check/rules.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

/// What a changed byte becomes.
constexpr char kFlips[] = {'\x01', '\x20', '\x40', '\x7F', '\x80'};

std::string flipped(std::string whole, size_t at, char flip) {
  whole[at] = static_cast<char>(whole[at] ^ flip);
  return whole;
}

/// Calls `judge` with each place in `whole` and each of its flips, and with what they make of it.
template <typename Judge>
void forEachFlip(const std::string& whole, Judge judge) {
  for (size_t at = 0; at < whole.size(); ++at)
    for (const char flip : kFlips) {
      SCOPED_TRACE("byte " + std::to_string(at) + " by " + std::to_string(int{flip}));
      judge(at, flipped(whole, at, flip));
    }
}

/// Whether `judge` has anything to say of `judged`.
template <typename Judge, typename... Judged>
bool isTold(Judge judge, const Judged&... judged) {
  check::Findings findings({});
  judge(judged..., findings);
  return !std::move(findings).sorted().empty();
}

class ByteFlips : public testing::TestWithParam<const char*> {
 protected:
  /// A short disc, since every change has its audio summed anew.
  ByteFlips()
      : m_sheets(
            "CATALOG 0731452345622\nTITLE \"Night\"\nFILE \"a.bin\" BINARY\nTRACK 01 AUDIO\n"
            "TITLE \"Drive\"\nISRC USABC2600001\nINDEX 01 00:00:00\n") {
    std::filesystem::resize_file(m_sheets.folder / "a.bin", 300 * 2352);
    m_sheets.write("set");
  }

  bool readyWithByte(const std::string& whole, size_t at, char flip) {
    writeFile(m_file, flipped(whole, at, flip));
    try {
      return m_sheets.check("set").ready();
    } catch (const Failure&) {
      return false;
    }
  }

  SheetFolder m_sheets;
  std::filesystem::path m_file = m_sheets.folder / "set" / GetParam();
};

TEST_P(ByteFlips, AreToldByTheCheckSums) {
  const std::string whole = readFile(m_file);
  for (size_t at = 0; at < whole.size(); ++at)
    ASSERT_FALSE(readyWithByte(whole, at, kFlips[at % std::size(kFlips)])) << "byte " << at;
}

INSTANTIATE_TEST_SUITE_P(Descriptors, ByteFlips,
                         testing::Values("DDPID", "DDPMS", "SD", "CDTEXT.BIN"));

/// Judged by themselves: with nothing but the descriptors a change must either be told, or have
/// given another disc that is sound too.
class FlipsWithoutCheckSums : public testing::Test {
 protected:
  FlipsWithoutCheckSums() { m_sheets.write("set"); }

  std::string bytes(const std::string& name) const {
    return readFile(m_sheets.folder / "set" / name);
  }

  SheetFolder m_sheets;
};

TEST_F(FlipsWithoutCheckSums, AreToldInTheMapUnlessTheFieldMayBeEither) {
  const std::string whole = bytes("DDPMS");
  // Lengths, names and pregaps that are numbers or names still are compared with the files.
  std::set<size_t> open;
  for (size_t packet = 0; packet < 3; ++packet)
    for (size_t at = 0; at < 128; ++at)
      if ((at >= 14 && at < 22) || (at >= 74 && at < 91) || (at >= 46 && at < 50))
        open.insert(packet * 128 + at);
  open.insert(2 * 128 + 41);  // 1 from some writers, 0 from others
  forEachFlip(whole, [&](size_t at, const std::string& changed) {
    const bool told = isTold(judgeMap, changed);
    EXPECT_TRUE(told || open.count(at) > 0);
  });
}

TEST_F(FlipsWithoutCheckSums, AreToldInThePqDescriptorOrGiveAnotherDisc) {
  const std::string whole = bytes("SD");
  ASSERT_FALSE(isTold(judgePq, whole, "SD"));
  forEachFlip(whole, [](size_t at, const std::string& changed) {
    const size_t field = at % 64;
    const bool free_text = field >= 20;  // codes and the comment
    const bool time = field >= 10 && field < 16;
    const bool control = field == 16 || field == 17;
    const bool told = isTold(judgePq, changed, "SD");
    EXPECT_TRUE(told || free_text || time || control);
  });
}

TEST_F(FlipsWithoutCheckSums, AreToldInTheIdentifierUnlessTheyGiveAnotherCodeOrText) {
  const std::string whole = bytes("DDPID");
  forEachFlip(whole, [](size_t at, const std::string& changed) {
    const bool code = at >= 8 && at < 21;
    const bool text = at >= 38 && at < 86;
    const bool printable = changed[at] >= ' ' && changed[at] <= '~';
    const bool told = isTold(judgeIdentifier, changed);
    EXPECT_TRUE(told || code || (text && printable));
  });
}

TEST_F(FlipsWithoutCheckSums, AreAllToldInTheTextsByTheirOwnCheckSums) {
  const std::string whole = bytes("CDTEXT.BIN");
  for (size_t at = 0; at < whole.size(); ++at) {
    const std::string changed = flipped(whole, at, kFlips[at % std::size(kFlips)]);
    EXPECT_TRUE(isTold(judgeTexts, changed, "CDTEXT.BIN", size_t{2})) << "byte " << at;
  }
}

TEST_F(FlipsWithoutCheckSums, OfALengthANameOrAPregapAreToldByTheFiles) {
  m_sheets.dropChecksums("set");
  const std::string whole = bytes("DDPMS");
  for (size_t packet = 0; packet < 3; ++packet)
    for (const size_t at : {21U, 75U, packet == 2 ? 49U : 21U}) {
      writeFile(m_sheets.folder / "set/DDPMS", flipped(whole, packet * 128 + at, '\1'));
      EXPECT_FALSE(m_sheets.check("set").ready()) << "packet " << packet << " byte " << at;
    }
}

TEST_F(FlipsWithoutCheckSums, OfAnyCutAreToldToo) {
  m_sheets.dropChecksums("set");
  for (const char* name : {"DDPMS", "SD", "CDTEXT.BIN", "DDPID", "IMAGE.DAT"}) {
    const std::string whole = bytes(name);
    for (const size_t length : {whole.size() - 1, whole.size() / 2, size_t{0}}) {
      writeFile(m_sheets.folder / "set" / name, whole.substr(0, length));
      bool ready = false;
      try {
        ready = m_sheets.check("set").ready();
      } catch (const Failure&) {
        ready = false;
      }
      EXPECT_FALSE(ready) << name << " cut to " << length;
    }
    writeFile(m_sheets.folder / "set" / name, whole);
  }
  EXPECT_TRUE(m_sheets.check("set").ready());
}

}  // namespace
}  // namespace velmor::ddp::test
