#include <algorithm>

#include "ddp/check/rules.h"
#include "disc/codes/catalogue_number.h"
#include "disc/ddp/pq_packets.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"
#include "disc/units/disc_time.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

bool sameFlags(const TrackFlags& a, const TrackFlags& b) {
  return a.pre_emphasis == b.pre_emphasis && a.copy_permitted == b.copy_permitted &&
         a.four_channels == b.four_channels && a.serial_copies == b.serial_copies;
}

/// Goes through the packets in their order: lead-in, the indices of every track, lead-out.
class PqJudge {
 public:
  PqJudge(std::string_view bytes, const std::string& file, Findings& findings)
      : m_bytes(bytes), m_file(file), m_findings(findings) {}

  JudgedPq run() {
    if (m_bytes.size() % kPqPacketBytes != 0)
      error("pq-length", 0,
            "it has " + std::to_string(m_bytes.size()) + " bytes, which are no whole packets of 64",
            kAskAnew);
    const size_t packets = m_bytes.size() / kPqPacketBytes;
    for (size_t p = 0; p < packets && !m_broken; ++p) {
      m_packet = static_cast<int>(p) + 1;
      judge(readPqPacket(m_bytes.substr(p * kPqPacketBytes, kPqPacketBytes)));
    }
    m_packet = 0;
    finish();
    m_judged.sound = m_errors == 0;
    return std::move(m_judged);
  }

 private:
  std::vector<SetTrack>& tracks() { return m_judged.layout.tracks; }
  int trackNumber() { return static_cast<int>(tracks().size()); }

  void add(Severity severity, std::string_view rule, int track, std::string what,
           std::string action) {
    if (severity == Severity::kError) ++m_errors;
    m_findings.add(severity, rule, {m_packet, track, m_file}, std::move(what), std::move(action),
                   kLevel);
  }
  void error(std::string_view rule, int track, std::string what, std::string action) {
    add(Severity::kError, rule, track, std::move(what), std::move(action));
  }

  void judge(const PqPacket& packet) {
    if (packet.mark != kPqMark) {
      // What follows would be read at the wrong places.
      m_broken = true;
      return error(
          "packet-mark", 0,
          "the packet begins with " + disc::inQuotes(packet.mark) + " where \"VVVS\" belongs",
          kAskAnew);
    }
    judgeFields(packet);
    if (m_packet == 1) return judgeLeadIn(packet);
    if (packet.track == kLeadOut) return judgeLeadOut(packet);
    if (m_lead_outs > 0)
      return error("behind-lead-out", 0, "a packet follows the lead-out", kAskAnew);
    judgeIndex(packet);
  }

  void judgeFields(const PqPacket& packet) {
    if (!packet.index) error("pq-field", 0, "the index is not two digits", kAskAnew);
    if (!packet.sector)
      error("pq-field", 0, "the time is not MMSSFF with SS to 59 and FF to 74", kAskAnew);
    if (!packet.flags)
      error("pq-field", 0,
            "the control is not that of an audio track with \"1\" or \"S\" behind it", kAskAnew);
    if (!packet.unknown.empty())
      add(Severity::kWarning, "reserved-field", 0,
          "there is " + disc::inQuotes(packet.unknown) + " where nothing should be", kAskAnew);
    takeCatalogue(packet.catalogue);
  }

  void takeCatalogue(const std::string& given) {
    if (given.empty()) return;
    const std::string code = given.size() == 12 ? disc::bareCatalogueNumber(given) : given;
    std::string& kept = m_judged.layout.catalogue;
    if (!kept.empty() && kept != code)
      error("catalogue-conflict", 0,
            "the UPC/EAN is " + disc::inQuotes(given) + ", and " + disc::inQuotes(kept) +
                " in an earlier packet",
            "Ask which one is right.");
    if (kept.empty()) kept = code;
  }

  void judgeLeadIn(const PqPacket& packet) {
    if (packet.track != kLeadIn || packet.index != 0 || packet.sector != 0)
      error("no-lead-in", 0, "the first packet is not the lead-in, 00 00 at 00:00:00", kAskAnew);
    if (packet.flags && !sameFlags(*packet.flags, {}))
      error("lead-in-control", 0, "the control of the lead-in is not 01", kAskAnew);
    if (!packet.isrc.empty()) error("lead-in-isrc", 0, "the lead-in has an ISRC", kAskAnew);
  }

