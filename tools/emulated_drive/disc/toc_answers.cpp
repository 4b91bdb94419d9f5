#include "tools/emulated_drive/disc/toc_answers.h"

#include <cassert>

namespace velmor::emulated_drive {

namespace {

void appendMsf(ByteBuffer& data, int32_t lba) {
  const MsfAddress msf = msfOf(lba);
  data.insert(data.end(), {msf.minute, msf.second, msf.frame});
}

void appendAddress(ByteBuffer& data, int32_t lba, bool msf) {
  if (msf) {
    data.push_back(0);
    appendMsf(data, lba);
    return;
  }
  uint8_t address[4];
  storeBig32(address, static_cast<uint32_t>(lba));
  data.insert(data.end(), address, address + 4);
}

uint8_t adrControl(uint8_t control) {
  return static_cast<uint8_t>(1 << 4 | control);
}

ByteBuffer finished(ByteBuffer data) {
  storeBig16(data.data(), static_cast<uint16_t>(data.size() - 2));
  return data;
}

ByteBuffer header(const EmulatedDisc& disc) {
  return {0, 0, static_cast<uint8_t>(disc.tracks.front().number),
          static_cast<uint8_t>(disc.tracks.back().number)};
}

}  // namespace

ByteBuffer tocOf(const EmulatedDisc& disc, uint8_t first, bool msf) {
  assert(!disc.tracks.empty());
  if (first > disc.tracks.back().number && first != kLeadOutNumber) {
    return {};
  }
  ByteBuffer data = header(disc);
  for (const RecordedTrack& track : disc.tracks) {
    if (track.number >= first) {
      data.insert(data.end(),
                  {0, adrControl(track.control), static_cast<uint8_t>(track.number), 0});
      appendAddress(data, track.start(), msf);
    }
  }
  data.insert(data.end(), {0, adrControl(disc.tracks.back().control), kLeadOutNumber, 0});
  appendAddress(data, disc.lead_out, msf);
  return finished(std::move(data));
}

ByteBuffer sessionInformationOf(const EmulatedDisc& disc, bool msf) {
  assert(!disc.tracks.empty());
  const RecordedTrack& track = disc.tracks.front();
  ByteBuffer data{0, 0, 1, 1};
  data.insert(data.end(), {0, adrControl(track.control), static_cast<uint8_t>(track.number), 0});
  appendAddress(data, track.start(), msf);
  return finished(std::move(data));
}

ByteBuffer fullTocOf(const EmulatedDisc& disc) {
  assert(!disc.tracks.empty());
  ByteBuffer data{0, 0, 1, 1};
  const auto point = [&data](uint8_t control, uint8_t number) {
    data.insert(data.end(), {1, adrControl(control), 0, number, 0, 0, 0, 0});
  };
  const RecordedTrack& first = disc.tracks.front();
  const RecordedTrack& last = disc.tracks.back();
  point(first.control, 0xA0);
  data.insert(data.end(), {static_cast<uint8_t>(first.number), 0, 0});  // CD-DA
  point(last.control, 0xA1);
  data.insert(data.end(), {static_cast<uint8_t>(last.number), 0, 0});
  point(last.control, 0xA2);
  appendMsf(data, disc.lead_out);
  for (const RecordedTrack& track : disc.tracks) {
    point(track.control, static_cast<uint8_t>(track.number));
    appendMsf(data, track.start());
  }
  return finished(std::move(data));
}

ByteBuffer atipOf(const EmulatedDisc& disc) {
  ByteBuffer data(28);
  const bool rewritable = disc.medium == MediumType::kCdRw;
  data[4] = 0xD0 | (rewritable ? 0x01 : 0x00);  // indicative power 5; reference speed
  data[5] = 0x40;                               // unrestricted use
  data[6] = 0x80 | (rewritable ? 0x40 : 0x00);
  const MsfAddress lead_in = msfOf(disc.lead_in);
  const MsfAddress lead_out = msfOf(disc.capacity);
  data[8] = lead_in.minute;
  data[9] = lead_in.second;
  data[10] = lead_in.frame;
  data[12] = lead_out.minute;
  data[13] = lead_out.second;
  data[14] = lead_out.frame;
  return finished(std::move(data));
}

ByteBuffer cdTextOf(const EmulatedDisc& disc) {
  ByteBuffer data(4);
  for (const CdTextPack& pack : disc.cd_text) {
    data.insert(data.end(), pack.begin(), pack.end());
  }
  return finished(std::move(data));
}

}  // namespace velmor::emulated_drive
