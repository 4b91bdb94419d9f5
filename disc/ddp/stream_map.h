// DDPMS: one packet for each stream of a set, which names its file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "disc/ddp/set_layout.h"

namespace velmor::ddp {

inline constexpr size_t kMapPacketBytes = 128;
inline constexpr size_t kLongestFileName = 17;
inline constexpr std::string_view kMapMark = "VVVM";
inline constexpr std::string_view kSubcodeStream = "S0", kMainStream = "D0";
inline constexpr std::string_view kPqKind = "PQ DESCR", kTextKind = "CDTEXT", kAudioKind = "DA";

/// As it stands in the packet; texts without the blanks behind them, numbers that are none absent.
struct StreamPacket {
  std::string mark, type;
  std::optional<int64_t> length;  ///< sectors of a main stream, bytes of a subcode stream
  std::optional<int64_t> start;   ///< sector
  bool start_blank = true;
  std::string kind;               ///< of subcode, `kPqKind` or `kTextKind`
  std::string medium, mode;       ///< of a main stream: `kAudioKind`, "7" (whole sectors) or "0"
  std::string scrambling;         ///< "1" or "0"
  std::optional<int64_t> pregap;  ///< of track 1 in sectors, on a main stream
  bool pregap_blank = true;
  std::string stored;  ///< "00" or blank
  std::optional<int64_t> name_width;
  std::string file;
  std::string unknown;  ///< what stands where nothing should, if anything does
};

/// The map of our sets: CD-TEXT where there is any, PQ, audio. `text_bytes` and `pq_bytes` are the
/// lengths of their files.
std::string mapBytes(const SetLayout& layout, size_t text_bytes, size_t pq_bytes);
/// `bytes` has `kMapPacketBytes`.
StreamPacket readStream(std::string_view bytes);

}  // namespace velmor::ddp
