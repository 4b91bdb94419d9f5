#include "tools/emulated_drive/drive/drive.h"

#include <algorithm>
#include <utility>

namespace velmor::recorder {

namespace {
constexpr uint8_t kTestUnitReady = 0x00;
constexpr uint8_t kMediaEventNew = 2;
constexpr uint8_t kMediaEventRemoved = 3;
}  // namespace

Bytes cut(Bytes data, std::size_t allocation) {
  data.resize(std::min(data.size(), allocation));
  return data;
}

Drive::Drive(Identity identity, AudioSurface& surface)
    : m_identity(std::move(identity)), m_surface(surface) {}

const Drive::Entry* Drive::find(uint8_t code) {
  static constexpr Entry kCommands[] = {
      {kTestUnitReady, 6, true, false, &Drive::testUnitReady},
      {0x01, 6, true, false, &Drive::accept},  // REZERO UNIT
      {0x03, 6, false, true, &Drive::requestSense},
      {0x12, 6, false, true, &Drive::inquiry},
      {0x15, 6, false, false, &Drive::modeSelect6},
      {0x1A, 6, false, false, &Drive::modeSense6},
      {0x1B, 6, false, false, &Drive::startStop},
      {0x1E, 6, false, false, &Drive::preventRemoval},
      {0x25, 10, true, false, &Drive::readCapacity},
      {0x28, 10, true, false, &Drive::readData10},
      {0x2A, 10, true, false, &Drive::write10},
      {0x2B, 10, true, false, &Drive::accept},  // SEEK
      {0x35, 10, true, false, &Drive::synchronizeCache},
      {0x42, 10, true, false, &Drive::readSubChannel},
      {0x43, 10, true, false, &Drive::readToc},
      {0x46, 10, false, true, &Drive::getConfiguration},
      {0x4A, 10, false, true, &Drive::getEventStatus},
      {0x51, 10, true, false, &Drive::readDiscInformation},
      {0x52, 10, true, false, &Drive::readTrackInformation},
      {0x53, 10, true, false, &Drive::reserveTrack},
      {0x54, 10, true, false, &Drive::accept},  // SEND OPC INFORMATION: calibration always succeeds
      {0x55, 10, false, false, &Drive::modeSelect10},
      {0x5A, 10, false, false, &Drive::modeSense10},
      {0x5B, 10, true, false, &Drive::closeTrackSession},
      {0x5C, 10, true, false, &Drive::readBufferCapacity},
      {0x5D, 10, true, false, &Drive::sendCueSheet},
      {0xA1, 12, true, false, &Drive::blank},
      {0xA8, 12, true, false, &Drive::readData12},
      {0xAA, 12, true, false, &Drive::write12},
      {0xAC, 12, false, false, &Drive::getPerformance},
      {0xB6, 12, false, false, &Drive::accept},  // SET STREAMING
      {0xB9, 12, true, false, &Drive::readCdMsf},
      {0xBB, 12, false, false, &Drive::accept},  // SET CD SPEED
      {0xBD, 12, false, false, &Drive::mechanismStatus},
      {0xBE, 12, true, false, &Drive::readCd},
  };
  const auto* found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                   [code](const Entry& entry) { return entry.code == code; });
  return found == std::end(kCommands) ? nullptr : found;
}

Reply Drive::execute(ByteView cdb, ByteView data_out) {
  const Entry* entry = cdb.empty() ? nullptr : find(cdb[0]);
  if (entry == nullptr) {
    return kUnknownCommand;
  }
  if (cdb.size() < entry->bytes) {
    return kInvalidFieldInCommand;
  }
  if (m_attention && !entry->despite_attention) {
    return *std::exchange(m_attention, std::nullopt);
  }
  if (entry->needs_medium) {
    if (const std::optional<Sense> reason = notReady()) {
      return *reason;
    }
  }
  return (this->*entry->command)(cdb, data_out);
}

std::optional<Sense> Drive::notReady() {
  if (m_tray_open) {
    return kNoMediumTrayOpen;
  }
  if (!m_disc) {
    return kNoMediumTrayClosed;
  }
  if (m_becoming_ready > 0) {
    --m_becoming_ready;
    return kBecomingReady;
  }
  if (m_blanking_polls > 0) {
    Sense running = kOperationInProgress;
    running.progress = static_cast<uint16_t>(0xFFFF / (m_blanking_polls + 1));
    --m_blanking_polls;
    return running;
  }
  return std::nullopt;
}

Reply Drive::testUnitReady(ByteView, ByteView) {
  return {};
}

Reply Drive::accept(ByteView, ByteView) {
  return {};
}

Reply Drive::requestSense(ByteView cdb, ByteView) {
  Sense sense = kNoSense;
  if (m_attention) {
    sense = *std::exchange(m_attention, std::nullopt);
  } else if (const std::optional<Sense> reason = notReady()) {
    sense = *reason;
  }
  const auto bytes = senseBytes(sense);
  return cut(Bytes(bytes.begin(), bytes.end()), cdb[4]);
}

Reply Drive::preventRemoval(ByteView cdb, ByteView) {
  if ((cdb[4] & 0xFE) != 0) {
    return kInvalidFieldInCommand;  // persistent prevention is not offered
  }
  m_removal_prevented = (cdb[4] & 1) != 0;
  return {};
}

Reply Drive::startStop(ByteView cdb, ByteView) {
  const bool load_or_eject = (cdb[4] & 2) != 0;
  const bool start = (cdb[4] & 1) != 0;
  const bool power_change = (cdb[4] & 0xF0) != 0;
  if (power_change || !load_or_eject) {
    return {};  // spinning up and down, sleeping: nothing that the host could see
  }
  if (!start && (m_removal_prevented || !giveUpRecording())) {
    return kRemovalPrevented;
  }
  if (start == m_tray_open) {
    m_tray_open = !start;
    ++m_generation;
    m_media_event = start ? kMediaEventNew : kMediaEventRemoved;
    if (start && m_disc) {
      m_attention = kMediumChanged;
      m_becoming_ready = m_faults.becoming_ready_polls;
    }
  }
  return {};
}

void Drive::load(std::optional<Disc> disc, bool tray_open) {
  m_disc = std::move(disc);
  m_tray_open = tray_open;
  m_recording.reset();
  m_blanking_polls = 0;
  m_becoming_ready = m_faults.becoming_ready_polls;
}

void Drive::changeMedium(std::optional<Disc> disc) {
  m_media_event = disc ? kMediaEventNew : kMediaEventRemoved;
  load(std::move(disc), false);
  m_attention = kMediumChanged;
  ++m_generation;
}

}  // namespace velmor::recorder
