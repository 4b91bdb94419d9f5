// The codes that a pressing plant goes by.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace velmor::render {

/// An ISRC without its dashes and in capitals, or nothing when it has not the form of ISO 3901: two
/// letters, three letters or digits, seven digits.
std::optional<std::string> normalisedIsrc(std::string_view text);

/// What is wrong with a catalogue number (13 digits, the last one an EAN-13 check digit; GS1), as
/// the end of a sentence; nothing when it is right.
std::optional<std::string> catalogueFault(std::string_view text);

}  // namespace velmor::render
