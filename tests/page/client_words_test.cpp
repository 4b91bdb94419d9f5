// Every rule has a sentence for those who made the music.

#include "page/html/client_words.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include "tests/kit/whole_files.h"

namespace velmor::page::test {
namespace {

/// What looks like the id of a rule in the sources that judge.
std::set<std::string> rulesOfSources() {
  const std::regex id("\"([a-z0-9]+(-[a-z0-9]+)+)\"");
  std::set<std::string> rules;
  for (const char* folder : {"check/rules", "ddp/check", "ddp/write"}) {
    const auto path = std::filesystem::path(VELMOR_SOURCE_DIR) / folder;
    for (const auto& file : std::filesystem::directory_iterator(path)) {
      const std::string text = test_kit::readFile(file.path());
      for (std::sregex_iterator match(text.begin(), text.end(), id), end; match != end; ++match)
        rules.insert((*match)[1]);
    }
  }
  return rules;
}

TEST(ClientWords, AreThereForEveryRule) {
  const std::set<std::string> rules = rulesOfSources();
  EXPECT_GT(rules.size(), 100U);
  EXPECT_EQ(rules.count("check-sum"), 1U);
  for (const std::string& rule : rules) EXPECT_FALSE(clientWords(rule).empty()) << rule;
}

TEST(ClientWords, AreThereForRulesOfOneWord) {
  for (const char* rule : {"clipped", "level", "pregap", "postgap"})
    EXPECT_FALSE(clientWords(rule).empty()) << rule;
}

TEST(ClientWords, AreWholeSentences) {
  for (const std::string& rule : rulesOfSources()) {
    const std::string_view words = clientWords(rule);
    EXPECT_TRUE(words.ends_with('.')) << rule;
    EXPECT_TRUE(words.substr(0, 1) >= "A" && words.substr(0, 1) <= "Z") << rule;
  }
}

TEST(ClientWords, AreNotMadeUpForWhatIsNoRule) {
  EXPECT_EQ(clientWords("no-such-rule"), "");
}

}  // namespace
}  // namespace velmor::page::test
