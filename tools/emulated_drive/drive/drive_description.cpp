// What the drive is and can do: INQUIRY, GET CONFIGURATION, mode pages, events, performance.

#include <algorithm>
#include <cassert>

#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

namespace {

constexpr uint16_t kProfileCdRom = 0x0008;
constexpr uint16_t kProfileCdR = 0x0009;
constexpr uint16_t kProfileCdRw = 0x000A;

// What comes before the mode pages: in the six-byte commands and in the ten-byte ones.
constexpr std::size_t kShortModeHeader = 4;
constexpr std::size_t kLongModeHeader = 8;

void copyPadded(const std::string& text, uint8_t* to, std::size_t size) {
  std::fill_n(to, size, uint8_t{' '});
  std::copy_n(text.begin(), std::min(size, text.size()), to);
}

/// A feature descriptor (MMC-5 section 5.2); `data` is a multiple of four bytes.
struct Feature {
  uint16_t code;
  uint8_t version;
  bool persistent;
  bool current;
  ByteBuffer data;
};

void append(ByteBuffer& all, const Feature& feature) {
  assert(feature.data.size() % 4 == 0);
  uint8_t head[4];
  storeBig16(head, feature.code);
  head[2] = static_cast<uint8_t>(feature.version << 2 | (feature.persistent ? 2 : 0) |
                                 (feature.current ? 1 : 0));
  head[3] = static_cast<uint8_t>(feature.data.size());
  all.insert(all.end(), head, head + 4);
  all.insert(all.end(), feature.data.begin(), feature.data.end());
}

ByteBuffer profileList(uint16_t current) {
  ByteBuffer list;
  for (const uint16_t profile : {kProfileCdRw, kProfileCdR, kProfileCdRom}) {
    list.insert(list.end(), {static_cast<uint8_t>(profile >> 8), static_cast<uint8_t>(profile),
                             static_cast<uint8_t>(profile == current ? 1 : 0), 0});
  }
  return list;
}

std::vector<Feature> features(uint16_t profile, bool readable, bool writable) {
  const bool medium = profile != 0;
  return {
      {0x0000, 0, true, true, profileList(profile)},
      {0x0001, 2, true, true, {0, 0, 0, 2, 1, 0, 0, 0}},       // core: ATAPI, device busy events
      {0x0002, 1, true, true, {2, 0, 0, 0}},                   // operational change events
      {0x0003, 0, true, true, {0x29, 0, 0, 0}},                // removable: tray, eject, lock
      {0x0010, 0, false, readable, {0, 0, 8, 0, 0, 1, 1, 0}},  // random readable: 2048 bytes
      {0x001E, 2, false, readable, {1, 0, 0, 0}},              // CD read with CD-TEXT
      {0x002E, 0, false, writable, {0x67, 0, 0x0C, 0x80}},  // SAO, test write, CD-RW, R-W; cue 3200
      {0x0037, 0, false, medium && profile == kProfileCdRw, {0, 0xFF, 0, 0}},  // CD-RW writing
      {0x0100, 0, true, true, {}},                                             // power management
      {0x0105, 1, true, true, {0, 0, 0, 0}},                                   // time-out
      {0x0107, 0, false, medium, {0x0C, 0, 0, 0}},  // speeds: GET PERFORMANCE, page 2A
  };
}

}  // namespace

uint16_t EmulatedDrive::currentProfile() const {
  if (!m_disc || m_tray_open) {
    return 0;
  }
  return m_disc->medium == MediumType::kCdRw ? kProfileCdRw : kProfileCdR;
}

Reply EmulatedDrive::inquiry(ByteView cdb, ByteView) {
  if ((cdb[1] & 1) != 0 || cdb[2] != 0) {
    return kInvalidFieldInCommand;  // no vital product data
  }
  ByteBuffer data(96);
  data[0] = 0x05;  // CD/DVD device
  data[1] = 0x80;  // removable
  data[2] = 0x05;  // SPC-3
  data[3] = 0x02;
  data[4] = static_cast<uint8_t>(data.size() - 5);
  copyPadded(m_identity.vendor, &data[8], 8);
  copyPadded(m_identity.product, &data[16], 16);
  copyPadded(m_identity.revision, &data[32], 4);
  return cut(std::move(data), loadBig16(&cdb[3]));
}

