// Our count of CD-TEXT packs against those that libburn makes.

#include <gtest/gtest.h>

#include "disc/cd_text/disc_texts.h"
#include "host/recording/libburn/libburn_header.h"

namespace velmor::recording::testing {
namespace {

constexpr int kSummaryPacks = 3;  // of type 8Fh, which libburn adds

unsigned char* bytesOf(const std::string& text) {
  return reinterpret_cast<unsigned char*>(const_cast<char*>(text.c_str()));
}

int packsOfLibburn(const disc::TextBlock& block) {
  std::string title = "TITLE";
  burn::burn_initialize();
  burn::burn_session* session = burn::burn_session_create();
  const auto length = [](const std::string& text) { return static_cast<int>(text.size()) + 1; };
  burn::burn_session_set_cdtext(session, 0, 0, title.data(), bytesOf(block.disc),
                                length(block.disc), 0);
  for (const std::string& text : block.tracks) {
    burn::burn_track* track = burn::burn_track_create();
    burn::burn_track_define_data(track, 0, 0, 1, BURN_AUDIO);
    burn::burn_session_add_track(session, track, BURN_POS_END);
    burn::burn_track_set_cdtext(track, 0, 0, title.data(), bytesOf(text), length(text), 0);
    burn::burn_track_free(track);
  }
  const int packs = burn::burn_cdtext_from_session(session, nullptr, nullptr, 1);
  burn::burn_session_free(session);
  burn::burn_finish();
  return packs - kSummaryPacks;
}

class TextPacks : public ::testing::TestWithParam<disc::TextBlock> {};

TEST_P(TextPacks, AreCountedAsTheyWillBeWritten) {
  disc::DiscTexts texts;
  texts.block(disc::TextKind::kTitle) = GetParam();
  EXPECT_EQ(disc::textPacks(texts), packsOfLibburn(GetParam()));
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
                      disc::TextBlock{"", {std::string(252 * 12 - 2, 'x')}}));

}  // namespace
}  // namespace velmor::recording::testing
