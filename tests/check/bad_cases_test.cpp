// Each thing that breaks a reader: the report on it, and the readers themselves.

#include "tests/check/bad_cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "check/check.h"
#include "check/report/report_text.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

std::string caseName(const testing::TestParamInfo<BadCase>& info) {
  std::string name = info.param.name.substr(4);
  std::replace_if(
      name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
  return name;
}

bool contains(const std::vector<Reader>& readers, Reader reader) {
  return std::find(readers.begin(), readers.end(), reader) != readers.end();
}

class BadCaseTest : public testing::TestWithParam<BadCase> {};

TEST_P(BadCaseTest, GetsTheReportThatStandsBesideIt) {
  TemporaryFolder folder;
  const SheetOnDisk disk = prepare(GetParam(), folder.path());
  // The whole disc of silence takes seconds to read; the report is about a short one.
  if (GetParam().image == ImageKind::kWholeDisc) TestImage(1500).write(folder / disk.image);
  if (GetParam().image == ImageKind::kHundredTracks)
    TestImage(disk.sectors).write(folder / disk.image);
  const Report report = check(folder / disk.sheet, {});
  EXPECT_TRUE(std::any_of(report.findings.begin(), report.findings.end(),
                          [](const Finding& f) { return f.rule == GetParam().rule; }));
  std::ostringstream text;
  printReport(report, false, text);
  const auto golden = casesFolder() / (GetParam().name + ".report");
  if (std::getenv("VELMOR_REWRITE_REPORTS")) writeFile(golden, text.str());
  EXPECT_EQ(text.str(), readFile(golden));
}

enum class Outcome { kFine, kDamaged, kRefused };

std::ostream& operator<<(std::ostream& out, Outcome outcome) {
  return out << (outcome == Outcome::kFine      ? "takes it rightly"
                 : outcome == Outcome::kDamaged ? "damages it"
                                                : "refuses it");
}

/// What the report says of that reader, habits left out.
Outcome outcomeByTheReport(const Report& report, Reader reader) {
  Outcome worst = Outcome::kFine;
  for (const Finding& f : report.findings) {
    if (contains(f.refused, reader)) return Outcome::kRefused;
    if (contains(f.damaged, reader)) worst = Outcome::kDamaged;
  }
  return worst;
}

TEST_P(BadCaseTest, IsTakenByEachReaderAsTheRulesSay) {
  const BadCase& bad = GetParam();
  TemporaryFolder checked;
  const SheetOnDisk disk = prepare(bad, checked.path());
  CheckOptions without_samples;
  without_samples.samples = false;
  const Report report = check(checked / disk.sheet, without_samples);
  const auto asked = askReaders(
      [&bad](const std::filesystem::path& folder) { return prepare(bad, folder); }, bad.too_slow);
  for (const auto& [reader, loaded] : asked) {
    const std::string lost = difference(loaded, bad.truth);
    const Outcome seen = !loaded.accepted ? Outcome::kRefused
                         : lost.empty()   ? Outcome::kFine
                                          : Outcome::kDamaged;
    const Outcome said =
        contains(bad.unseen, reader) ? Outcome::kFine : outcomeByTheReport(report, reader);
    EXPECT_EQ(seen, said) << readerName(reader) << " with " << bad.name << '\n'
                          << lost << loaded.output.substr(0, 2000);
  }
  if (!missingReaders().empty()) GTEST_SKIP() << "not installed here:" << missingReaders();
}

INSTANTIATE_TEST_SUITE_P(Sheet, BadCaseTest, testing::ValuesIn(badCases()), caseName);

}  // namespace
}  // namespace velmor::check::test
