#include "host/render/disc_fields.h"

#include "host/render/album.h"
#include "host/render/sheet_text.h"

namespace velmor::render {

namespace {

constexpr const char* kPrefix = "CUE:DISC_";

/// The tag that all inputs share, empty when one differs or has none.
std::string sharedTag(const std::vector<AlbumInput>& inputs, std::string Tags::*tag) {
  std::string shared;
  for (const AlbumInput& input : inputs) {
    const std::string& text = input.info.tags.*tag;
    if (text.empty() || (!shared.empty() && text != shared)) return {};
    shared = text;
  }
  return shared;
}

}  // namespace

DiscTexts discTexts(const DiscTexts& given, const std::vector<AlbumInput>& inputs) {
  DiscTexts texts = given;
  const auto fill = [&](std::string& text, std::string Tags::*tag) {
    if (text.empty()) text = sharedTag(inputs, tag);
  };
  fill(texts.title, &Tags::album);
  fill(texts.performer, &Tags::artist);
  fill(texts.songwriter, &Tags::songwriter);
  return texts;
}

std::vector<std::pair<std::string, std::string>> sinkMetadata(const DiscTexts& texts,
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
  for (const auto& [key, text] : texts.more) add(key, text);
  return metadata;
}

}  // namespace velmor::render
