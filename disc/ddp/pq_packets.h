// The PQ descriptor: one packet for each index of the disc, with lead-in and lead-out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "disc/ddp/set_layout.h"

namespace velmor::ddp {

inline constexpr size_t kPqPacketBytes = 64;
inline constexpr std::string_view kPqMark = "VVVS";
inline constexpr std::string_view kLeadIn = "00", kLeadOut = "AA";

/// As it stands in the packet; texts without the blanks behind them.
struct PqPacket {
  std::string mark;
  std::string track;                ///< "00" lead-in, "01" to "99", "AA" lead-out
  std::optional<int64_t> index;     ///< absent: no two digits
  std::optional<int64_t> sector;    ///< absent: no time
  std::optional<TrackFlags> flags;  ///< absent: not a control and "1" or "S"
  std::string isrc, catalogue, comment;
  std::string unknown;  ///< what stands where nothing should, if anything does
};

/// The descriptor of our sets. Every time is at most `kLastTime`.
std::string pqBytes(const SetLayout& layout);
/// `bytes` has `kPqPacketBytes`.
PqPacket readPqPacket(std::string_view bytes);

}  // namespace velmor::ddp
