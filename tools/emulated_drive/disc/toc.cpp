#include "tools/emulated_drive/disc/toc.h"

namespace velmor::recorder {

namespace {

void appendMsf(Bytes& data, int32_t lba) {
  const Msf msf = msfOf(lba);
  data.insert(data.end(), {msf.minute, msf.second, msf.frame});
}

void appendAddress(Bytes& data, int32_t lba, bool msf) {
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

Bytes finished(Bytes data) {
  storeBig16(data.data(), static_cast<uint16_t>(data.size() - 2));
  return data;
}

Bytes header(const Disc& disc) {
  return {0, 0, static_cast<uint8_t>(disc.tracks.front().number),
          static_cast<uint8_t>(disc.tracks.back().number)};
}

}  // namespace

Bytes tocOf(const Disc& disc, uint8_t first, bool msf) {
  if (first > disc.tracks.back().number && first != kLeadOutNumber) {
    return {};
  }
  Bytes data = header(disc);
  for (const Track& track : disc.tracks) {
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

Bytes sessionInformationOf(const Disc& disc, bool msf) {
  const Track& track = disc.tracks.front();
  Bytes data{0, 0, 1, 1};
  data.insert(data.end(), {0, adrControl(track.control), static_cast<uint8_t>(track.number), 0});
  appendAddress(data, track.start(), msf);
  return finished(std::move(data));
}

Bytes fullTocOf(const Disc& disc) {
  Bytes data{0, 0, 1, 1};
  const auto point = [&data](uint8_t control, uint8_t number) {
    data.insert(data.end(), {1, adrControl(control), 0, number, 0, 0, 0, 0});
  };
  const Track& first = disc.tracks.front();
  const Track& last = disc.tracks.back();
  point(first.control, 0xA0);
  data.insert(data.end(), {static_cast<uint8_t>(first.number), 0, 0});  // CD-DA
  point(last.control, 0xA1);
  data.insert(data.end(), {static_cast<uint8_t>(last.number), 0, 0});
  point(last.control, 0xA2);
  appendMsf(data, disc.lead_out);
  for (const Track& track : disc.tracks) {
    point(track.control, static_cast<uint8_t>(track.number));
    appendMsf(data, track.start());
  }
  return finished(std::move(data));
}

Bytes atipOf(const Disc& disc) {
  Bytes data(28);
  const bool rewritable = disc.medium == Medium::kCdRw;
  data[4] = 0xD0 | (rewritable ? 0x01 : 0x00);  // indicative power 5; reference speed
  data[5] = 0x40;                               // unrestricted use
  data[6] = 0x80 | (rewritable ? 0x40 : 0x00);
  const Msf lead_in = msfOf(disc.lead_in);
  const Msf lead_out = msfOf(disc.capacity);
  data[8] = lead_in.minute;
  data[9] = lead_in.second;
  data[10] = lead_in.frame;
  data[12] = lead_out.minute;
  data[13] = lead_out.second;
  data[14] = lead_out.frame;
  return finished(std::move(data));
}

Bytes cdTextOf(const Disc& disc) {
  Bytes data(4);
  for (const CdTextPack& pack : disc.cd_text) {
    data.insert(data.end(), pack.begin(), pack.end());
  }
  return finished(std::move(data));
}

}  // namespace velmor::recorder
