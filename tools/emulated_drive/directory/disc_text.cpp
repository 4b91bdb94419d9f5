#include "tools/emulated_drive/directory/disc_text.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <sstream>

#include "tools/emulated_drive/directory/key_value_text.h"

namespace velmor::emulated_drive {

namespace {

constexpr const char* kStates[] = {"blank", "incomplete", "complete"};

std::string hex(const CdTextPack& pack) {
  std::string out;
  for (const uint8_t byte : pack) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    out += digits;
  }
  return out;
}

CdTextPack packOf(const KeyValue& item) {
  if (item.value.size() != 2 * kPackBytes ||
      item.value.find_first_not_of("0123456789abcdef") != std::string::npos) {
    refuse(item, "18 bytes as lower-case hexadecimal digits");
  }
  CdTextPack pack{};
  for (std::size_t i = 0; i < kPackBytes; ++i) {
    pack[i] = static_cast<uint8_t>(std::stoul(item.value.substr(2 * i, 2), nullptr, 16));
  }
  return pack;
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isIsrc(const std::string& code) {
  constexpr std::size_t kLength = 12;
  return code.size() == kLength && std::all_of(code.begin(), code.end(), [](char c) {
           return isDigit(c) || (c >= 'A' && c <= 'Z');
         });
}

std::string mcnOf(const KeyValue& item) {
  constexpr std::size_t kLength = 13;
  if (item.value.size() != kLength || !std::all_of(item.value.begin(), item.value.end(), isDigit)) {
    refuse(item, "13 digits");
  }
  return item.value;
}

/// "number control pregap isrc index1 index2 …", a dash for no ISRC.
RecordedTrack trackOf(const KeyValue& item) {
  std::istringstream in(item.value);
  RecordedTrack track;
  int control = 0;
  in >> track.number >> control >> track.pregap_start >> track.isrc;
  track.control = static_cast<uint8_t>(control & 0x0F);
  for (int32_t lba = 0; in >> lba;) {
    track.indices.push_back(lba);
  }
  if (!in.eof() || track.indices.empty() || track.number < 1 || track.number > 99) {
    refuse(item, "number, control, pregap, ISRC and indices");
  }
  if (track.isrc == "-") {
    track.isrc.clear();
  } else if (!isIsrc(track.isrc)) {
    refuse(item, "12 capital letters and digits, or a dash, for the ISRC");
  }
  return track;
}

void addTrack(const KeyValue& item, std::vector<RecordedTrack>& tracks) {
  const RecordedTrack track = trackOf(item);
  if (!tracks.empty() && track.number != tracks.back().number + 1) {
    refuse(item, "the next track's number");
  }
  const int32_t free = tracks.empty() ? -kFirstPregap : tracks.back().indices.back() + 1;
  const bool indices_ascend = std::adjacent_find(track.indices.begin(), track.indices.end(),
                                                 std::greater_equal<>()) == track.indices.end();
  if (track.pregap_start < free || track.start() < track.pregap_start || !indices_ascend) {
    refuse(item, "sectors that ascend");
  }
  tracks.push_back(track);
}

DiscStatus stateOf(const KeyValue& item) {
  for (std::size_t i = 0; i < std::size(kStates); ++i) {
    if (item.value == kStates[i]) {
      return static_cast<DiscStatus>(i);
    }
  }
  refuse(item, "blank, incomplete or complete");
}

void apply(const KeyValue& item, EmulatedDisc& disc) {
  if (item.key == "medium") {
    if (item.value != "cd-r" && item.value != "cd-rw") {
      refuse(item, "cd-r or cd-rw");
    }
    disc.medium = item.value == "cd-rw" ? MediumType::kCdRw : MediumType::kCdR;
  } else if (item.key == "state") {
    disc.state = stateOf(item);
  } else if (item.key == "capacity") {
    disc.capacity = numberOf(item);
  } else if (item.key == "lead-in") {
    disc.lead_in = numberOf(item);
  } else if (item.key == "lead-out") {
    disc.lead_out = numberOf(item);
  } else if (item.key == "mcn") {
    disc.mcn = mcnOf(item);
  } else if (item.key == "track") {
    addTrack(item, disc.tracks);
  } else if (item.key == "cd-text") {
    disc.cd_text.push_back(packOf(item));
  } else {
    refuse(item, "a fact about a disc");
  }
}

}  // namespace

std::string discText(const EmulatedDisc& disc) {
  std::ostringstream out;
  out << "medium = " << (disc.medium == MediumType::kCdRw ? "cd-rw" : "cd-r") << "\n"
      << "state = " << kStates[static_cast<std::size_t>(disc.state)] << "\n"
      << "capacity = " << disc.capacity << "\n"
      << "lead-in = " << disc.lead_in << "\n";
  if (disc.state == DiscStatus::kComplete) {
    out << "lead-out = " << disc.lead_out << "\n";
  }
  if (!disc.mcn.empty()) {
    out << "mcn = " << disc.mcn << "\n";
  }
  if (!disc.tracks.empty()) {
    out << "# number, control, pregap, ISRC, indices (sectors)\n";
  }
  for (const RecordedTrack& track : disc.tracks) {
    out << "track = " << track.number << " " << int{track.control} << " " << track.pregap_start
        << " " << (track.isrc.empty() ? "-" : track.isrc);
    for (const int32_t lba : track.indices) {
      out << " " << lba;
    }
    out << "\n";
  }
  for (const CdTextPack& pack : disc.cd_text) {
    out << "cd-text = " << hex(pack) << "\n";
  }
  return out.str();
}

EmulatedDisc readDisc(const std::filesystem::path& file) {
  EmulatedDisc disc;
  KeyValue last;
  for (const KeyValue& item : readKeyValues(file)) {
    apply(item, disc);
    last = item;
  }
  if (disc.state == DiscStatus::kComplete &&
      (disc.tracks.empty() || disc.lead_out <= disc.tracks.back().indices.back())) {
    refuse(last, "a complete disc to have tracks and a lead-out behind them");
  }
  return disc;
}

}  // namespace velmor::emulated_drive
