#include "host/render/album/disc_fields.h"

#include <strings.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <utility>

#include "disc/text/phrases.h"
#include "host/render/album/album.h"
#include "host/render/album/sheet_text.h"

namespace velmor::render {

namespace {

constexpr const char* kPrefix = "CUE:DISC_";

std::string withoutPrefix(const std::string& key) {
  return key.rfind(kPrefix, 0) == 0 ? key.substr(strlen(kPrefix)) : key;
}

/// Moves fields like --meta TITLE=X to where --title would put them. When both are given, the
/// option of its own wins.
void takeKnownKeys(AlbumTexts& texts) {
  const std::pair<const char*, std::string*> known[] = {{"TITLE", &texts.title},
                                                        {"PERFORMER", &texts.performer},
                                                        {"SONGWRITER", &texts.songwriter},
                                                        {"CATALOG", &texts.catalogue},
                                                        {"REM", &texts.comment}};
  std::vector<std::pair<std::string, std::string>> others;
  for (auto& [key, text] : texts.more) {
    const std::string bare = withoutPrefix(key);
    const auto* const field =
        std::find_if(std::begin(known), std::end(known),
                     [&](const auto& one) { return strcasecmp(one.first, bare.c_str()) == 0; });
    if (field == std::end(known)) {
      others.emplace_back(key, text);
    } else if (field->second->empty()) {
      *field->second = text;
    }
  }
  texts.more = std::move(others);
}

}  // namespace

std::string sharedTag(const std::vector<AlbumInput>& inputs, std::string Tags::*tag) {
  std::string shared;
  for (const AlbumInput& input : inputs) {
    const std::string& text = input.info.tags.*tag;
    if (text.empty() || (!shared.empty() && text != shared)) return {};
    shared = text;
  }
  return shared;
}

AlbumTexts discTexts(const AlbumTexts& given, const std::vector<AlbumInput>& inputs) {
  AlbumTexts texts = given;
  takeKnownKeys(texts);
  const auto fill = [&](std::string& text, std::string Tags::*tag) {
    if (text.empty()) text = sharedTag(inputs, tag);
  };
  fill(texts.title, &Tags::album);
  fill(texts.performer, &Tags::artist);
  fill(texts.songwriter, &Tags::songwriter);
  fill(texts.catalogue, &Tags::catalogue);
  return texts;
}

std::vector<std::pair<std::string, std::string>> sinkMetadata(const AlbumTexts& texts,
                                                              std::vector<std::string>& warnings) {
  std::vector<std::pair<std::string, std::string>> metadata;
  const auto add = [&](const std::string& key, const std::string& text) {
    if (text.empty()) return;
    const bool whole = key.rfind(kPrefix, 0) == 0;
    metadata.emplace_back(whole ? key : kPrefix + key, fitForSheet(text, warnings));
  };
  add("TITLE", texts.title);
  add("PERFORMER", texts.performer);
  add("SONGWRITER", texts.songwriter);
  add("CATALOG", texts.catalogue);
  add("REM", texts.comment);
  for (const auto& [key, text] : texts.more) {
    warnings.push_back("the sheet has no place for the field " +
                       disc::inQuotes(withoutPrefix(key)) +
                       "; it knows TITLE, PERFORMER, SONGWRITER, CATALOG and REM");
    add(key, text);
  }
  return metadata;
}

std::string fieldForPeople(const std::string& key) {
  const std::string bare = withoutPrefix(key);
  const std::pair<const char*, const char*> known[] = {{"TITLE", "disc's title"},
                                                       {"PERFORMER", "disc's performer"},
                                                       {"SONGWRITER", "disc's songwriter"},
                                                       {"CATALOG", "catalogue number"},
                                                       {"REM", "comment"}};
  for (const auto& [name, words] : known) {
    if (bare == name) return words;
  }
  return "field " + disc::inQuotes(bare);
}

}  // namespace velmor::render
