// Putting something on the disc: session-at-once from a cue sheet, test writes, blanking.

#include <algorithm>

#include "tools/emulated_drive/drive/drive.h"

namespace velmor::recorder {

namespace {
constexpr uint32_t kBufferBytes = 2048 * 1024;
}  // namespace

Reply Drive::sendCueSheet(ByteView cdb, ByteView dataOut) {
  if (disc_->state != DiscState::blank) {
    return kWriteProtected;
  }
  if (modes_.writeType() != kSessionAtOnce || !giveUpRecording()) {
    return kCommandSequence;
  }
  const std::size_t length = loadBig24(&cdb[6]);
  if (dataOut.size() < length) {
    return kDataPhaseError;
  }
  auto read = readCueSheet(dataOut.first(length), *disc_);
  if (const Sense* refusal = std::get_if<Sense>(&read)) {
    return *refusal;
  }
  Recording recording;
  recording.sheet = std::move(std::get<CueSheet>(read));
  recording.next = recording.sheet.regions.front().start;
  recording.test = modes_.testWrite();
  recording_ = std::move(recording);
  skipGeneratedRegions();
  return {};
}

bool Drive::giveUpRecording() {
  if (recording_ && !recording_->flushed) {
    return false;
  }
  recording_.reset();
  return true;
}

void Drive::skipGeneratedRegions() {
  const CueRegion* region = recording_->sheet.regionAt(recording_->next);
  while (region != nullptr && region->blockBytes == 0) {
    recording_->next = region->end;
    region = recording_->sheet.regionAt(recording_->next);
  }
}

Reply Drive::write10(ByteView cdb, ByteView dataOut) {
  return write(static_cast<int32_t>(loadBig32(&cdb[2])), loadBig16(&cdb[7]), dataOut);
}

Reply Drive::write12(ByteView cdb, ByteView dataOut) {
  return write(static_cast<int32_t>(loadBig32(&cdb[2])), loadBig32(&cdb[6]), dataOut);
}

Reply Drive::write(int32_t lba, uint32_t count, ByteView dataOut) {
  if (!recording_) {
    return disc_->state == DiscState::blank ? kCommandSequence : kWriteProtected;
  }
  if (lba != recording_->next) {
    return kInvalidAddressForWrite;
  }
  if (count == 0) {
    return {};
  }
  const CueRegion* region = recording_->sheet.regionAt(lba);
  const int32_t sessionEnd = recording_->sheet.leadOut;
  if (region == nullptr || count > static_cast<uint32_t>(sessionEnd - lba)) {
    return kAddressOutOfRange;
  }
  // One command carries blocks of one size, so it may run on only where the size stays the same.
  const int32_t end = lba + static_cast<int32_t>(count);
  for (const CueRegion* next = region; next != nullptr && next->end < end;) {
    next = recording_->sheet.regionAt(next->end);
    if (next == nullptr || next->blockBytes != region->blockBytes) {
      return kInvalidFieldInCommand;
    }
  }
  if (dataOut.size() != static_cast<std::size_t>(region->blockBytes) * count) {
    return kDataPhaseError;
  }
  Reply reply = writeMainData(lba, count, *region, dataOut);
  reply.delay = faults_.writeDelay;
  return reply;
}

Reply Drive::writeMainData(int32_t lba, uint32_t count, const CueRegion& region, ByteView dataOut) {
  const int32_t end = lba + static_cast<int32_t>(count);
  const bool test = recording_->test;
  if (!test) {
    markBegun();
  }
  if (!region.mainData()) {
    recording_->cdText.take(dataOut);
  } else {
    Bytes audio;
    const auto block = static_cast<std::size_t>(region.blockBytes);
    for (std::size_t at = 0; at < dataOut.size(); at += block) {
      const ByteView sector = dataOut.subspan(at, kSectorBytes);
      audio.insert(audio.end(), sector.begin(), sector.end());
    }
    const std::optional<int32_t> bad = faults_.writeErrorAt;
    const bool spoiled = bad && *bad >= lba && *bad < end;
    if (!test && (spoiled || !surface_.write(lba, audio))) {
      recording_.reset();
      Sense sense = kWriteError;
      sense.sector = spoiled ? *bad : lba;
      return sense;
    }
  }
  recording_->flushed = false;
  recording_->next = end;
  skipGeneratedRegions();
  return {};
}

void Drive::markBegun() {
  if (!recording_->begun) {
    recording_->begun = true;
    disc_->state = DiscState::incomplete;
    ++generation_;
  }
}

Reply Drive::synchronizeCache(ByteView, ByteView) {
  if (!recording_) {
    return {};
  }
  recording_->flushed = true;
  if (recording_->next < recording_->sheet.leadOut) {
    return {};  // the session stays open until its last sector has come
  }
  if (!recording_->test) {
    closeSession();
  }
  recording_.reset();
  return {};
}

void Drive::closeSession() {
  disc_->state = DiscState::complete;
  disc_->tracks = recording_->sheet.tracks;
  disc_->leadOut = recording_->sheet.leadOut;
  disc_->mcn = recording_->sheet.mcn;
  disc_->cdText = recording_->cdText.packs();
  ++generation_;
}

Reply Drive::closeTrackSession(ByteView cdb, ByteView) {
  constexpr uint8_t kTrack = 1;
  constexpr uint8_t kSession = 2;
  const uint8_t function = cdb[2] & 7;
  if (function != kTrack && function != kSession) {
    return kInvalidFieldInCommand;
  }
  // Session-at-once closes by itself; a session that is not whole cannot be closed by force.
  return disc_->state == DiscState::complete ? Reply() : Reply(kIncompleteTrackInSession);
}

Reply Drive::reserveTrack(ByteView, ByteView) {
  return kCommandSequence;  // reservations belong to track-at-once
}

Reply Drive::readBufferCapacity(ByteView cdb, ByteView) {
  Bytes data(12);
  storeBig16(data.data(), 10);
  storeBig32(&data[4], kBufferBytes);
  storeBig32(&data[8], kBufferBytes);  // every WRITE has reached the disc when it returns
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply Drive::blank(ByteView cdb, ByteView) {
  constexpr uint8_t kWholeDisc = 0;
  constexpr uint8_t kMinimal = 1;
  constexpr int kPolls = 2;
  const uint8_t type = cdb[1] & 7;
  const bool immediate = (cdb[1] & 0x10) != 0;
  if (type != kWholeDisc && type != kMinimal) {
    return kInvalidFieldInCommand;
  }
  if (disc_->medium != Medium::cdRw) {
    return kMediumNotErasable;
  }
  if (!giveUpRecording()) {
    return kCommandSequence;
  }
  if (!surface_.erase()) {
    return kWriteError;
  }
  disc_->erase();
  blankingPolls_ = immediate ? kPolls : 0;
  ++generation_;
  return {};
}

}  // namespace velmor::recorder
