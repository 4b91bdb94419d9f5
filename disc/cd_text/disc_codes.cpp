#include "disc/cd_text/disc_codes.h"

#include "disc/codes/catalogue_number.h"
#include "disc/codes/isrc.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::disc {

DiscCode mediaCatalogNumber(std::string_view text) {
  const std::string code = bareCatalogueNumber(text);
  if (code.empty() || isCatalogueNumber(code)) return {code, ""};
  if (code.size() != 13 || !allDigits(code))
    return {"",
            "the catalog number " + inQuotes(text) + " does not have 13 digits and is left out"};
  return {code, "the check digit of the catalog number " + code + " should be " +
                    eanCheckDigit(code) + "; it is written as given"};
}

DiscCode recordingCode(std::string_view text) {
  if (const auto code = normalisedIsrc(text)) return {*code, ""};
  if (bareIsrc(text).empty()) return {};
  return {"", "the ISRC " + inQuotes(text) +
                  " does not have the form CCXXXYYNNNNN (two letters, three letters or digits, "
                  "seven digits) and is left out"};
}

}  // namespace velmor::disc
