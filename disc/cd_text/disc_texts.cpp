#include "disc/cd_text/disc_texts.h"

#include <algorithm>
#include <set>

#include "disc/cd_text/disc_codes.h"
#include "disc/failure.h"
#include "disc/text/latin1.h"
#include "disc/text/phrases.h"

namespace velmor::disc {
namespace {

struct Kind {
  TextKind kind;
  std::string TextFields::*field;
  bool of_the_disc;  // a track without it has the disc's
};
constexpr std::array<Kind, 6> kKinds{{
    {TextKind::kTitle, &TextFields::title, false},
    {TextKind::kPerformer, &TextFields::performer, true},
    {TextKind::kSongwriter, &TextFields::songwriter, true},
    {TextKind::kComposer, &TextFields::composer, true},
    {TextKind::kArranger, &TextFields::arranger, true},
    {TextKind::kMessage, &TextFields::message, false},
}};

std::string convert(const std::string& text, const std::string& what,
                    std::vector<std::string>& warnings) {
  const Latin1Text converted = toLatin1(text);
  if (!converted.replaced.empty()) {
    std::string characters;
    for (const std::string& character : converted.replaced)
      characters += (characters.empty() ? "" : ", ") + inQuotes(character);
    warnings.push_back("CD-TEXT knows ISO 8859-1 only: " + characters + " in the " + what +
                       " cannot be written as such");
  }
  return converted.text;
}

TextBlock makeBlock(const Kind& kind, const SheetTexts& sheet, std::vector<std::string>& warnings) {
  TextBlock block;
  const std::string name(nameOf(kind.kind));
  const auto given = [&kind](const SheetTrack& track) {
    return !(track.texts.*kind.field).empty();
  };
  if ((sheet.disc.*kind.field).empty() &&
      std::none_of(sheet.tracks.begin(), sheet.tracks.end(), given))
    return block;
  block.disc = convert(sheet.disc.*kind.field, name + " of the disc", warnings);
  for (size_t i = 0; i < sheet.tracks.size(); ++i) {
    block.tracks.push_back(convert(sheet.tracks[i].texts.*kind.field,
                                   name + " of track " + std::to_string(i + 1), warnings));
  }
  return block;
}

/// A track without a performer of its own has the disc's.
void completeTracks(DiscTexts& texts) {
  for (const Kind& kind : kKinds) {
    if (!kind.of_the_disc) continue;
    TextBlock& block = texts.block(kind.kind);
    std::replace(block.tracks.begin(), block.tracks.end(), std::string(), block.disc);
  }
}

void addCodes(DiscTexts& texts, const SheetTexts& sheet, std::vector<std::string>& warnings) {
  const auto keep = [&warnings](const DiscCode& code, const std::string& where) {
    if (!code.warning.empty()) warnings.push_back(where + code.warning);
    return code.code;
  };
  texts.media_catalog = keep(mediaCatalogNumber(sheet.catalog), "");
  std::set<std::string> seen;
  for (size_t i = 0; i < sheet.tracks.size(); ++i) {
    const std::string where = "track " + std::to_string(i + 1) + ": ";
    texts.recording_codes[i] = keep(recordingCode(sheet.tracks[i].isrc), where);
    const std::string& code = texts.recording_codes[i];
    if (!code.empty() && !seen.insert(code).second)
      warnings.push_back(std::string(where)
                             .append("the ISRC ")
                             .append(code)
                             .append(" stands on an earlier track too"));
  }
}

/// The codes once more beside the texts, for players that show them.
TextBlock codeBlock(const DiscTexts& texts) {
  if (!texts.hasCdText()) return {};
  const auto& codes = texts.recording_codes;
  const bool any =
      std::any_of(codes.begin(), codes.end(), [](const auto& c) { return !c.empty(); });
  if (!any && texts.media_catalog.empty()) return {};
  return {texts.media_catalog, codes};
}

/// Each text ends with a zero.
size_t payloadBytes(const TextBlock& block) {
  size_t bytes = block.disc.size() + 1;
  for (const std::string& text : block.tracks) bytes += text.size() + 1;
  return bytes;
}

}  // namespace

bool DiscTexts::hasCdText() const {
  return std::any_of(blocks.begin(), blocks.end(), [](const auto& b) { return b.present(); });
}

std::string DiscTexts::text(TextKind kind, size_t track) const {
  const TextBlock& texts = block(kind);
  if (!texts.present() || track > texts.tracks.size()) return {};
  return track == 0 ? texts.disc : texts.tracks[track - 1];
}

int textPacks(const DiscTexts& texts) {
  size_t packs = 0;
  for (const TextBlock& block : texts.blocks)
    if (block.present()) packs += packsOfBytes(payloadBytes(block));
  return static_cast<int>(packs);
}

DiscTexts textsAsGiven(const SheetTexts& sheet, std::vector<std::string>& warnings) {
  DiscTexts texts;
  texts.recording_codes.resize(sheet.tracks.size());
  for (const Kind& kind : kKinds) texts.block(kind.kind) = makeBlock(kind, sheet, warnings);
  return texts;
}

DiscTexts makeDiscTexts(const SheetTexts& sheet, size_t tracks,
                        std::vector<std::string>& warnings) {
  if (sheet.tracks.size() != tracks)
    throw Failure("the cue sheet has " + std::to_string(sheet.tracks.size()) +
                  " tracks and the burn has " + std::to_string(tracks) +
                  ": its texts belong to another disc");
  DiscTexts texts = textsAsGiven(sheet, warnings);
  completeTracks(texts);
  addCodes(texts, sheet, warnings);
  texts.block(TextKind::kCode) = codeBlock(texts);
  // The codes are in the Q channel anyway; the texts are not to be lost to them.
  if (textPacks(texts) > kMostTextPacks) texts.block(TextKind::kCode) = {};
  const int packs = textPacks(texts);
  if (packs > kMostTextPacks)
    throw Failure("the texts take " + std::to_string(packs) + " packs of CD-TEXT, and " +
                  std::to_string(kMostTextPacks) + " can be written: shorten them by about " +
                  std::to_string((packs - kMostTextPacks) * kTextPackBytes) +
                  " characters, or burn without CD-TEXT");
  return texts;
}

}  // namespace velmor::disc
