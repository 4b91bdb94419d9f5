// Each thing that breaks a reader: the report on it, and the readers themselves.

#include "tests/cdcheck/bad_cases.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "tests/cdcheck/test_images.h"
#include "tools/cdcheck/check.h"
#include "tools/cdcheck/report/report_text.h"

namespace velmor::cdcheck::test {
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
  const Report report = check(folder / disk.sheet, {});
  EXPECT_TRUE(std::any_of(report.findings.begin(), report.findings.end(),
                          [](const Finding& f) { return f.rule == GetParam().rule; }));
  std::ostringstream text;
  printReport(report, false, text);
  const auto golden = casesFolder() / (GetParam().name + ".report");
  if (std::getenv("VELMOR_REWRITE_REPORTS")) writeFile(golden, text.str());
  EXPECT_EQ(text.str(), readFile(golden));
}

enum class Outcome { fine, damaged, refused };

std::ostream& operator<<(std::ostream& out, Outcome outcome) {
  return out << (outcome == Outcome::fine      ? "takes it rightly"
                 : outcome == Outcome::damaged ? "damages it"
                                               : "refuses it");
}

Outcome outcomeByTheTable(const std::string& rule, Reader reader) {
  const ReaderVerdict* verdict = readerVerdict(rule);
  if (verdict && contains(verdict->refused, reader)) return Outcome::refused;
  if (verdict && contains(verdict->damaged, reader)) return Outcome::damaged;
  return Outcome::fine;
}

TEST_P(BadCaseTest, IsTakenByEachReaderAsTheRulesSay) {
  const BadCase& bad = GetParam();
  std::string missing;
  for (const ReaderRun& run : readerRuns()) {
    const std::string name(readerName(run.reader));
    if (!run.installed()) missing += ' ' + name;
    if (!run.installed() || contains(bad.tooSlow, run.reader)) continue;
    TemporaryFolder folder;
    const LoadedDisc loaded = run.load(prepare(bad, folder.path()));
    const std::string lost = difference(loaded, bad.truth);
    const Outcome seen = !loaded.accepted ? Outcome::refused
                         : lost.empty()   ? Outcome::fine
                                          : Outcome::damaged;
    const Outcome said =
        contains(bad.unseen, run.reader) ? Outcome::fine : outcomeByTheTable(bad.rule, run.reader);
    EXPECT_EQ(seen, said) << name << " with " << bad.name << '\n'
                          << lost << loaded.output.substr(0, 2000);
  }
  if (!missing.empty()) GTEST_SKIP() << "not installed here:" << missing;
}

INSTANTIATE_TEST_SUITE_P(Sheet, BadCaseTest, testing::ValuesIn(badCases()), caseName);

}  // namespace
}  // namespace velmor::cdcheck::test
