#include "tools/emulated_drive/command/disc_report.h"

#include <iomanip>

#include "tools/emulated_drive/command/cd_text_reading.h"

namespace velmor::emulated_drive {

namespace {

void reportFaults(const DriveSettings& settings, std::ostream& out) {
  const Faults& faults = settings.faults;
  if (settings.busy) {
    out << "  fault: the drive is busy\n";
  }
  if (settings.deny) {
    out << "  fault: the device may not be opened\n";
  }
  if (faults.write_error_at) {
    out << "  fault: sector " << *faults.write_error_at << " cannot be written\n";
  }
  if (faults.read_error_at) {
    out << "  fault: sector " << *faults.read_error_at << " cannot be read\n";
  }
  if (faults.write_delay.count() > 0) {
    out << "  fault: each write takes " << faults.write_delay.count() << " ms\n";
  }
  if (faults.becoming_ready_polls > 0) {
    out << "  fault: a new disc is ready after " << faults.becoming_ready_polls << " polls\n";
  }
}

void reportTracks(const EmulatedDisc& disc, std::ostream& out) {
  out << "  track  pregap    start     length    ISRC          flags\n";
  for (const RecordedTrack& track : disc.tracks) {
    const MsfAddress pregap = msfOf(track.pregap_start);
    const MsfAddress length = durationOf(disc.endOf(track) - track.start());
    out << "  " << std::setw(5) << track.number << "  "
        << (track.pregap_start == track.start() ? "-       " : text(pregap)) << "  "
        << text(msfOf(track.start())) << "  " << text(length) << "  " << std::left << std::setw(12)
        << (track.isrc.empty() ? "-" : track.isrc) << std::right << "  "
        << ((track.control & 2) != 0 ? "copy " : "") << ((track.control & 1) != 0 ? "emphasis" : "")
        << "\n";
    for (std::size_t i = 1; i < track.indices.size(); ++i) {
      out << "         index " << i + 1 << " at " << text(msfOf(track.indices[i])) << "\n";
    }
  }
  out << "  lead-out         " << text(msfOf(disc.lead_out)) << "  (" << disc.lead_out
      << " sectors)\n";
  out << "  MCN: " << (disc.mcn.empty() ? "none" : disc.mcn) << "\n";
}

void reportTexts(const EmulatedDisc& disc, std::ostream& out) {
  if (disc.cd_text.empty()) {
    out << "  CD-TEXT: none\n";
    return;
  }
  out << "  CD-TEXT: " << disc.cd_text.size() << " packs\n";
  for (const auto& [where, what] : cdTextsOf(disc.cd_text)) {
    out << "    " << (where.second == 0 ? "disc" : "track " + std::to_string(where.second)) << ", "
        << cdTextName(where.first) << ": " << what << "\n";
  }
}

void reportDisc(const EmulatedDisc& disc, std::ostream& out) {
  out << "  " << (disc.medium == MediumType::kCdRw ? "CD-RW" : "CD-R") << ", room for "
      << text(durationOf(disc.capacity)) << " (" << disc.capacity << " sectors), ";
  switch (disc.state) {
    case DiscStatus::kBlank:
      out << "blank\n";
      break;
    case DiscStatus::kIncomplete:
      out << "incomplete: a recording was begun and not finished\n";
      break;
    case DiscStatus::kComplete:
      out << "closed: one session\n";
      reportTracks(disc, out);
      reportTexts(disc, out);
      break;
  }
}

}  // namespace

void report(const DriveDirectory& directory, std::ostream& out) {
  const DriveSettings settings = directory.settings();
  out << directory.path().filename().string() << ": " << settings.device << ", "
      << settings.identity.vendor << " " << settings.identity.product << "\n";
  reportFaults(settings, out);
  if (directory.trayOpen()) {
    out << "  the tray is open\n";
  }
  const std::optional<EmulatedDisc> disc = directory.disc();
  if (disc) {
    reportDisc(*disc, out);
  } else {
    out << "  no disc\n";
  }
}

}  // namespace velmor::emulated_drive
