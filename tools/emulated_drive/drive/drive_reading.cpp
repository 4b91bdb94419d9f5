// What is on the disc: information commands, table of contents, sub-channels, audio.

#include <algorithm>

#include "tools/emulated_drive/disc/q_frame.h"
#include "tools/emulated_drive/disc/toc_answers.h"
#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

namespace {

constexpr uint8_t kUnknownType = 0xFF;

/// Where "no such address" is told.
void storeNoTime(uint8_t* to) {
  std::fill(to, to + 4, uint8_t{0xFF});
}

void storeTime(uint8_t* to, int32_t lba) {
  const MsfAddress msf = msfOf(lba);
  to[0] = 0;
  to[1] = msf.minute;
  to[2] = msf.second;
  to[3] = msf.frame;
}

/// The track a READ TRACK INFORMATION command means: a number, or nothing. The track after the last
/// (and FFh) is the one still to be written.
std::optional<int> trackAsked(const EmulatedDisc& disc, uint8_t address_type, uint32_t address) {
  constexpr uint32_t kInvisible = 0xFF;
  const bool complete = disc.state == DiscStatus::kComplete;
  switch (address_type) {
    case 0: {  // the track that holds a sector
      const int32_t lba = static_cast<int32_t>(address);
      if (!complete) {
        return lba >= -kFirstPregap && lba < disc.capacity ? std::optional<int>(1) : std::nullopt;
      }
      const RecordedTrack* track = disc.trackAt(lba);
      return track != nullptr ? std::optional<int>(track->number) : std::nullopt;
    }
    case 1:
      if (!complete) {
        return address == 1 || address == kInvisible ? std::optional<int>(1) : std::nullopt;
      }
      for (const RecordedTrack& track : disc.tracks) {
        if (static_cast<uint32_t>(track.number) == address) {
          return track.number;
        }
      }
      return std::nullopt;
    case 2:  // the first track of a session
      if (address != 1) {
        return std::nullopt;
      }
      return complete ? disc.tracks.front().number : 1;
    default:
      return std::nullopt;
  }
}

/// 96 bytes, one bit of each sub-channel in every byte: P and Q as given, R to W empty.
ByteBuffer interleaved(const std::array<uint8_t, 16>& q) {
  ByteBuffer bytes(96);
  const bool pause = (q.back() & kPauseFlag) != 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const int bit = q[i / 8] >> (7 - i % 8) & 1;
    bytes[i] = static_cast<uint8_t>((pause ? 0x80 : 0) | (bit != 0 ? 0x40 : 0));
  }
  return bytes;
}

/// What READ CD adds to the sector at `lba` for its sub-channel selection.
ByteBuffer subChannelOf(const EmulatedDisc& disc, int32_t lba, uint8_t selection) {
  constexpr uint8_t kNone = 0;
  constexpr uint8_t kRaw = 1;
  constexpr uint8_t kFormattedQ = 2;
  if (selection == kNone) {
    return {};
  }
  const std::array<uint8_t, 16> q = qFrameOf(disc, lba);
  if (selection == kRaw) {
    return interleaved(q);
  }
  // R to W carry nothing in the programme area.
  return selection == kFormattedQ ? ByteBuffer(q.begin(), q.end()) : ByteBuffer(96);
}

}  // namespace

