#include "tools/emulated_drive/drive/session_cue_sheet.h"

#include <algorithm>
#include <cctype>

namespace velmor::emulated_drive {

namespace {

constexpr std::size_t kEntryBytes = 8;
constexpr int kMostTracks = 99;

/// Bytes the host sends for a sector of this data form; nothing for a form a drive without data
/// discs lacks.
std::optional<int32_t> blockBytesOf(uint8_t form) {
  switch (form) {
    case 0x00:
      return kSectorBytes;
    case 0x01:
      return 0;
    case 0x40:
      return kSectorBytes + 96;
    case 0x41:
      return 96;
    default:
      return std::nullopt;
  }
}

/// Builds the layout entry by entry; every member returns false on an entry a drive refuses.
class Builder {
 public:
  explicit Builder(const EmulatedDisc& disc) : m_disc(disc) {}

  bool add(const uint8_t* entry, const uint8_t* second);
  /// True when the lead-out has been seen and the tracks are long enough.
  bool finish();
  [[nodiscard]] bool closed() const { return m_closed; }
  SessionCueSheet sheet;

 private:
  bool addCode(const uint8_t* entry, const uint8_t* second);
  bool addLeadIn(const uint8_t* entry);
  bool addIndex(const uint8_t* entry, int32_t lba);
  bool addRegion(int32_t start, uint8_t form);

  const EmulatedDisc& m_disc;
  bool m_lead_in_seen = false;
  bool m_closed = false;
  bool m_pregap_open = false;  // index 0 came, index 1 has not
  std::string m_isrc;          // waits for its track
  int m_isrc_track = 0;
};

bool Builder::addCode(const uint8_t* entry, const uint8_t* second) {
  if (second == nullptr || second[0] != entry[0]) {
    return false;
  }
  std::string code(entry + 2, entry + kEntryBytes);
  if ((entry[0] & 0x0F) == 3) {
    code.append(second + 2, second + kEntryBytes);
    const auto plain = [](unsigned char c) { return std::isdigit(c) || (c >= 'A' && c <= 'Z'); };
    if (second[1] != entry[1] || !std::all_of(code.begin(), code.end(), plain)) {
      return false;
    }
    if (!sheet.tracks.empty() && sheet.tracks.back().number == entry[1]) {
      sheet.tracks.back().isrc = code;  // between two indices of its track
      return true;
    }
    m_isrc = code;
    m_isrc_track = entry[1];
    return m_isrc_track >= 1 && m_isrc_track <= kMostTracks;
  }
  code.insert(code.begin(), static_cast<char>(entry[1]));
  code.append(second + 1, second + 7);
  const auto digit = [](unsigned char c) { return std::isdigit(c) != 0; };
  if (!std::all_of(code.begin(), code.end(), digit)) {
    return false;
  }
  sheet.mcn = code;
  return true;
}

bool Builder::addRegion(int32_t start, uint8_t form) {
  const std::optional<int32_t> size = blockBytesOf(form);
  if (!size) {
    return false;
  }
  if (!sheet.regions.empty()) {
    if (start <= sheet.regions.back().start) {
      return false;
    }
    sheet.regions.back().end = start;
  }
  sheet.regions.push_back({start, start, *size});
  return true;
}

bool Builder::addLeadIn(const uint8_t* entry) {
  const bool no_main_data = (entry[3] & 0x3F) == 0x01;
  if (m_lead_in_seen || entry[2] != 0 || !no_main_data || entry[5] || entry[6] || entry[7]) {
    return false;
  }
  m_lead_in_seen = true;
  return addRegion(m_disc.lead_in, entry[3]);
}

bool Builder::addIndex(const uint8_t* entry, int32_t lba) {
  const int number = entry[1];
  const int index = entry[2];
  const bool new_track = sheet.tracks.empty() || sheet.tracks.back().number != number;
  if (new_track) {
    // The first track's two seconds are part of the sheet; a later track may begin with index 1.
    const bool first = sheet.tracks.empty();
    if (m_pregap_open || number < 1 || number > kMostTracks || index > 1 ||
        (first && (index != 0 || lba != -kFirstPregap)) ||
        (!first && number != sheet.tracks.back().number + 1)) {
      return false;
    }
    RecordedTrack track;
    track.number = number;
    track.control = entry[0] >> 4;
    track.pregap_start = lba;
    if (m_isrc_track == number) {
      track.isrc = m_isrc;
    }
    sheet.tracks.push_back(track);
    m_pregap_open = index == 0;
  } else {
    if (index != static_cast<int>(sheet.tracks.back().indices.size()) + 1) {
      return false;
    }
    m_pregap_open = false;
  }
  if ((entry[0] >> 4) != sheet.tracks.back().control) {
    return false;
  }
  if (index > 0) {
    sheet.tracks.back().indices.push_back(lba);
  }
  return addRegion(lba, entry[3]);
}

bool Builder::add(const uint8_t* entry, const uint8_t* second) {
  const uint8_t adr = entry[0] & 0x0F;
  if (adr == 2 || adr == 3) {
    return addCode(entry, second);
  }
  if (adr != 1 || m_closed || (entry[0] & 0x40)) {
    return false;  // control bit 2 marks a data track
  }
  if (!m_lead_in_seen) {
    return entry[1] == 0 && addLeadIn(entry);
  }
  const std::optional<int32_t> lba = lbaOf({entry[5], entry[6], entry[7]});
  if (!lba || *lba < -kFirstPregap) {
    return false;
  }
  if (entry[1] == kLeadOutNumber) {
    m_closed = true;
    sheet.lead_out = *lba;
    return entry[2] == 1 && !m_pregap_open && !sheet.tracks.empty() && addRegion(*lba, entry[3]);
  }
  return addIndex(entry, *lba);
}

bool Builder::finish() {
  if (!m_closed) {
    return false;
  }
  const std::vector<RecordedTrack>& tracks = sheet.tracks;
  for (std::size_t i = 0; i < tracks.size(); ++i) {
    // The next track's pause counts in: wodim takes one sector of it out of the end of each track,
    // and drives do not mind.
    const int32_t end = i + 1 < tracks.size() ? tracks[i + 1].start() : sheet.lead_out;
    if (end - tracks[i].start() < kShortestTrack) {
      return false;
    }
  }
  return tracks.front().start() >= 0;
}

}  // namespace

const CueRegion* SessionCueSheet::regionAt(int32_t lba) const {
  for (const CueRegion& region : regions) {
    if (lba >= region.start && lba < region.end) {
      return &region;
    }
  }
  return nullptr;
}

std::variant<SessionCueSheet, SenseData> readSessionCueSheet(ByteView bytes,
                                                             const EmulatedDisc& disc) {
  if (bytes.empty() || bytes.size() % kEntryBytes != 0) {
    return kParameterListLength;
  }
  Builder builder(disc);
  for (std::size_t at = 0; at < bytes.size(); at += kEntryBytes) {
    const uint8_t* entry = bytes.data() + at;
    const bool last = at + kEntryBytes == bytes.size();
    const uint8_t* second = last ? nullptr : entry + kEntryBytes;
    if (!builder.add(entry, second)) {
      return kInvalidFieldInParameters;
    }
    if ((entry[0] & 0x0F) != 1) {
      at += kEntryBytes;
    }
  }
  if (!builder.finish()) {
    return kInvalidFieldInParameters;
  }
  if (builder.sheet.lead_out > disc.capacity) {
    return kAddressOutOfRange;
  }
  return std::move(builder.sheet);
}

}  // namespace velmor::emulated_drive
