// Putting something on the disc: session-at-once from a cue sheet, test writes, blanking.

#include <algorithm>

#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

namespace {
constexpr uint32_t kBufferBytes = 2048 * 1024;
}  // namespace

Reply EmulatedDrive::sendCueSheet(ByteView cdb, ByteView data_out) {
  if (m_disc->state != DiscStatus::kBlank) {
    return kWriteProtected;
  }
  if (m_modes.writeType() != kSessionAtOnce || !giveUpRecording()) {
    return kCommandSequence;
  }
  const std::size_t length = loadBig24(&cdb[6]);
  if (data_out.size() < length) {
    return kDataPhaseError;
  }
  auto read = readSessionCueSheet(data_out.first(length), *m_disc);
  if (const SenseData* refusal = std::get_if<SenseData>(&read)) {
    return *refusal;
  }
  Recording recording;
  recording.sheet = std::move(std::get<SessionCueSheet>(read));
  recording.next = recording.sheet.regions.front().start;
  recording.test = m_modes.testWrite();
  m_recording = std::move(recording);
  skipGeneratedRegions();
  return {};
}

bool EmulatedDrive::giveUpRecording() {
  if (m_recording && !m_recording->flushed) {
    return false;
  }
  m_recording.reset();
  return true;
}

void EmulatedDrive::skipGeneratedRegions() {
  const CueRegion* region = m_recording->sheet.regionAt(m_recording->next);
  while (region != nullptr && region->block_bytes == 0) {
    m_recording->next = region->end;
    region = m_recording->sheet.regionAt(m_recording->next);
  }
}

Reply EmulatedDrive::write10(ByteView cdb, ByteView data_out) {
  return write(static_cast<int32_t>(loadBig32(&cdb[2])), loadBig16(&cdb[7]), data_out);
}

Reply EmulatedDrive::write12(ByteView cdb, ByteView data_out) {
  return write(static_cast<int32_t>(loadBig32(&cdb[2])), loadBig32(&cdb[6]), data_out);
}

Reply EmulatedDrive::write(int32_t lba, uint32_t count, ByteView data_out) {
  if (!m_recording) {
    return m_disc->state == DiscStatus::kBlank ? kCommandSequence : kWriteProtected;
  }
  if (lba != m_recording->next) {
    return kInvalidAddressForWrite;
  }
  if (count == 0) {
    return {};
  }
  const CueRegion* region = m_recording->sheet.regionAt(lba);
  const int32_t session_end = m_recording->sheet.lead_out;
  if (region == nullptr || count > static_cast<uint32_t>(session_end - lba)) {
    return kAddressOutOfRange;
  }
  // One command carries blocks of one size, so it may run on only where the size stays the same.
  const int32_t end = lba + static_cast<int32_t>(count);
  for (const CueRegion* next = region; next != nullptr && next->end < end;) {
    next = m_recording->sheet.regionAt(next->end);
    if (next == nullptr || next->block_bytes != region->block_bytes) {
      return kInvalidFieldInCommand;
    }
  }
  if (data_out.size() != static_cast<std::size_t>(region->block_bytes) * count) {
    return kDataPhaseError;
  }
  Reply reply = writeMainData(lba, count, *region, data_out);
  reply.delay = m_faults.write_delay;
  return reply;
}

Reply EmulatedDrive::writeMainData(int32_t lba, uint32_t count, const CueRegion& region,
                                   ByteView data_out) {
  const int32_t end = lba + static_cast<int32_t>(count);
  const bool test = m_recording->test;
  if (!test) {
    markBegun();
  }
  if (!region.mainData()) {
    m_recording->cd_text.take(data_out);
  } else {
    ByteBuffer audio;
    const auto block = static_cast<std::size_t>(region.block_bytes);
    for (std::size_t at = 0; at < data_out.size(); at += block) {
      const ByteView sector = data_out.subspan(at, kSectorBytes);
      audio.insert(audio.end(), sector.begin(), sector.end());
    }
    const std::optional<int32_t> bad = m_faults.write_error_at;
    const bool spoiled = bad && *bad >= lba && *bad < end;
    if (!test && (spoiled || !m_surface.write(lba, audio))) {
      m_recording.reset();
      SenseData sense = kWriteError;
      sense.sector = spoiled ? *bad : lba;
      return sense;
    }
  }
  m_recording->flushed = false;
  m_recording->next = end;
  skipGeneratedRegions();
  return {};
}

void EmulatedDrive::markBegun() {
  if (!m_recording->begun) {
    m_recording->begun = true;
    m_disc->state = DiscStatus::kIncomplete;
    ++m_generation;
  }
}

Reply EmulatedDrive::synchronizeCache(ByteView, ByteView) {
  if (!m_recording) {
    return {};
  }
  m_recording->flushed = true;
  if (m_recording->next < m_recording->sheet.lead_out) {
    return {};  // the session stays open until its last sector has come
  }
  if (!m_recording->test) {
    closeSession();
  }
  m_recording.reset();
  return {};
}

void EmulatedDrive::closeSession() {
  m_disc->state = DiscStatus::kComplete;
  m_disc->tracks = m_recording->sheet.tracks;
  m_disc->lead_out = m_recording->sheet.lead_out;
  m_disc->mcn = m_recording->sheet.mcn;
  m_disc->cd_text = m_recording->cd_text.packs();
  ++m_generation;
}

Reply EmulatedDrive::closeTrackSession(ByteView cdb, ByteView) {
  constexpr uint8_t kTrack = 1;
  constexpr uint8_t kSession = 2;
  const uint8_t function = cdb[2] & 7;
  if (function != kTrack && function != kSession) {
    return kInvalidFieldInCommand;
  }
  // Session-at-once closes by itself; a session that is not whole cannot be closed by force.
  return m_disc->state == DiscStatus::kComplete ? Reply() : Reply(kIncompleteTrackInSession);
}

Reply EmulatedDrive::reserveTrack(ByteView, ByteView) {
  return kCommandSequence;  // reservations belong to track-at-once
}

Reply EmulatedDrive::readBufferCapacity(ByteView cdb, ByteView) {
  ByteBuffer data(12);
  storeBig16(data.data(), 10);
  storeBig32(&data[4], kBufferBytes);
  storeBig32(&data[8], kBufferBytes);  // every WRITE has reached the disc when it returns
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::blank(ByteView cdb, ByteView) {
  constexpr uint8_t kWholeDisc = 0;
  constexpr uint8_t kMinimal = 1;
  constexpr int kPolls = 2;
  const uint8_t type = cdb[1] & 7;
  const bool immediate = (cdb[1] & 0x10) != 0;
  if (type != kWholeDisc && type != kMinimal) {
    return kInvalidFieldInCommand;
  }
  if (m_disc->medium != MediumType::kCdRw) {
    return kMediumNotErasable;
  }
  if (!giveUpRecording()) {
    return kCommandSequence;
  }
  if (!m_surface.erase()) {
    return kWriteError;
  }
  m_disc->erase();
  m_blanking_polls = immediate ? kPolls : 0;
  ++m_generation;
  return {};
}

}  // namespace velmor::emulated_drive
