// The codes of the Q channel: a disc's Media Catalog Number, a track's ISRC.
#pragma once

#include <string>
#include <string_view>

namespace velmor::disc {

struct DiscCode {
  std::string code;     ///< as it goes onto the disc; empty: none
  std::string warning;  ///< what is doubtful about it, or why it is left out; empty: nothing
};

/// 13 digits with an EAN-13 check digit (GS1); a UPC of 12 digits takes a leading 0. A wrong check
/// digit is warned of and written as given.
DiscCode mediaCatalogNumber(std::string_view text);

/// 12 characters, country, registrant, year, designation (ISO 3901); dashes, blanks and lower case
/// are presentation.
DiscCode recordingCode(std::string_view text);

}  // namespace velmor::disc
