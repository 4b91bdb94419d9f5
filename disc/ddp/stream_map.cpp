#include "disc/ddp/stream_map.h"

#include <cassert>

#include "disc/ddp/fields.h"

namespace velmor::ddp {

namespace {

constexpr Field kMarkField{0, 4}, kTypeField{4, 2}, kBeforeLength{6, 8}, kLengthField{14, 8},
    kStartField{22, 8}, kKindField{30, 8}, kStreamMediumField{38, 2}, kModeField{40, 1},
    kScramblingField{41, 1}, kBeforePregap{42, 4}, kPregapField{46, 4}, kBehindPregap{50, 5},
    kStoredField{55, 2}, kBeforeName{57, 14}, kNameWidthField{71, 3}, kNameField{74, 17},
    kBehindName{91, 37};

PacketForm mapForm(std::string_view type, int64_t length, std::string_view file) {
  PacketForm packet(kMapPacketBytes);
  packet.putText(kMarkField, kMapMark);
  packet.putText(kTypeField, type);
  packet.putNumber(kLengthField, length);
  packet.putNumber(kNameWidthField, kLongestFileName);
  packet.putText(kNameField, file);
  return packet;
}

std::string textPacket(size_t bytes) {
  PacketForm packet = mapForm(kSubcodeStream, static_cast<int64_t>(bytes), kTextFile);
  packet.putText(kKindField, kTextKind);
  packet.putText(kStoredField, "00");
  return packet.bytes();
}

std::string pqPacket(size_t bytes) {
  PacketForm packet = mapForm(kSubcodeStream, static_cast<int64_t>(bytes), kPqFile);
  packet.putText(kKindField, kPqKind);
  return packet.bytes();
}

std::string audioPacket(const SetLayout& layout) {
  PacketForm packet = mapForm(kMainStream, layout.sectors, kAudioFile);
  packet.putText(kStreamMediumField, kAudioKind);
  packet.putText(kModeField, "7");
  packet.putText(kScramblingField, "1");
  packet.putNumber(kPregapField, layout.tracks.front().at(1));
  return packet.bytes();
}

}  // namespace

std::string mapBytes(const SetLayout& layout, size_t text_bytes, size_t pq_bytes) {
  return (text_bytes > 0 ? textPacket(text_bytes) : std::string()) + pqPacket(pq_bytes) +
         audioPacket(layout);
}

StreamPacket readStream(std::string_view bytes) {
  assert(bytes.size() == kMapPacketBytes);
  const PacketFields packet(bytes);
  StreamPacket stream;
  stream.mark = packet.text(kMarkField);
  stream.type = packet.text(kTypeField);
  stream.length = packet.number(kLengthField);
  stream.start = packet.number(kStartField);
  stream.start_blank = packet.blank(kStartField);
  stream.kind = packet.text(kKindField);
  stream.medium = packet.text(kStreamMediumField);
  stream.mode = packet.text(kModeField);
  stream.scrambling = packet.text(kScramblingField);
  stream.pregap = packet.number(kPregapField);
  stream.pregap_blank = packet.blank(kPregapField);
  stream.stored = packet.text(kStoredField);
  stream.name_width = packet.number(kNameWidthField);
  stream.file = packet.text(kNameField);
  for (const Field field : {kBeforeLength, kBeforePregap, kBehindPregap, kBeforeName, kBehindName})
    stream.unknown += packet.text(field);
  return stream;
}

}  // namespace velmor::ddp
