#include "disc/ddp/pq_packets.h"

#include <cassert>

#include "disc/ddp/fields.h"
#include "disc/text/words.h"
#include "disc/units/disc_time.h"

namespace velmor::ddp {

namespace {

constexpr Field kPqMarkField{0, 4}, kTrackField{4, 2}, kIndexField{6, 2}, kBeforeTime{8, 2},
    kMinutesField{10, 2}, kSecondsField{12, 2}, kFramesField{14, 2}, kControlField{16, 2},
    kBehindControl{18, 2}, kIsrcField{20, 12}, kPqCatalogueField{32, 13}, kCommentField{45, 19};

/// Bits of the Q channel's control (Red Book).
constexpr unsigned kPreEmphasis = 1, kCopyPermitted = 2, kFourChannels = 8;
constexpr std::string_view kHexadecimal = "0123456789ABCDEF";
/// ADR 1 says that a sector holds a time; the other letter stands for it under SCMS.
constexpr char kTimeMode = '1', kTimeModeScms = 'S';

std::string controlOf(const TrackFlags& flags) {
  const unsigned bits = (flags.pre_emphasis ? kPreEmphasis : 0U) |
                        (flags.copy_permitted ? kCopyPermitted : 0U) |
                        (flags.four_channels ? kFourChannels : 0U);
  return {kHexadecimal[bits], flags.serial_copies ? kTimeModeScms : kTimeMode};
}

std::optional<TrackFlags> flagsIn(std::string_view control) {
  const size_t bits = kHexadecimal.find(control[0]);
  if (bits == std::string_view::npos || (bits & ~(kPreEmphasis | kCopyPermitted | kFourChannels)))
    return std::nullopt;
  if (control[1] != kTimeMode && control[1] != kTimeModeScms) return std::nullopt;
  return TrackFlags{(bits & kPreEmphasis) != 0, (bits & kCopyPermitted) != 0,
                    (bits & kFourChannels) != 0, control[1] == kTimeModeScms};
}

PacketForm pqForm(std::string_view track, int index, int64_t sector, const TrackFlags& flags) {
  assert(sector >= 0 && sector <= kLastTime);
  PacketForm packet(kPqPacketBytes);
  packet.putText(kPqMarkField, kPqMark);
  packet.putText(kTrackField, track);
  packet.putText(kIndexField, disc::twoDigits(index));
  const disc::Msf time = disc::msfOf(sector);
  packet.putText(kMinutesField, disc::twoDigits(time.minutes));
  packet.putText(kSecondsField, disc::twoDigits(time.seconds));
  packet.putText(kFramesField, disc::twoDigits(time.frames));
  packet.putText(kControlField, controlOf(flags));
  return packet;
}

std::string leadInPacket(const SetLayout& layout) {
  PacketForm packet = pqForm(kLeadIn, 0, 0, {});
  packet.putText(kPqCatalogueField, layout.catalogue);
  return packet.bytes();
}

std::string trackPackets(const SetTrack& track, size_t number) {
  std::string bytes;
  for (const IndexPoint& index : track.indices) {
    PacketForm packet = pqForm(disc::twoDigits(static_cast<int64_t>(number)), index.number,
                               index.sector, track.flags);
    if (bytes.empty()) packet.putText(kIsrcField, track.isrc);
    bytes += packet.bytes();
  }
  return bytes;
}

std::optional<int64_t> twoDigitsIn(std::string_view digits) {
  const int number = disc::parseNumber(digits, 2);
  if (number < 0) return std::nullopt;
  return number;
}

std::optional<int64_t> timeIn(const PacketFields& packet) {
  const auto minutes = twoDigitsIn(packet.raw(kMinutesField));
  const auto seconds = twoDigitsIn(packet.raw(kSecondsField));
  const auto frames = twoDigitsIn(packet.raw(kFramesField));
  const std::string_view before = packet.raw(kBeforeTime);
  if (!minutes || !seconds || !frames || (before != "  " && before != "00")) return std::nullopt;
  const disc::Msf time{*minutes, *seconds, *frames};
  if (!time.inRange()) return std::nullopt;
  return time.sectors();
}

}  // namespace

std::string pqBytes(const SetLayout& layout) {
  std::string bytes = leadInPacket(layout);
  for (size_t t = 0; t < layout.tracks.size(); ++t) bytes += trackPackets(layout.tracks[t], t + 1);
  const std::string lead_out = pqForm(kLeadOut, 1, layout.sectors, {}).bytes();
  return bytes + lead_out + lead_out;
}

PqPacket readPqPacket(std::string_view bytes) {
  assert(bytes.size() == kPqPacketBytes);
  const PacketFields fields(bytes);
  PqPacket packet;
  packet.mark = fields.text(kPqMarkField);
  packet.track = fields.text(kTrackField);
  packet.index = twoDigitsIn(fields.raw(kIndexField));
  packet.sector = timeIn(fields);
  packet.flags = flagsIn(fields.raw(kControlField));
  packet.isrc = fields.text(kIsrcField);
  packet.catalogue = fields.text(kPqCatalogueField);
  packet.comment = fields.text(kCommentField);
  packet.unknown = fields.text(kBehindControl);
  return packet;
}

}  // namespace velmor::ddp
