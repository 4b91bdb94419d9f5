// A drive on the bench: memory for its disc, and the commands a client sends, one word each.
#pragma once

#include <gtest/gtest.h>

#include <map>

#include "tools/emulated_drive/drive/emulated_drive.h"

namespace velmor::emulated_drive {

/// Sectors in memory; one that was never written is silent.
class MemorySurface final : public AudioSurface {
 public:
  bool write(int32_t lba, ByteView sectors) override {
    for (std::size_t at = 0; at < sectors.size(); at += kSectorBytes) {
      m_sectors[lba++] =
          ByteBuffer(sectors.begin() + static_cast<std::ptrdiff_t>(at),
                     sectors.begin() + static_cast<std::ptrdiff_t>(at + kSectorBytes));
    }
    return true;
  }
  bool read(int32_t lba, std::span<uint8_t> sectors) override {
    const auto found = m_sectors.find(lba);
    std::fill(sectors.begin(), sectors.end(), uint8_t{0});
    if (found != m_sectors.end()) {
      std::copy(found->second.begin(), found->second.end(), sectors.begin());
    }
    return true;
  }
  bool erase() override {
    m_sectors.clear();
    return true;
  }
  [[nodiscard]] std::size_t written() const { return m_sectors.size(); }

 private:
  std::map<int32_t, ByteBuffer> m_sectors;
};

using CueEntry = std::array<uint8_t, 8>;

inline CueEntry cueIndex(uint8_t control, uint8_t track, uint8_t index, uint8_t form, int32_t lba) {
  const MsfAddress msf = msfOf(lba);
  return {static_cast<uint8_t>(control << 4 | 1),
          track,
          index,
          form,
          0,
          msf.minute,
          msf.second,
          msf.frame};
}

inline ByteBuffer flat(const std::vector<CueEntry>& entries) {
  ByteBuffer bytes;
  for (const CueEntry& entry : entries) {
    bytes.insert(bytes.end(), entry.begin(), entry.end());
  }
  return bytes;
}

/// Two tracks of 300 and 400 sectors, the second with a pregap of 75; lead-in in `lead_in_form`.
inline std::vector<CueEntry> twoTracks(uint8_t lead_in_form = 0x01) {
  return {{0x01, 0, 0, lead_in_form, 0, 0, 0, 0},
          cueIndex(0, 1, 0, 0x00, -150),
          cueIndex(0, 1, 1, 0x00, 0),
          cueIndex(2, 2, 0, 0x00, 300),
          cueIndex(2, 2, 1, 0x00, 375),
          cueIndex(0, 0xAA, 1, 0x01, 775)};
}
inline constexpr int32_t kTwoTracksEnd = 775;

/// A sector whose bytes tell its address.
inline ByteBuffer sectorsFrom(int32_t lba, int count) {
  ByteBuffer bytes;
  for (int32_t at = lba; at < lba + count; ++at) {
    for (int32_t i = 0; i < kSectorBytes; ++i) {
      bytes.push_back(static_cast<uint8_t>(at * 31 + i));
    }
  }
  return bytes;
}

class EmulatedDriveCase : public ::testing::Test {
 protected:
  EmulatedDriveCase() { insert({}); }

  void insert(const EmulatedDisc& disc) { m_drive.load(disc, false); }

  Reply send(ByteBuffer cdb, const ByteBuffer& data = {}) {
    cdb.resize(std::max<std::size_t>(cdb.size(), 12));
    return m_drive.execute(cdb, data);
  }
  Reply testUnitReady() { return send({0x00}); }
  Reply modeSelect(uint8_t write_type, bool test = false, uint8_t block_type = 8) {
    ByteBuffer list(8 + 52);
    list[8] = 0x05;
    list[9] = 50;
    list[10] = static_cast<uint8_t>(write_type | (test ? 0x10 : 0));
    list[12] = block_type;
    return send({0x55, 0x10, 0, 0, 0, 0, 0, 0, static_cast<uint8_t>(list.size())}, list);
  }
  Reply sendCue(const std::vector<CueEntry>& entries) { return sendCue(flat(entries)); }
  Reply sendCue(const ByteBuffer& sheet) {
    return send({0x5D, 0, 0, 0, 0, 0, 0, static_cast<uint8_t>(sheet.size() >> 8),
                 static_cast<uint8_t>(sheet.size())},
                sheet);
  }
  Reply write(int32_t lba, int count, const ByteBuffer& data) {
    ByteBuffer cdb(10);
    cdb[0] = 0x2A;
    storeBig32(&cdb[2], static_cast<uint32_t>(lba));
    storeBig16(&cdb[7], static_cast<uint16_t>(count));
    return send(cdb, data);
  }
  Reply write(int32_t lba, int count) { return write(lba, count, sectorsFrom(lba, count)); }
  Reply synchronize() { return send({0x35}); }
  Reply readCd(int32_t lba, int count, uint8_t flags = 0x10, uint8_t sub_channel = 0,
               uint8_t type = 1) {
    ByteBuffer cdb(12);
    cdb[0] = 0xBE;
    cdb[1] = static_cast<uint8_t>(type << 2);
    storeBig32(&cdb[2], static_cast<uint32_t>(lba));
    cdb[8] = static_cast<uint8_t>(count);
    cdb[9] = flags;
    cdb[10] = sub_channel;
    return send(cdb);
  }
  Reply readToc(uint8_t format, uint8_t from = 0, bool msf = false) {
    return send({0x43, static_cast<uint8_t>(msf ? 2 : 0), format, 0, 0, 0, from, 0xFF, 0xFF});
  }

  /// Writes sectors up to `end`, 13 at a time as a client would.
  void writeUpTo(int32_t end, int32_t from = -150) {
    while (from < end) {
      const int count = std::min<int32_t>(13, end - from);
      ASSERT_FALSE(write(from, count).sense) << from;
      from += count;
    }
  }
  void burnTwoTracks() {
    ASSERT_FALSE(sendCue(twoTracks()).sense);
    writeUpTo(kTwoTracksEnd);
    ASSERT_FALSE(synchronize().sense);
    ASSERT_EQ(m_drive.disc()->state, DiscStatus::kComplete);
  }

  MemorySurface m_surface;
  EmulatedDrive m_drive{DriveIdentity{}, m_surface};
};

inline void PrintTo(const SenseData& sense, std::ostream* out) {
  char text[16];
  std::snprintf(text, sizeof text, "%X/%02X/%02X", sense.key, sense.code, sense.qualifier);
  *out << text;
}

}  // namespace velmor::emulated_drive