  void judgeLeadOut(const PqPacket& packet) {
    if (++m_lead_outs > 2) return error("lead-out", 0, "there is a third lead-out", kAskAnew);
    if (packet.index != 1) error("lead-out", 0, "the lead-out is not index 01", kAskAnew);
    if (packet.flags && !sameFlags(*packet.flags, {}))
      error("lead-out", 0, "the control of the lead-out is not 01", kAskAnew);
    if (!packet.isrc.empty()) error("lead-out", 0, "the lead-out has an ISRC", kAskAnew);
    if (!packet.sector) return;
    if (m_lead_outs == 2 && *packet.sector != m_judged.layout.sectors)
      error("lead-out", 0, "the two packets of the lead-out have two times", kAskAnew);
    if (m_lead_outs > 1) return;
    m_judged.layout.sectors = *packet.sector;
    if (*packet.sector <= m_last_time)
      error("times-descend", 0, "the lead-out lies at or before the index that it follows",
            kAskAnew);
  }

  void judgeIndex(const PqPacket& packet) {
    const int number = disc::parseNumber(packet.track, 2);
    if (packet.track.size() != 2 || number < 1)
      return error("track-number", 0, disc::inQuotes(packet.track) + " is no number of a track",
                   kAskAnew);
    if (tracks().empty() || number != trackNumber()) beginTrack(number);
    SetTrack& track = tracks().back();
    takeIsrc(track, packet);
    takeFlags(track, packet);
    if (packet.index && packet.sector)
      takeIndex(track, static_cast<int>(*packet.index), *packet.sector);
  }

  void beginTrack(int number) {
    finishTrack();
    if (number != trackNumber() + 1)
      error("track-number", number,
            "track " + std::to_string(number) + " stands where " +
                std::to_string(trackNumber() + 1) + " is expected",
            kAskAnew);
    tracks().emplace_back();
    m_first_packet = m_packet;
  }

  void finishTrack() {
    if (!tracks().empty() && tracks().back().at(1) < 0)
      error("no-index-01", trackNumber(), "the track has no index 01", kAskAnew);
  }

  void takeIndex(SetTrack& track, int index, int64_t sector) {
    const bool is_first = track.indices.empty();
    const int expected = is_first ? index : track.indices.back().number + 1;
    if (index != expected || (is_first && index > 1))
      error(
          "index-order", trackNumber(),
          "index " + disc::twoDigits(index) +
              (is_first ? " begins the track" : " follows index " + disc::twoDigits(expected - 1)),
          kAskAnew);
    if (trackNumber() == 1 && is_first && (index != 0 || sector != 0))
      error("first-pregap", 1, "track 1 does not begin with index 00 at 00:00:00", kAskAnew);
    else if (sector <= m_last_time)
      error("times-descend", trackNumber(), "the index lies at or before the one that it follows",
            kAskAnew);
    m_last_time = std::max(m_last_time, sector);
    track.indices.push_back({index, sector});
  }

  /// It stands on the track's first packet; some writers repeat it.
  void takeIsrc(SetTrack& track, const PqPacket& packet) {
    if (packet.isrc.empty()) return;
    if (track.isrc.empty() && m_packet == m_first_packet) track.isrc = packet.isrc;
    if (track.isrc.empty()) {
      add(Severity::kWarning, "isrc-late", trackNumber(),
          "the ISRC does not stand on the track's first packet", kAskAnew);
      track.isrc = packet.isrc;
    }
    if (track.isrc != packet.isrc)
      error("isrc-conflict", trackNumber(),
            "the ISRC is " + disc::inQuotes(packet.isrc) + ", and " + disc::inQuotes(track.isrc) +
                " in an earlier packet of the track",
            "Ask which one is right.");
  }

  void takeFlags(SetTrack& track, const PqPacket& packet) {
    if (!packet.flags) return;
    if (m_packet == m_first_packet) track.flags = *packet.flags;
    if (!sameFlags(track.flags, *packet.flags))
      error("control-conflict", trackNumber(),
            "the control is not that of the track's first packet", kAskAnew);
    if (m_packet == m_first_packet && packet.flags->copy_permitted && packet.flags->serial_copies)
      error("copy-flags", trackNumber(), "the control permits copies, and SCMS limits them",
            "Ask which is meant.");
  }

  void finish() {
    finishTrack();
    if (tracks().empty()) error("no-tracks", 0, "there is no track", kAskAnew);
    if (m_lead_outs == 0) error("lead-out", 0, "there is no lead-out", kAskAnew);
  }

  std::string_view m_bytes;
  const std::string& m_file;
  Findings& m_findings;
  JudgedPq m_judged;
  int m_packet = 0;        ///< 1 and up
  int m_first_packet = 0;  ///< of the track
  int64_t m_last_time = -1;
  int m_lead_outs = 0;
  int m_errors = 0;
  bool m_broken = false;
};

}  // namespace

JudgedPq judgePq(std::string_view bytes, const std::string& file, Findings& findings) {
  return PqJudge(bytes, file, findings).run();
}

}  // namespace velmor::ddp
