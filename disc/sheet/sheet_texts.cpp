#include "disc/sheet/sheet_texts.h"

#include <fstream>
#include <iterator>

#include "disc/sheet/sheet_parser.h"
#include "disc/text/phrases.h"

namespace velmor::disc {

namespace {

std::string bytesOf(const std::optional<Text>& text) {
  return text ? text->bytes : std::string();
}

TextFields fieldsOf(const Fields& fields) {
  return {bytesOf(fields.title),    bytesOf(fields.performer), bytesOf(fields.songwriter),
          bytesOf(fields.composer), bytesOf(fields.arranger),  bytesOf(fields.message)};
}

}  // namespace

SheetTexts textsOf(const Sheet& sheet) {
  SheetTexts texts;
  texts.disc = fieldsOf(sheet.fields);
  texts.catalog = bytesOf(sheet.catalog);
  for (const Track& track : sheet.tracks)
    texts.tracks.push_back({fieldsOf(track.fields), bytesOf(track.isrc)});
  return texts;
}

SheetTexts readSheetTexts(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw Failure("the cue sheet " + inQuotes(path) + " cannot be read for the CD-TEXT");
  const std::string sheet((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  SheetTexts texts = textsOf(parseSheet(sheet));
  if (texts.tracks.empty())
    throw Failure("the cue sheet " + inQuotes(path) + " has no tracks to take CD-TEXT from");
  return texts;
}

}  // namespace velmor::disc
