#include <algorithm>
#include <functional>

#include "check/rules/rules.h"
#include "disc/cd_text/text_packs.h"
#include "disc/sheet/sheet.h"
#include "disc/text/encoding.h"

namespace velmor::check {

namespace {

constexpr std::string_view kCdText = "MMC-3 annex J (CD-TEXT)";

/// Bytes of a text that libcue keeps.
constexpr size_t kLibcueTakes = 1022;

using FieldOf = std::optional<disc::Text> disc::Fields::*;
struct NamedField {
  std::string_view name;
  FieldOf field;
};
constexpr NamedField kFields[] = {
    {"TITLE", &disc::Fields::title},           {"PERFORMER", &disc::Fields::performer},
    {"SONGWRITER", &disc::Fields::songwriter}, {"COMPOSER", &disc::Fields::composer},
    {"ARRANGER", &disc::Fields::arranger},     {"MESSAGE", &disc::Fields::message}};

void checkEncoding(const disc::Text& text, const std::string& name, const Place& place,
                   Findings& findings) {
  switch (disc::encodingOf(text.bytes)) {
    case disc::Encoding::kUtf8:
      findings.addForReaders("utf8-text", place, name + " is UTF-8 beyond ASCII",
                             "Spell it in ASCII for everybody (--portable does).");
      return;
    case disc::Encoding::kLatin1:
      findings.addForReaders("latin1-text", place,
                             name + " has letters in an 8-bit encoding such as ISO 8859-1",
                             "Spell it in ASCII for everybody (--portable does).");
      return;
    default:
      return;
  }
}

void checkText(const disc::Text& text, std::string_view field, int track, Findings& findings) {
  const std::string name(field);
  const Place& place{text.line, track};
  const std::string& b = text.bytes;
  if (b.empty()) {
    findings.addForReaders(field == "PERFORMER" ? "empty-performer" : "empty-text", place,
                           name + " is empty", "Give it a value or remove the line.");
    return;
  }
  if (text.quoted && b.find('"') != std::string::npos)
    findings.addForReaders({"quote-in-text", name}, place, name + " has a double quote inside",
                           "Write apostrophes instead.");
  if (b.ends_with('\\'))
    findings.addForReaders({"backslash-at-end", track > 0 ? "" : name}, place,
                           name +
                               " ends in a backslash, which some readers take together with the "
                               "closing quote",
                           "Remove the backslash.");
  if (disc::countCharacters(b) > disc::kMostCharacters)
    findings.addForReaders({"text-too-long", b.size() > kLibcueTakes ? "very" : ""}, place,
                           name + " has " + std::to_string(disc::countCharacters(b)) +
                               " characters; some readers take 80 at most",
                           "Shorten it to 80.");
  const auto control = [](char c) { return static_cast<unsigned char>(c) < 32 || c == 127; };
  if (std::any_of(b.begin(), b.end(), control))
    findings.add(Severity::kWarning,
                 {"control-character", b.find('\t') != std::string::npos ? "tab" : ""}, place,
                 name + " has a control character inside", "Remove it.", kCdText);
  checkEncoding(text, name, place, findings);
}

/// A field that one track has and others have not: the packs of a field come for all or for none.
void checkComplete(const disc::Sheet& sheet, const NamedField& named, Findings& findings) {
  const auto has = [&](const disc::Track& t) {
    const auto& value = t.fields.*named.field;
    return value && !value->bytes.empty();
  };
  const auto with = std::count_if(sheet.tracks.begin(), sheet.tracks.end(), has);
  const auto all = static_cast<std::ptrdiff_t>(sheet.tracks.size());
  if (with == 0 || with == all) return;
  const auto missing = std::find_if_not(sheet.tracks.begin(), sheet.tracks.end(), has);
  findings.add(Severity::kWarning, "field-not-for-all",
               {missing->line, static_cast<int>(missing - sheet.tracks.begin()) + 1},
               std::string(named.name) + " is given for " + std::to_string(with) + " of " +
                   std::to_string(all) + " tracks; this is the first without",
               "Give it for every track or for none.", kCdText);
}

/// CD-TEXT packs of one field: each text ends in a zero, and the texts follow each other.
size_t packs(const disc::Sheet& sheet, FieldOf field) {
  size_t bytes = 0;
  bool any = false;
  const auto count = [&](const disc::Fields& fields) {
    const auto& value = fields.*field;
    any = any || (value && !value->bytes.empty());
    bytes += (value ? disc::countCharacters(value->bytes) : 0) + 1;
  };
  count(sheet.fields);
  for (const disc::Track& t : sheet.tracks) count(t.fields);
  return any ? disc::packsOfBytes(bytes) : 0;
}

void checkRoom(const disc::Sheet& sheet, Findings& findings) {
  size_t all = 0;
  for (const NamedField& named : kFields) all += packs(sheet, named.field);
  const bool codes =
      sheet.catalog || std::any_of(sheet.tracks.begin(), sheet.tracks.end(),
                                   [](const disc::Track& t) { return bool(t.isrc); });
  if (codes) all += disc::packsOfBytes(14 + 13 * sheet.tracks.size());
  if (all > disc::kMostTextPacks)
    findings.add(Severity::kWarning, "cd-text-full", {},
                 "the texts need " + std::to_string(all) + " CD-TEXT packs; a block holds " +
                     std::to_string(disc::kMostTextPacks),
                 "Shorten titles and names by about " +
                     std::to_string((all - disc::kMostTextPacks) * disc::kTextPackBytes) +
                     " characters in all.",
                 kCdText);
}

}  // namespace

void checkTexts(const Disc& disc, Findings& findings) {
  const disc::Sheet& sheet = disc.sheet;
  for (const NamedField& named : kFields) {
    if (const auto& value = sheet.fields.*named.field) checkText(*value, named.name, 0, findings);
    int number = 0;
    for (const disc::Track& t : sheet.tracks) {
      ++number;
      if (const auto& value = t.fields.*named.field)
        checkText(*value, named.name, number, findings);
    }
    checkComplete(sheet, named, findings);
  }
  for (const disc::Text& remark : sheet.remarks)
    if (disc::encodingOf(remark.bytes) == disc::Encoding::kLatin1)
      checkEncoding(remark, "REM", {remark.line, 0}, findings);
  checkRoom(sheet, findings);
}

}  // namespace velmor::check