Reply EmulatedDrive::getConfiguration(ByteView cdb, ByteView) {
  const uint8_t which = cdb[1] & 3;
  const uint16_t from = loadBig16(&cdb[2]);
  if (which == 3) {
    return kInvalidFieldInCommand;
  }
  const uint16_t profile = currentProfile();
  const bool complete = profile != 0 && m_disc->state == DiscStatus::kComplete;
  const bool writable = profile != 0 && m_disc->state == DiscStatus::kBlank;
  ByteBuffer data(8);
  for (const Feature& feature : features(profile, complete, writable)) {
    const bool wanted = which == 2   ? feature.code == from
                        : which == 1 ? feature.code >= from && feature.current
                                     : feature.code >= from;
    if (wanted) {
      append(data, feature);
    }
  }
  storeBig32(data.data(), static_cast<uint32_t>(data.size() - 4));
  storeBig16(&data[6], profile);
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::getEventStatus(ByteView cdb, ByteView) {
  constexpr uint8_t kMediaClass = 4;
  if ((cdb[1] & 1) == 0) {
    return kInvalidFieldInCommand;  // only polling
  }
  ByteBuffer data(4);
  data[3] = 1 << kMediaClass;
  if ((cdb[4] & (1 << kMediaClass)) == 0) {
    storeBig16(data.data(), 2);
    data[2] = 0x80;  // none of the asked classes
    return cut(std::move(data), loadBig16(&cdb[7]));
  }
  data.resize(8);
  storeBig16(data.data(), 6);
  data[2] = kMediaClass;
  data[4] = m_media_event;
  data[5] = static_cast<uint8_t>((m_tray_open ? 1 : 0) | (m_disc && !m_tray_open ? 2 : 0));
  m_media_event = 0;
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::getPerformance(ByteView cdb, ByteView) {
  constexpr uint8_t kNominal = 0x00;
  constexpr uint8_t kWriteSpeeds = 0x03;
  const std::size_t room = loadBig16(&cdb[8]);
  const uint32_t end = m_disc ? static_cast<uint32_t>(m_disc->capacity) : 0;
  ByteBuffer data(8);
  if (cdb[10] == kWriteSpeeds) {
    for (const uint32_t speed : kSpeeds) {
      ByteBuffer one(16);
      storeBig32(&one[4], end);
      storeBig32(&one[8], kSpeeds[0]);
      storeBig32(&one[12], speed);
      data.insert(data.end(), one.begin(), one.end());
    }
  } else if (cdb[10] == kNominal && (cdb[1] & 3) == 0) {
    ByteBuffer one(16);
    storeBig32(&one[4], kSpeeds[0]);
    storeBig32(&one[8], end);
    storeBig32(&one[12], kSpeeds[0]);
    data.insert(data.end(), one.begin(), one.end());
    data[4] = (cdb[1] & 4) != 0 ? 2 : 0;  // nominal, for reading or writing
  } else {
    return kInvalidFieldInCommand;
  }
  const std::size_t descriptors = std::min<std::size_t>((data.size() - 8) / 16, room);
  storeBig32(data.data(), static_cast<uint32_t>(data.size() - 4));
  return cut(std::move(data), 8 + 16 * descriptors);
}

Reply EmulatedDrive::mechanismStatus(ByteView cdb, ByteView) {
  ByteBuffer data(8);
  data[1] = m_tray_open ? 0x10 : 0;
  return cut(std::move(data), loadBig16(&cdb[8]));
}

Reply EmulatedDrive::modeSense6(ByteView cdb, ByteView) {
  return senseModes(cdb, kShortModeHeader, cdb[4]);
}

Reply EmulatedDrive::modeSense10(ByteView cdb, ByteView) {
  return senseModes(cdb, kLongModeHeader, loadBig16(&cdb[7]));
}

Reply EmulatedDrive::senseModes(ByteView cdb, std::size_t header, std::size_t room) {
  auto found = m_modes.sense(cdb[2] & 0x3F, cdb[2] >> 6);
  if (const SenseData* refusal = std::get_if<SenseData>(&found)) {
    return *refusal;
  }
  const ByteBuffer& pages = std::get<ByteBuffer>(found);
  ByteBuffer data(header);
  data.insert(data.end(), pages.begin(), pages.end());
  if (header == kShortModeHeader) {
    data[0] = static_cast<uint8_t>(data.size() - 1);
  } else {
    storeBig16(data.data(), static_cast<uint16_t>(data.size() - 2));
  }
  return cut(std::move(data), room);
}

Reply EmulatedDrive::modeSelect6(ByteView cdb, ByteView data_out) {
  return selectModes(cdb, kShortModeHeader, cdb[4], data_out);
}

Reply EmulatedDrive::modeSelect10(ByteView cdb, ByteView data_out) {
  return selectModes(cdb, kLongModeHeader, loadBig16(&cdb[7]), data_out);
}

Reply EmulatedDrive::selectModes(ByteView cdb, std::size_t header, std::size_t length,
                                 ByteView data_out) {
  if ((cdb[1] & 0x11) != 0x10) {
    return kInvalidFieldInCommand;  // pages only, and none can be saved
  }
  if (data_out.size() < length) {
    return kDataPhaseError;
  }
  const ByteView list = data_out.first(length);
  if (list.empty()) {
    return {};
  }
  if (list.size() < header) {
    return kParameterListLength;
  }
  const std::size_t descriptors = header == kShortModeHeader ? list[3] : loadBig16(&list[6]);
  if (list.size() < header + descriptors) {
    return kParameterListLength;
  }
  if (!giveUpRecording()) {
    return kCommandSequence;
  }
  const std::optional<SenseData> refusal = m_modes.select(list.subspan(header + descriptors));
  return refusal ? Reply(*refusal) : Reply();
}

}  // namespace velmor::emulated_drive
