// A few cells of the matrix, of every so many edits; ./dev readers takes them all.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/check/matrix/cells.h"
#include "tests/check/matrix/edits.h"

namespace velmor::check::test {
namespace {

/// Needs a reader: without one there is nothing to compare.
class ReaderMatrix : public testing::Test {
 protected:
  void SetUp() override {
    if (const auto& runs = readerRuns(); std::none_of(
            runs.begin(), runs.end(), [](const ReaderRun& run) { return run.installed(); }))
      GTEST_SKIP() << "no reader is installed";
  }

  static void expectAgreement(const Draft& draft) {
    const std::vector<Cell> cells = cellsOf(draft);
    EXPECT_THAT(cells, testing::Not(testing::IsEmpty())) << draft.name;
    for (const Cell& cell : cells) EXPECT_TRUE(cell.agrees()) << cell.text();
  }
};

TEST_F(ReaderMatrix, GoodSheetsAreTakenByEveryReaderThatTakesTheirFile) {
  for (const Cell& cell : cellsOf(goodDraft())) {
    EXPECT_EQ(cell.seen, Outcome::kTaken) << cell.text();
    EXPECT_TRUE(cell.agrees()) << cell.text();
  }
  expectAgreement(goodWaveDraft());
}

TEST_F(ReaderMatrix, ChecksWhatReadersDoWithASampleOfTheEdits) {
  // A prime step meets edits of every kind.
  constexpr size_t kStep = 41;
  const auto& edits = allEdits();
  for (size_t e = 7; e < edits.size(); e += kStep) {
    Draft draft = goodDraft();
    ASSERT_TRUE(edits[e].apply(draft)) << edits[e].name;
    draft.name = edits[e].name;
    expectAgreement(draft);
  }
}

TEST_F(ReaderMatrix, FindsEveryReaderThatRefusesASecondSheetNamedThere) {
  constexpr size_t kStep = 113;
  const auto& edits = allEdits();
  size_t cells = 0;
  for (size_t e = 11; e < edits.size(); e += kStep) {
    Draft draft = goodDraft();
    ASSERT_TRUE(edits[e].apply(draft)) << edits[e].name;
    draft.name = edits[e].name;
    for (const Cell& cell : portableCellsOf(draft)) {
      EXPECT_TRUE(cell.agrees()) << cell.text();
      ++cells;
    }
  }
  EXPECT_GT(cells, 0U);
}

TEST_F(ReaderMatrix, HasASecondSheetThatLibburnAloneRefusesOfADiscWithData) {
  Draft draft = goodDraft();
  draft.line("track3")->text = "  TRACK 03 MODE1/2352";
  const std::vector<Cell> cells = portableCellsOf(draft);
  EXPECT_THAT(cells, testing::Not(testing::IsEmpty()));
  for (const Cell& cell : cells) {
    EXPECT_TRUE(cell.agrees()) << cell.text();
    EXPECT_EQ(cell.seen == Outcome::kRefused, cell.reader == Reader::kLibburn) << cell.text();
  }
}

TEST(MatrixItself, NamesEachEditOnce) {
  std::set<std::string> names;
  for (const Edit& edit : allEdits()) EXPECT_TRUE(names.insert(edit.name).second) << edit.name;
}

TEST(MatrixItself, HasNoEditThatLeavesTheGoodSheetAsItIs) {
  for (const Edit& edit : allEdits()) {
    Draft draft = goodDraft();
    EXPECT_TRUE(edit.apply(draft)) << edit.name;
    EXPECT_TRUE(draft.text() != goodDraft().text() || draft.files.front().name != "image.bin")
        << edit.name;
  }
}

Cell cell(Outcome seen, bool refused, bool damaged, bool wrong) {
  Cell made;
  made.seen = seen;
  made.said = {true, refused, damaged, wrong, ""};
  return made;
}

TEST(MatrixItself, CallsItDisagreementWhenARefusalOrADamageIsNotToldOrIsInvented) {
  EXPECT_FALSE(cell(Outcome::kRefused, false, false, false).agrees());
  EXPECT_FALSE(cell(Outcome::kRefused, false, true, false).agrees());
  EXPECT_TRUE(cell(Outcome::kRefused, true, false, false).agrees());
  EXPECT_TRUE(cell(Outcome::kRefused, false, false, true).agrees());
  EXPECT_FALSE(cell(Outcome::kDamaged, false, false, false).agrees());
  EXPECT_FALSE(cell(Outcome::kDamaged, true, false, false).agrees());
  EXPECT_TRUE(cell(Outcome::kDamaged, false, true, false).agrees());
  EXPECT_FALSE(cell(Outcome::kTaken, true, false, true).agrees());
  EXPECT_FALSE(cell(Outcome::kTaken, false, true, false).agrees());
  EXPECT_TRUE(cell(Outcome::kTaken, false, false, true).agrees());
  Cell crashed = cell(Outcome::kTaken, false, false, false);
  crashed.said.reported = false;
  EXPECT_FALSE(crashed.agrees());
}

}  // namespace
}  // namespace velmor::check::test
