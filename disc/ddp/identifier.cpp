#include "disc/ddp/identifier.h"

#include <algorithm>
#include <cassert>
#include <optional>

#include "disc/ddp/fields.h"

namespace velmor::ddp {

namespace {

constexpr Field kLevelField{0, 8}, kCatalogueField{8, 13}, kMasterStart{21, 17},
    kMasterIdField{38, 48}, kMediumField{87, 2}, kDvdFields{89, 4};
/// Blank, or "O" from some writers.
constexpr Field kOpenField{86, 1};
/// The length of the user's text and the text itself. Some writers have both one byte further on.
constexpr Field kUserLengths[] = {{93, 2}, {94, 2}};
constexpr Field kUserTexts[] = {{95, 33}, {96, 32}};
constexpr Field kUserArea{93, 35};

/// The text whose length stands before it; nothing when neither place has one.
std::optional<std::string> userText(const PacketFields& packet) {
  for (size_t place = 0; place < 2; ++place) {
    const std::string text = packet.text(kUserTexts[place]);
    const auto length = packet.number(kUserLengths[place]);
    if (length && static_cast<size_t>(*length) == text.size()) return text;
  }
  if (packet.blank(kUserArea)) return std::string();
  return std::nullopt;
}

}  // namespace

bool isMasterId(std::string_view text) {
  return text.size() <= kLongestMasterId && !text.ends_with(' ') &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

std::string identifierBytes(const SetLayout& layout) {
  PacketForm packet(kIdentifierBytes);
  packet.putText(kLevelField, kLevel);
  packet.putText(kCatalogueField, layout.catalogue);
  packet.putText(kMasterIdField, layout.master_id);
  packet.putText(kMediumField, kMedium);
  return packet.bytes();
}

Identifier readIdentifier(std::string_view bytes) {
  assert(bytes.size() == kIdentifierBytes);
  const PacketFields packet(bytes);
  const auto user_text = userText(packet);
  Identifier id{packet.text(kLevelField),    packet.text(kCatalogueField),
                packet.text(kMasterIdField), packet.text(kMediumField),
                user_text.value_or(""),      ""};
  if (!user_text) id.unknown = packet.text(kUserArea);
  id.unknown += packet.text(kMasterStart) + packet.text(kDvdFields);
  if (packet.raw(kOpenField) != "O") id.unknown += packet.text(kOpenField);
  return id;
}

}  // namespace velmor::ddp
