#include "tools/emulated_drive/drive/emulated_drive.h"

#include <algorithm>
#include <utility>

namespace velmor::emulated_drive {

namespace {
constexpr uint8_t kTestUnitReady = 0x00;
constexpr uint8_t kMediaEventNew = 2;
constexpr uint8_t kMediaEventRemoved = 3;
}  // namespace

ByteBuffer cut(ByteBuffer data, std::size_t allocation) {
  data.resize(std::min(data.size(), allocation));
  return data;
}

EmulatedDrive::EmulatedDrive(DriveIdentity identity, AudioSurface& surface)
    : m_identity(std::move(identity)), m_surface(surface) {}

const EmulatedDrive::CommandDescription* EmulatedDrive::find(uint8_t code) {
  static constexpr CommandDescription kCommands[] = {
      {kTestUnitReady, 6, true, false, &EmulatedDrive::testUnitReady},
      {0x01, 6, true, false, &EmulatedDrive::accept},  // REZERO UNIT
      {0x03, 6, false, true, &EmulatedDrive::requestSense},
      {0x12, 6, false, true, &EmulatedDrive::inquiry},
      {0x15, 6, false, false, &EmulatedDrive::modeSelect6},
      {0x1A, 6, false, false, &EmulatedDrive::modeSense6},
      {0x1B, 6, false, false, &EmulatedDrive::startStop},
      {0x1E, 6, false, false, &EmulatedDrive::preventRemoval},
      {0x25, 10, true, false, &EmulatedDrive::readCapacity},
      {0x28, 10, true, false, &EmulatedDrive::readData10},
      {0x2A, 10, true, false, &EmulatedDrive::write10},
      {0x2B, 10, true, false, &EmulatedDrive::accept},  // SEEK
      {0x35, 10, true, false, &EmulatedDrive::synchronizeCache},
      {0x42, 10, true, false, &EmulatedDrive::readSubChannel},
      {0x43, 10, true, false, &EmulatedDrive::readToc},
      {0x46, 10, false, true, &EmulatedDrive::getConfiguration},
      {0x4A, 10, false, true, &EmulatedDrive::getEventStatus},
      {0x51, 10, true, false, &EmulatedDrive::readDiscInformation},
      {0x52, 10, true, false, &EmulatedDrive::readTrackInformation},
      {0x53, 10, true, false, &EmulatedDrive::reserveTrack},
      {0x54, 10, true, false,
       &EmulatedDrive::accept},  // SEND OPC INFORMATION: calibration always succeeds
      {0x55, 10, false, false, &EmulatedDrive::modeSelect10},
      {0x5A, 10, false, false, &EmulatedDrive::modeSense10},
      {0x5B, 10, true, false, &EmulatedDrive::closeTrackSession},
      {0x5C, 10, true, false, &EmulatedDrive::readBufferCapacity},
      {0x5D, 10, true, false, &EmulatedDrive::sendCueSheet},
      {0xA1, 12, true, false, &EmulatedDrive::blank},
      {0xA8, 12, true, false, &EmulatedDrive::readData12},
      {0xAA, 12, true, false, &EmulatedDrive::write12},
      {0xAC, 12, false, false, &EmulatedDrive::getPerformance},
      {0xB6, 12, false, false, &EmulatedDrive::accept},  // SET STREAMING
      {0xB9, 12, true, false, &EmulatedDrive::readCdMsf},
      {0xBB, 12, false, false, &EmulatedDrive::accept},  // SET CD SPEED
      {0xBD, 12, false, false, &EmulatedDrive::mechanismStatus},
      {0xBE, 12, true, false, &EmulatedDrive::readCd},
  };
  const auto* found =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [code](const CommandDescription& entry) { return entry.code == code; });
  return found == std::end(kCommands) ? nullptr : found;
}

Reply EmulatedDrive::execute(ByteView cdb, ByteView data_out) {
  const CommandDescription* entry = cdb.empty() ? nullptr : find(cdb[0]);
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
    if (const std::optional<SenseData> reason = notReady()) {
      return *reason;
    }
  }
  return (this->*entry->command)(cdb, data_out);
}

std::optional<SenseData> EmulatedDrive::notReady() {
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
    SenseData running = kOperationInProgress;
    running.progress = static_cast<uint16_t>(0xFFFF / (m_blanking_polls + 1));
    --m_blanking_polls;
    return running;
  }
  return std::nullopt;
}

Reply EmulatedDrive::testUnitReady(ByteView, ByteView) {
  return {};
}

Reply EmulatedDrive::accept(ByteView, ByteView) {
  return {};
}

Reply EmulatedDrive::requestSense(ByteView cdb, ByteView) {
  SenseData sense = kNoSense;
  if (m_attention) {
    sense = *std::exchange(m_attention, std::nullopt);
  } else if (const std::optional<SenseData> reason = notReady()) {
    sense = *reason;
  }
  const auto bytes = senseBytes(sense);
  return cut(ByteBuffer(bytes.begin(), bytes.end()), cdb[4]);
}

Reply EmulatedDrive::preventRemoval(ByteView cdb, ByteView) {
  if ((cdb[4] & 0xFE) != 0) {
    return kInvalidFieldInCommand;  // persistent prevention is not offered
  }
  m_removal_prevented = (cdb[4] & 1) != 0;
  return {};
}

Reply EmulatedDrive::startStop(ByteView cdb, ByteView) {
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

void EmulatedDrive::load(std::optional<EmulatedDisc> disc, bool tray_open) {
  m_disc = std::move(disc);
  m_tray_open = tray_open;
  m_recording.reset();
  m_blanking_polls = 0;
  m_becoming_ready = m_faults.becoming_ready_polls;
}

void EmulatedDrive::changeMedium(std::optional<EmulatedDisc> disc) {
  m_media_event = disc ? kMediaEventNew : kMediaEventRemoved;
  load(std::move(disc), false);
  m_attention = kMediumChanged;
  ++m_generation;
}

}  // namespace velmor::emulated_drive
