#include <map>

#include "check/rules/rules.h"
#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

constexpr std::string_view kGs1 = "GS1 (EAN-13)";
constexpr std::string_view kIso3901 = "ISO 3901";

constexpr const char* kTakeFromBarCode = "Take the number from the label's EAN-13 bar code.";

/// Codes are shown in messages; what is far too long for one is not.
std::string shown(const std::string& code) {
  return disc::inQuotes(code.substr(0, 40));
}

void checkCatalog(const disc::Text& catalog, Findings& findings) {
  const Place& place{catalog.line, 0};
  const std::string& code = catalog.bytes;
  if (catalog.quoted)
    findings.addForReaders("catalog-quoted", place, "CATALOG stands in quotes",
                           "Write the 13 digits without quotes (--portable does).");
  if (code.size() == 12 && disc::allDigits(code)) {
    const bool is_upc = disc::isCatalogueNumber('0' + code);
    findings.add(Severity::kError, "catalog-12-digits", place,
                 "CATALOG " + shown(code) + " has 12 digits: it is " +
                     (is_upc ? "a UPC" : "no UPC either, by its check digit"),
                 is_upc ? "Put a 0 before it: 0" + code + "." : kTakeFromBarCode, kGs1);
  } else if (code.size() != 13 || !disc::allDigits(code)) {
    findings.add(Severity::kError, "catalog-form", place,
                 "CATALOG " + shown(code) + " is not 13 digits", kTakeFromBarCode, kGs1);
  } else if (!disc::isCatalogueNumber(code)) {
    findings.add(Severity::kError, "catalog-check-digit", place,
                 "CATALOG " + shown(code) + " has a wrong check digit; no reader notices",
                 std::string("Compare it with the bar code; for these twelve digits the last one "
                             "would be ") +
                     disc::eanCheckDigit(code) + ".",
                 kGs1);
  }
}

void checkIsrc(const disc::Text& isrc, int track, Findings& findings) {
  const Place& place{isrc.line, track};
  const std::string& code = isrc.bytes;
  if (isrc.quoted && !code.empty())
    findings.addForReaders("isrc-quoted", place, "ISRC stands in quotes",
                           "Write the code without quotes (--portable does).");
  if (disc::isIsrc(code)) return;
  const std::string bare = disc::bareIsrc(code);
  if (code.empty()) {
    findings.add(Severity::kError, "empty-isrc", place, "ISRC is empty",
                 "Give the code or remove the line.", kIso3901);
  } else if (!disc::isIsrc(bare)) {
    findings.add(Severity::kError, "isrc-form", place, "ISRC " + shown(code) + " is none",
                 "Two letters, three letters or digits, seven digits: ask the owner of the "
                 "recording.",
                 kIso3901);
  } else if (bare.size() != code.size()) {
    findings.add(Severity::kError, "isrc-dashes", place,
                 "ISRC " + shown(code) + " has " +
                     (code.find('-') != std::string::npos ? "dashes" : "blanks") +
                     ", which are for people only",
                 "Write " + bare + ".", kIso3901);
  } else {
    findings.add(Severity::kError, "isrc-lower-case", place,
                 "ISRC " + shown(code) + " has small letters", "Write " + bare + ".", kIso3901);
  }
}

}  // namespace

void checkCodes(const Disc& disc, Findings& findings) {
  if (disc.sheet.catalog) checkCatalog(*disc.sheet.catalog, findings);
  std::map<std::string, int> seen;
  int number = 0;
  for (const disc::Track& t : disc.sheet.tracks) {
    ++number;
    if (!t.isrc) continue;
    checkIsrc(*t.isrc, number, findings);
    if (t.isrc->bytes.empty()) continue;
    const auto [first, isNew] = seen.emplace(disc::bareIsrc(t.isrc->bytes), number);
    if (!isNew)
      findings.add(Severity::kError, "isrc-twice", {t.isrc->line, number},
                   "ISRC " + shown(t.isrc->bytes) + " is that of track " +
                       std::to_string(first->second) + " too",
                   "Each recording has its own code: find out which track it belongs to.",
                   kIso3901);
  }
}

}  // namespace velmor::check
