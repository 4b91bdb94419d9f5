// Our packs of CD-TEXT as libburn reads them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "disc/cd_text/disc_texts.h"
#include "disc/cd_text/pack_writing.h"
#include "host/recording/libburn/libburn_header.h"

namespace velmor::recording::testing {
namespace {

disc::DiscTexts textsOf(const disc::TextBlock& titles) {
  disc::DiscTexts texts;
  texts.block(disc::TextKind::kTitle) = titles;
  texts.recording_codes.resize(titles.tracks.size());
  return texts;
}

/// The texts by libburn's reading, a line "Track 01 Title = TEXT" each.
std::string readByLibburn(std::string packs, size_t tracks) {
  char* sheet = nullptr;
  int character_code = 0;
  burn::burn_initialize();
  const int length =
      burn::burn_make_input_sheet_v07t(reinterpret_cast<unsigned char*>(packs.data()),
                                       static_cast<int>(packs.size()) / disc::kWholePackBytes, 1,
                                       static_cast<int>(tracks), &sheet, &character_code, 0);
  burn::burn_finish();
  std::string read = length > 0 ? std::string(sheet, static_cast<size_t>(length)) : std::string();
  std::free(sheet);
  return read;
}

/// What stands behind the sign of the line that begins with `field`.
std::string valueOf(const std::string& sheet, const std::string& field) {
  const size_t line = sheet.find(field);
  if (line == std::string::npos) return {};
  const size_t value = sheet.find("= ", line) + 2;
  return sheet.substr(value, sheet.find('\n', value) - value);
}

class TextPacks : public ::testing::TestWithParam<disc::TextBlock> {};

TEST_P(TextPacks, AreCountedAsTheyAreWritten) {
  const disc::DiscTexts texts = textsOf(GetParam());
  const auto packs = static_cast<int>(disc::packBytes(texts).size()) / disc::kWholePackBytes;
  EXPECT_EQ(disc::textPacks(texts) + disc::kSizePacks, packs);
}

TEST_P(TextPacks, AreReadByLibburnAsWhatWasMeant) {
  const disc::TextBlock& titles = GetParam();
  const std::string sheet = readByLibburn(disc::packBytes(textsOf(titles)), titles.tracks.size());
  ASSERT_FALSE(sheet.empty());
  EXPECT_EQ(valueOf(sheet, "\nAlbum Title"), titles.disc);
  for (size_t t = 0; t < titles.tracks.size(); ++t) {
    const std::string number = (t < 9 ? "0" : "") + std::to_string(t + 1);
    EXPECT_EQ(valueOf(sheet, "\nTrack " + number + " Title"), titles.tracks[t]) << number;
  }
}

std::vector<std::string> numbered(int count) {
  std::vector<std::string> texts;
  texts.reserve(static_cast<size_t>(count));
  for (int i = 0; i < count; ++i) texts.push_back("Part " + std::to_string(i * i));
  return texts;
}

INSTANTIATE_TEST_SUITE_P(
    Blocks, TextPacks,
    ::testing::Values(disc::TextBlock{"", {""}}, disc::TextBlock{"A", {"B"}},
                      disc::TextBlock{"Twelve bytes", {""}},
                      disc::TextBlock{"Same", {"Same", "Same", "Same"}},
                      disc::TextBlock{"D", std::vector<std::string>(99, "The Lanterns")},
                      disc::TextBlock{"D", std::vector<std::string>(99, "")},
                      disc::TextBlock{"D", std::vector<std::string>(99, "x")},
                      disc::TextBlock{"D", {"Same", "Same", "", "", "Same", "Same"}},
                      disc::TextBlock{"Night Drive", numbered(99)},
                      disc::TextBlock{"", {std::string(253 * 12 - 2, 'x')}}));

}  // namespace
}  // namespace velmor::recording::testing
