#include <algorithm>

#include "ddp/check/rules.h"
#include "ddp/check/set_files.h"
#include "disc/text/phrases.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

/// A map with more packets than this is none.
constexpr size_t kMostPackets = 64;

class MapJudge {
 public:
  MapJudge(std::string_view bytes, Findings& findings) : m_bytes(bytes), m_findings(findings) {}

  StreamsOfSet run() {
    if (m_bytes.size() % kMapPacketBytes != 0)
      error(
          "map-length", 0,
          "it has " + std::to_string(m_bytes.size()) + " bytes, which are no whole packets of 128",
          kAskAnew);
    const size_t packets = std::min(m_bytes.size() / kMapPacketBytes, kMostPackets);
    for (size_t p = 0; p < packets; ++p)
      judge(readStream(m_bytes.substr(p * kMapPacketBytes, kMapPacketBytes)),
            static_cast<int>(p) + 1);
    if (packets * kMapPacketBytes < m_bytes.size() / kMapPacketBytes * kMapPacketBytes)
      error("map-length", 0, "it has more than 64 packets", kAskAnew);
    if (!m_streams.pq) error("no-pq", 0, "no packet names a PQ descriptor", kAskAnew);
    if (!m_streams.audio) error("no-audio", 0, "no packet names the audio", kAskAnew);
    return std::move(m_streams);
  }

 private:
  void add(Severity severity, std::string_view rule, int packet, std::string what,
           std::string action) {
    m_findings.add(severity, rule, {packet, 0, kMapFile}, std::move(what), std::move(action),
                   kLevel);
  }
  void error(std::string_view rule, int packet, std::string what, std::string action) {
    add(Severity::kError, rule, packet, std::move(what), std::move(action));
  }

  void judge(const StreamPacket& stream, int packet) {
    if (stream.mark != kMapMark)
      return error(
          "packet-mark", packet,
          "the packet begins with " + disc::inQuotes(stream.mark) + " where \"VVVM\" belongs",
          kAskAnew);
    judgeName(stream, packet);
    if (!stream.length)
      error("stream-length", packet, "the length of the stream is no number", kAskAnew);
    if (!stream.start_blank && stream.start != 0)
      error("stream-start", packet, "the stream does not start at sector 0",
            "Ask for a set whose streams begin at the disc's first sector.");
    if (!stream.unknown.empty())
      add(Severity::kWarning, "reserved-field", packet,
          "there is " + disc::inQuotes(stream.unknown) + " where nothing should be",
          "Ask for the set anew, if its check sums do not say that it is as it was made.");
    if (stream.type == kMainStream)
      judgeAudio(stream, packet);
    else if (stream.type == kSubcodeStream)
      judgeSubcode(stream, packet);
    else
      error("stream-type", packet,
            "the stream is of the type " + disc::inQuotes(stream.type) +
                ", which is not supported: D0 (audio) and S0 (PQ, CD-TEXT) are",
            "Ask for a set of an audio CD of one session.");
  }

  void judgeName(const StreamPacket& stream, int packet) {
    if (stream.name_width != int64_t{kLongestFileName})
      error("name-width", packet, "the width of the file's name is not 17", kAskAnew);
    if (!isPlainName(stream.file))
      error("file-name", packet,
            disc::inQuotes(stream.file) + " is no name of a file in the set's folder",
            "Do not trust this set: ask where it comes from.");
  }

  void judgeAudio(const StreamPacket& stream, int packet) {
    if (m_streams.audio)
      return error("second-audio", packet,
                   "a second stream of main data is not supported: another session, or audio in "
                   "parts",
                   "Ask for a set of one session with its audio in one file.");
    if (stream.medium != kAudioKind || !stream.kind.empty())
      error("stream-kind", packet,
            "the main data is " + disc::inQuotes(stream.medium + stream.kind) +
                ", and only digital audio (\"DA\") is supported",
            "Ask for a set of an audio CD.");
    if (stream.mode != "7" && stream.mode != "0")
      error("sector-form", packet,
            "the sectors are of the form " + disc::inQuotes(stream.mode) +
                ", and only whole ones of 2352 bytes (7, or 0) are supported",
            "Ask for a set of whole sectors.");
    if (stream.scrambling != "1" && stream.scrambling != "0")
      error("sector-form", packet,
            "the field behind the sector form is " + disc::inQuotes(stream.scrambling) +
                " where 1 or 0 belongs",
            kAskAnew);
    if (!stream.pregap_blank && !stream.pregap)
      error("pregap-field", packet, "the length of track 1's pregap is no number", kAskAnew);
    if (!stream.stored.empty() && stream.stored != "00")
      add(Severity::kWarning, "reserved-field", packet,
          "there is " + disc::inQuotes(stream.stored) + " where nothing should be", kAskAnew);
    m_streams.audio = stream;
  }

  void judgeSubcode(const StreamPacket& stream, int packet) {
    if (!stream.medium.empty() || !stream.mode.empty() || !stream.scrambling.empty() ||
        !stream.pregap_blank || (!stream.stored.empty() && stream.stored != "00"))
      add(Severity::kWarning, "reserved-field", packet,
          "fields of audio are filled in for a stream of subcode", kAskAnew);
    if (stream.kind != kPqKind && stream.kind != kTextKind)
      return error("stream-kind", packet,
                   "the subcode is " + disc::inQuotes(stream.kind) +
                       ", and only \"PQ DESCR\" and \"CDTEXT\" are supported",
                   "Ask for a set with PQ and CD-TEXT alone.");
    auto& place = stream.kind == kPqKind ? m_streams.pq : m_streams.texts;
    if (place)
      return error("second-stream", packet,
                   "a second stream " + disc::inQuotes(stream.kind) + " is not supported",
                   "Ask for a set with one.");
    place = stream;
  }

  std::string_view m_bytes;
  Findings& m_findings;
  StreamsOfSet m_streams;
};

}  // namespace

StreamsOfSet judgeMap(std::string_view bytes, Findings& findings) {
  return MapJudge(bytes, findings).run();
}

}  // namespace velmor::ddp
