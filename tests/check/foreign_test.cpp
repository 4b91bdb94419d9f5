// Sheets as other programs wrote them: each gets a report that says what to do.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "check/check.h"
#include "check/portable/make_portable.h"
#include "check/report/report_text.h"
#include "disc/failure.h"
#include "disc/portable/portable_cue.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {
namespace {

namespace fs = std::filesystem;

/// A sheet that cuetools 1.4.1, MAME 0.251, flac 1.4.2, shntool 3.0.10 or cdrdao 1.2.4 made, from a
/// disc of three tracks and 20 s.
struct ForeignSheet {
  const char* name;
  const char* image;
  bool wave;          ///< the image has the header of a WAVE file
  bool second_sheet;  ///< one can be made
};

constexpr ForeignSheet kSheets[] = {{"cuetools-cueconvert", "image.bin", false, false},
                                    {"mame-chdman", "chdman.bin", false, true},
                                    {"flac-metaflac", "image.flac", false, false},
                                    {"shntool-cue", "joined.wav", true, true},
                                    {"cdrdao-toc2cue", "image.bin", false, true}};

class ForeignSheetTest : public testing::TestWithParam<ForeignSheet> {
 protected:
  ForeignSheetTest() {
    const ForeignSheet& sheet = GetParam();
    TestImage image(1500);
    // Where the sheets with a pause have it, and the start behind one that a sheet adds.
    image.silence(400 * 588, 475 * 588).fadeIn(475 * 588).fadeIn(900 * 588);
    writeFile(m_folder / sheet.image,
              (sheet.wave ? wavHeader(image.bytes().size()) : "") + image.bytes());
    writeFile(m_folder / (name() + ".cue"), readFile(goldenFolder() / (name() + ".cue")));
  }

  static std::string name() { return GetParam().name; }
  static fs::path goldenFolder() { return casesFolder().parent_path() / "foreign"; }

  TemporaryFolder m_folder;
};

TEST_P(ForeignSheetTest, GetsTheReportThatStandsBesideIt) {
  std::ostringstream text;
  printReport(check(m_folder / (name() + ".cue"), {}), false, text);
  const fs::path golden = goldenFolder() / (name() + ".report");
  if (std::getenv("VELMOR_REWRITE_REPORTS")) writeFile(golden, text.str());
  EXPECT_EQ(text.str(), readFile(golden));
}

TEST_P(ForeignSheetTest, GivesASecondSheetWithTheSameStartsOrNone) {
  const Report report = check(m_folder / (name() + ".cue"), {});
  if (!GetParam().second_sheet) {
    EXPECT_THROW(makePortable(report, m_folder / "p.cue"), Failure);
    return;
  }
  writeFile(m_folder / "p.cue", cueText(makePortable(report, m_folder / "p.cue")));
  const Report second = check(m_folder / "p.cue", {});
  EXPECT_FALSE(second.failed(false));
  ASSERT_EQ(second.disc.places.size(), 3u);
  for (size_t t = 0; t < 3; ++t) {
    EXPECT_EQ(second.disc.places[t]->on_disc, report.disc.places[t]->on_disc) << t;
    EXPECT_EQ(second.disc.places[t]->gap_start, report.disc.places[t]->gap_start) << t;
  }
}

std::string sheetName(const testing::TestParamInfo<ForeignSheet>& sheet) {
  std::string name = sheet.param.name;
  name[name.find('-')] = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Of, ForeignSheetTest, testing::ValuesIn(kSheets), sheetName);

}  // namespace
}  // namespace velmor::check::test
