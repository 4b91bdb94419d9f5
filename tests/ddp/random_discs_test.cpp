// A thousand random discs, each laid out by the product and by a second writer; of some the whole
// sets are written.
//
// VELMOR_WHOLE_RANDOM_SETS: when set, the whole sets of all of them; a hundred took 108 seconds.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

#include "ddp/write/set_target.h"
#include "disc/ddp/identifier.h"
#include "disc/ddp/pq_packets.h"
#include "disc/ddp/stream_map.h"
#include "tests/ddp/model/check_sum_lists.h"
#include "tests/ddp/model/disc_sheet.h"
#include "tests/ddp/model/random_disc.h"
#include "tests/ddp/model/reference_set.h"
#include "tests/ddp/set_folder.h"

namespace velmor::ddp::test {
namespace {

using ddp_model::CdText;
using ddp_model::ModelDisc;
using ddp_model::ModelSet;

constexpr unsigned kHundreds = ddp_model::kRandomDiscs / 100;
constexpr int64_t kBytesOfSector = 2352;
/// Images up to this length make the sets that every run writes whole.
constexpr int64_t kShortImage = 8 << 20;

/// The number of the first disc of a hundred that has a short image.
unsigned shortDiscOf(unsigned hundred) {
  unsigned number = hundred * 100;
  while (ddp_model::randomDisc(number).image_bytes > kShortImage) ++number;
  return number;
}

/// Every third disc is written without its texts.
CdText cdTextOf(unsigned number) {
  return number % 3 == 2 ? CdText::kLeftOut : CdText::kWritten;
}

/// The files of a set but for the lists of check sums, which are made of these.
std::map<std::string, std::string> filesOf(const ModelSet& model, const std::string& image) {
  std::string audio(static_cast<size_t>(model.silent_sectors * kBytesOfSector), '\0');
  audio += image;
  audio.resize(static_cast<size_t>(model.sectors * kBytesOfSector), '\0');
  std::map<std::string, std::string> files = {{"DDPID", model.identifier},
                                              {"DDPMS", model.map},
                                              {"SD", model.pq},
                                              {"IMAGE.DAT", std::move(audio)}};
  if (!model.texts.empty()) files["CDTEXT.BIN"] = model.texts;
  return files;
}

/// In the order of the lists of check sums.
std::vector<std::string> namesOf(const ModelSet& model) {
  if (model.texts.empty()) return {"DDPID", "DDPMS", "SD", "IMAGE.DAT"};
  return {"DDPID", "DDPMS", "CDTEXT.BIN", "SD", "IMAGE.DAT"};
}

class RandomDiscs : public testing::TestWithParam<unsigned> {
 protected:
  /// An image that takes no room on the disk.
  PreparedSet prepared(const ModelDisc& disc, CdText cd_text = CdText::kWritten) const {
    writeFile(m_folder / "r.cue", ddp_model::sheetOf(disc, "r.bin"));
    writeFile(m_folder / "r.bin", "");
    std::filesystem::resize_file(m_folder / "r.bin", static_cast<uintmax_t>(disc.image_bytes));
    return preparedFrom("r.cue", cd_text);
  }

  PreparedSet preparedFrom(const std::string& sheet, CdText cd_text) const {
    SetOptions options;
    options.cd_text = cd_text == CdText::kWritten;
    return prepareSet(m_folder / sheet, options);
  }

  void compareFiles(unsigned number) const {
    const ModelDisc disc = ddp_model::randomDisc(number);
    const ModelSet model = ddp_model::makeSet(disc, cdTextOf(number));
    const std::string image = countingFrames(disc.image_bytes / 4);
    writeFile(m_folder / "r.cue", ddp_model::sheetOf(disc, "r.bin"));
    writeFile(m_folder / "r.bin", image);
    writeSet(preparedFrom("r.cue", cdTextOf(number)), "set");
    const std::string set = m_folder.file("set");
    for (const auto& [name, bytes] : filesOf(model, image))
      ASSERT_TRUE(readFile(m_folder / "set" / name) == bytes) << name << " of\n"
                                                              << readFile(m_folder / "r.cue");
    ASSERT_EQ(readFile(m_folder / "set/CHECKSUM.MD5"), ddp_model::md5List(set, namesOf(model)));
    ASSERT_EQ(readFile(m_folder / "set/CHECKSUM.TXT"), ddp_model::crcList(set, namesOf(model)));
    ASSERT_EQ(namesIn(set).size(), namesOf(model).size() + 2);
    std::filesystem::remove_all(set);
  }

  void writeSet(const PreparedSet& set, const std::string& name) const {
    SetTarget(m_folder / name, false).write(set, [](int64_t) {});
  }

  test_kit::ScratchFolder m_folder;
};

TEST_P(RandomDiscs, HaveTheDescriptorsThatASecondWriterGivesThem) {
  for (unsigned i = 0; i < 100; ++i) {
    const unsigned number = GetParam() * 100 + i;
    const ModelDisc disc = ddp_model::randomDisc(number);
    const PreparedSet set = prepared(disc, cdTextOf(number));
    const std::string sheet = readFile(m_folder / "r.cue");
    ASSERT_FALSE(set.refused()) << set.report.findings.front().what << '\n' << sheet;
    EXPECT_THAT(set.changes, testing::IsEmpty());
    const ModelSet model = ddp_model::makeSet(disc, cdTextOf(number));
    const std::string pq = pqBytes(set.layout.set);
    ASSERT_EQ(identifierBytes(set.layout.set), model.identifier) << sheet;
    ASSERT_EQ(mapBytes(set.layout.set, set.text_packs.size(), pq.size()), model.map) << sheet;
    ASSERT_EQ(set.text_packs, model.texts) << sheet;
    ASSERT_EQ(pq, model.pq) << sheet;
    ASSERT_EQ(set.layout.pieces.front().file == AudioPiece::kSilence ? 150 : 0,
              model.silent_sectors);
  }
}

TEST_P(RandomDiscs, HaveTheFilesThatASecondWriterGivesThem) {
  if (std::getenv("VELMOR_WHOLE_RANDOM_SETS") == nullptr) {
    compareFiles(shortDiscOf(GetParam()));
    return;
  }
  for (unsigned i = 0; i < 100 && !HasFatalFailure(); ++i) compareFiles(GetParam() * 100 + i);
}

INSTANTIATE_TEST_SUITE_P(Hundreds, RandomDiscs, testing::Range(0U, kHundreds));

using ShortRandomDisc = RandomDiscs;

TEST_P(ShortRandomDisc, IsTheSameSetOnceMoreWhenTakenApartAndWrittenAgain) {
  const ModelDisc disc = ddp_model::randomDisc(shortDiscOf(GetParam()));
  prepared(disc);
  writeFile(m_folder / "r.bin", countingFrames(disc.image_bytes / 4));
  writeSet(preparedFrom("r.cue", CdText::kWritten), "set");
  SheetFolder program;
  const auto extracted =
      program.run({"extract", m_folder.file("set"), "-o", m_folder.file("e.cue")});
  ASSERT_EQ(extracted.status, 0) << extracted.all;
  writeSet(preparedFrom("e.cue", CdText::kWritten), "again");
  EXPECT_TRUE(sameFiles(m_folder / "set", m_folder / "again")) << readFile(m_folder / "r.cue");
}

INSTANTIATE_TEST_SUITE_P(OfAHundred, ShortRandomDisc, testing::Values(0U, 3U, 6U));

}  // namespace
}  // namespace velmor::ddp::test
