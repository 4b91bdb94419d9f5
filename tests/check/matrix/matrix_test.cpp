// A few cells of the matrix, another few in each part of a run; ./dev readers takes them all.

#include <gtest/gtest.h>

#include <set>

#include "tests/check/matrix/cells.h"
#include "tests/check/matrix/edits.h"

namespace velmor::check::test {
namespace {

void expectAgreement(const Draft& draft) {
  for (const Cell& cell : cellsOf(draft)) EXPECT_TRUE(cell.agrees()) << cell.text();
}

TEST(ReaderMatrix, GoodSheetsAreTakenByEveryReaderThatTakesTheirFile) {
  for (const Cell& cell : cellsOf(goodDraft())) {
    EXPECT_EQ(cell.seen, Outcome::kTaken) << cell.text();
    EXPECT_TRUE(cell.agrees()) << cell.text();
  }
  expectAgreement(goodWaveDraft());
}

TEST(ReaderMatrix, ChecksWhatReadersDoWithASampleOfTheEdits) {
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

TEST(ReaderMatrix, FindsEveryReaderThatRefusesASecondSheetNamedThere) {
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

TEST(ReaderMatrix, HasASecondSheetThatLibburnAloneRefusesOfADiscWithData) {
  Draft draft = goodDraft();
  draft.line("track3")->text = "  TRACK 03 MODE1/2352";
  for (const Cell& cell : portableCellsOf(draft)) {
    EXPECT_TRUE(cell.agrees()) << cell.text();
    EXPECT_EQ(cell.seen == Outcome::kRefused, cell.reader == Reader::kLibburn) << cell.text();
  }
}

TEST(ReaderMatrix, NamesEachEditOnce) {
  std::set<std::string> names;
  for (const Edit& edit : allEdits()) EXPECT_TRUE(names.insert(edit.name).second) << edit.name;
}

Cell cell(Outcome seen, bool refused, bool damaged, bool wrong) {
  Cell made;
  made.seen = seen;
  made.said = {true, refused, damaged, wrong, ""};
  return made;
}

TEST(ReaderMatrix, CallsItDisagreementWhenARefusalOrADamageIsNotToldOrIsInvented) {
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
