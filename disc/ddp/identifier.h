// DDPID: the packet that identifies a master.
#pragma once

#include <string>
#include <string_view>

#include "disc/ddp/set_layout.h"

namespace velmor::ddp {

inline constexpr size_t kIdentifierBytes = 128;
/// The level of every set, from which its rules come.
inline constexpr std::string_view kLevel = "DDP 2.00";
inline constexpr std::string_view kMedium = "CD";

/// As it stands in the packet; texts without the blanks behind them.
struct Identifier {
  std::string level, catalogue, master_id, medium, user_text;
  std::string unknown;  ///< what stands where nothing should, if anything does
};

/// Up to `kLongestMasterId` printable ASCII characters, blanks among them but for the last.
bool isMasterId(std::string_view text);

std::string identifierBytes(const SetLayout& layout);
/// `bytes` has `kIdentifierBytes`.
Identifier readIdentifier(std::string_view bytes);

}  // namespace velmor::ddp