Reply EmulatedDrive::readDiscInformation(ByteView cdb, ByteView) {
  if ((cdb[1] & 7) != 0) {
    return kInvalidFieldInCommand;  // track and POW resources are not counted here
  }
  const EmulatedDisc& disc = *m_disc;
  const bool complete = disc.state == DiscStatus::kComplete;
  ByteBuffer data(34);
  storeBig16(data.data(), 32);
  data[2] = complete ? 0x0E : disc.state == DiscStatus::kIncomplete ? 0x05 : 0x00;
  data[2] |= disc.medium == MediumType::kCdRw ? 0x10 : 0;
  data[3] = complete ? static_cast<uint8_t>(disc.tracks.front().number) : 1;
  data[4] = 1;  // sessions
  data[5] = data[3];
  data[6] = complete ? static_cast<uint8_t>(disc.tracks.back().number) : 1;
  data[7] = 0x20;  // unrestricted use
  data[8] = complete ? 0x00 : kUnknownType;
  if (complete) {
    storeNoTime(&data[16]);
    storeNoTime(&data[20]);
  } else {
    storeTime(&data[16], disc.lead_in);
    storeTime(&data[20], disc.capacity);
  }
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::readTrackInformation(ByteView cdb, ByteView) {
  const EmulatedDisc& disc = *m_disc;
  const std::optional<int> asked = trackAsked(disc, cdb[1] & 3, loadBig32(&cdb[2]));
  if (!asked) {
    return kInvalidFieldInCommand;
  }
  ByteBuffer data(36);
  storeBig16(data.data(), 34);
  data[2] = static_cast<uint8_t>(*asked);
  data[3] = 1;     // session
  data[6] = 0x0F;  // data mode: none, it is audio
  if (disc.state == DiscStatus::kComplete) {
    const auto at = static_cast<std::size_t>(*asked - disc.tracks.front().number);
    const RecordedTrack& track = disc.tracks[at];
    data[5] = track.control;
    storeBig32(&data[8], static_cast<uint32_t>(track.start()));
    storeBig32(&data[24], static_cast<uint32_t>(disc.endOf(track) - track.start()));
  } else {
    data[5] = 0x04;
    const bool blank_disc = disc.state == DiscStatus::kBlank;
    data[6] |= blank_disc ? 0x40 : 0;
    data[5] |= blank_disc ? 0 : 0x20;  // damaged
    if (blank_disc || m_recording) {
      // Session-at-once begins with the pregap, or with the lead-in when its sub-channels are sent.
      data[7] = 1;
      storeBig32(&data[12], static_cast<uint32_t>(m_recording ? m_recording->next : 0));
      storeBig32(&data[16], static_cast<uint32_t>(disc.capacity));
      storeBig32(&data[24], static_cast<uint32_t>(disc.capacity));
    }
  }
  return cut(std::move(data), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::readToc(ByteView cdb, ByteView) {
  const bool msf = (cdb[1] & 2) != 0;
  uint8_t format = cdb[2] & 0x0F;
  if (format == 0) {
    format = cdb[9] >> 6;  // where the field was before MMC
  }
  const EmulatedDisc& disc = *m_disc;
  const std::size_t room = loadBig16(&cdb[7]);
  if (format == 4) {
    return cut(atipOf(disc), room);
  }
  const bool no_session = disc.state != DiscStatus::kComplete;
  ByteBuffer data;
  if (!no_session && format == 0) {
    data = tocOf(disc, cdb[6], msf);
  } else if (!no_session && format == 1) {
    data = sessionInformationOf(disc, msf);
  } else if (!no_session && format == 2 && cdb[6] <= 1) {
    data = fullTocOf(disc);
  } else if (!no_session && format == 5 && !disc.cd_text.empty()) {
    data = cdTextOf(disc);
  }
  if (data.empty()) {
    return kInvalidFieldInCommand;
  }
  return cut(std::move(data), room);
}

Reply EmulatedDrive::readSubChannel(ByteView cdb, ByteView) {
  constexpr uint8_t kNoAudioStatus = 0x15;
  const EmulatedDisc& disc = *m_disc;
  const std::size_t room = loadBig16(&cdb[7]);
  ByteBuffer data(4);
  data[1] = kNoAudioStatus;
  if ((cdb[2] & 0x40) == 0) {
    return cut(std::move(data), room);  // the header alone
  }
  if (disc.state != DiscStatus::kComplete) {
    return kInvalidFieldInCommand;
  }
  const RecordedTrack& first = disc.tracks.front();
  if (cdb[3] == 1) {  // current position: the pick-up rests at the first track
    data.resize(16);
    data[4] = 1;
    data[5] = static_cast<uint8_t>(1 << 4 | first.control);
    data[6] = static_cast<uint8_t>(first.number);
    data[7] = 1;
    if ((cdb[1] & 2) != 0) {
      storeTime(&data[8], first.start());
    } else {
      storeBig32(&data[8], static_cast<uint32_t>(first.start()));
    }
  } else if (cdb[3] == 2) {
    data.resize(24);
    data[4] = 2;
    data[8] = disc.mcn.empty() ? 0 : 0x80;
    std::copy(disc.mcn.begin(), disc.mcn.end(), &data[9]);
  } else if (cdb[3] == 3) {
    const int number = cdb[6] - first.number;
    if (number < 0 || number >= static_cast<int>(disc.tracks.size())) {
      return kInvalidFieldInCommand;
    }
    const RecordedTrack& track = disc.tracks[static_cast<std::size_t>(number)];
    data.resize(24);
    data[4] = 3;
    data[5] = static_cast<uint8_t>(3 << 4 | track.control);
    data[6] = static_cast<uint8_t>(track.number);
    data[8] = track.isrc.empty() ? 0 : 0x80;
    std::copy(track.isrc.begin(), track.isrc.end(), &data[9]);
  } else {
    return kInvalidFieldInCommand;
  }
  storeBig16(&data[2], static_cast<uint16_t>(data.size() - 4));
  return cut(std::move(data), room);
}

Reply EmulatedDrive::readCapacity(ByteView, ByteView) {
  constexpr uint32_t kBlockBytes = 2048;
  ByteBuffer data(8);
  const bool complete = m_disc->state == DiscStatus::kComplete;
  storeBig32(data.data(), complete ? static_cast<uint32_t>(m_disc->lead_out - 1) : 0);
  storeBig32(&data[4], kBlockBytes);
  return data;
}

Reply EmulatedDrive::readData10(ByteView cdb, ByteView) {
  return refuseData(loadBig32(&cdb[2]), loadBig16(&cdb[7]));
}

Reply EmulatedDrive::readData12(ByteView cdb, ByteView) {
  return refuseData(loadBig32(&cdb[2]), loadBig32(&cdb[6]));
}

Reply EmulatedDrive::refuseData(uint32_t lba, uint32_t count) {
  const bool complete = m_disc->state == DiscStatus::kComplete;
  const auto end = static_cast<uint32_t>(m_disc->lead_out);
  if (!complete || lba >= end || count > end - lba) {
    return kAddressOutOfRange;
  }
  return count == 0 ? Reply() : Reply(kIllegalModeForTrack);  // all tracks are audio
}

Reply EmulatedDrive::readCd(ByteView cdb, ByteView) {
  return readSectors(static_cast<int32_t>(loadBig32(&cdb[2])), loadBig24(&cdb[6]), cdb);
}

Reply EmulatedDrive::readCdMsf(ByteView cdb, ByteView) {
  const std::optional<int32_t> from = lbaOf({cdb[3], cdb[4], cdb[5]});
  const std::optional<int32_t> to = lbaOf({cdb[6], cdb[7], cdb[8]});
  if (!from || !to || *to < *from) {
    return kInvalidFieldInCommand;
  }
  return readSectors(*from, static_cast<uint32_t>(*to - *from), cdb);
}

Reply EmulatedDrive::readSectors(int32_t lba, uint32_t count, ByteView cdb) {
  constexpr uint8_t kAnyType = 0;
  constexpr uint8_t kAudioType = 1;
  constexpr uint32_t kMostSectors = 4096;  // far above what a transfer carries
  const uint8_t type = cdb[1] >> 2 & 7;
  const uint8_t sub_channel = cdb[10] & 7;
  const bool user_data = (cdb[9] & 0x10) != 0;
  const uint8_t error_field = cdb[9] >> 1 & 3;
  if (type > 5 || sub_channel == 3 || sub_channel > 4 || error_field == 3) {
    return kInvalidFieldInCommand;
  }
  const EmulatedDisc& disc = *m_disc;
  const bool complete = disc.state == DiscStatus::kComplete;
  if (!complete || lba < 0 || lba >= disc.lead_out || count > kMostSectors ||
      static_cast<int32_t>(count) > disc.lead_out - lba) {
    return kAddressOutOfRange;
  }
  if (count > 0 && type != kAnyType && type != kAudioType) {
    return kIllegalModeForTrack;
  }
  constexpr std::size_t kErrorBytes[] = {0, 294, 296};
  ByteBuffer sector(kSectorBytes);
  ByteBuffer data;
  for (int32_t at = lba; at < lba + static_cast<int32_t>(count); ++at) {
    if (m_faults.read_error_at == at || !m_surface.read(at, sector)) {
      SenseData sense = kUnrecoveredReadError;
      sense.sector = at;
      return sense;
    }
    if (user_data) {
      data.insert(data.end(), sector.begin(), sector.end());
    }
    data.resize(data.size() + kErrorBytes[error_field]);
    const ByteBuffer beside = subChannelOf(disc, at, sub_channel);
    data.insert(data.end(), beside.begin(), beside.end());
  }
  return data;
}

}  // namespace velmor::emulated_drive
