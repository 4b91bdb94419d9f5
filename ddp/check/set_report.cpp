#include "ddp/check/set_report.h"

#include <iomanip>
#include <nlohmann/json.hpp>
#include <ostream>

#include "check/report/report_text.h"
#include "disc/ddp/sheet_flags.h"
#include "disc/text/latin1.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"

namespace velmor::ddp {

namespace {

using Json = nlohmann::ordered_json;
using check::Severity;

/// The text of track `track`, from 1 on, or of the disc (0), to be shown.
std::string shownText(const CheckedSet& set, disc::TextKind kind, size_t track) {
  return disc::printable(disc::fromLatin1(set.texts.text(kind, track)));
}

/// "Performer: Title", as far as there is any.
std::string headline(const CheckedSet& set, size_t track) {
  const std::string title = shownText(set, disc::TextKind::kTitle, track);
  const std::string performer = shownText(set, disc::TextKind::kPerformer, track);
  return performer + (performer.empty() || title.empty() ? "" : ": ") + title;
}

void printHead(const CheckedSet& set, std::ostream& out) {
  if (const std::string of_disc = headline(set, 0); !of_disc.empty()) out << of_disc << '\n';
  if (!set.layout.catalogue.empty())
    out << "UPC/EAN " << disc::printable(set.layout.catalogue) << '\n';
  if (!set.identifier.master_id.empty())
    out << "master identifier " << disc::printable(set.identifier.master_id) << '\n';
}

/// The other kinds of text that a track has, a line each.
void printMoreTexts(const CheckedSet& set, size_t track, std::ostream& out) {
  for (const disc::TextKind kind : disc::kWrittenKinds) {
    if (kind == disc::TextKind::kTitle || kind == disc::TextKind::kPerformer) continue;
    const std::string text = shownText(set, kind, track);
    if (!text.empty()) out << "     " << disc::nameOf(kind) << ": " << text << '\n';
  }
}

void printTrack(const CheckedSet& set, size_t track, std::ostream& out) {
  const std::vector<SetTrack>& tracks = set.layout.tracks;
  const SetTrack& t = tracks[track];
  const int64_t start = t.at(1);
  const int64_t end = track + 1 < tracks.size() ? tracks[track + 1].at(1) : set.layout.sectors;
  const auto time = [](int64_t sector) { return sector < 0 ? "-" : disc::msfText(sector); };
  const bool known = start >= 0 && end >= start;
  out << std::setw(3) << track + 1 << "  " << std::left << std::setw(8) << time(t.at(0)) << "  "
      << std::setw(8) << time(start) << "  " << std::setw(8) << (known ? time(end - start) : "-")
      << "  " << std::setw(12) << disc::printable(t.isrc) << "  " << std::setw(11)
      << flagWords(t.flags) << std::right << ' ' << headline(set, track + 1) << '\n';
  for (const IndexPoint& index : t.indices)
    if (index.number > 1)
      out << "     index " << disc::twoDigits(index.number) << " at " << time(index.sector) << '\n';
  printMoreTexts(set, track + 1, out);
}

Json textsJson(const CheckedSet& set, size_t track) {
  Json json = Json::object();
  for (const disc::TextKind kind : disc::kWrittenKinds)
    if (const std::string text = shownText(set, kind, track); !text.empty())
      json[std::string(disc::nameOf(kind))] = text;
  return json;
}

Json trackJson(const CheckedSet& set, size_t track) {
  const SetTrack& t = set.layout.tracks[track];
  Json indices = Json::array();
  for (const IndexPoint& index : t.indices)
    indices.push_back(
        {{"index", index.number}, {"sector", index.sector}, {"time", disc::msfText(index.sector)}});
  return {{"track", track + 1},
          {"indices", indices},
          {"isrc", disc::printable(t.isrc)},
          {"flags", flagWords(t.flags)},
          {"texts", textsJson(set, track + 1)}};
}

Json fileJson(const SetFileSummary& file) {
  Json json = {{"name", disc::printable(file.name)}, {"bytes", file.bytes}};
  if (!file.digests) return json;
  json["md5"] = file.digests->md5;
  json["crc32"] = file.digests->crc;
  return json;
}

}  // namespace

void printVerdict(const CheckedSet& set, std::ostream& out) {
  out << disc::printable(set.folder.string()) << ": " << (set.ready() ? "ready" : "not ready")
      << ", " << disc::counted(set.count(Severity::kError), "error") << ", "
      << disc::counted(set.count(Severity::kWarning), "warning") << ", "
      << disc::counted(set.count(Severity::kNote), "note") << '\n';
}

void printSet(const CheckedSet& set, std::ostream& out) {
  printHead(set, out);
  out << "  #  pregap    start     length    ISRC          flags       performer: title\n";
  for (size_t t = 0; t < set.layout.tracks.size(); ++t) printTrack(set, t, out);
  out << " AA            " << disc::msfText(set.layout.sectors) << "\n\n";
  for (const check::Finding& finding : set.findings) out << check::findingLine(finding) << '\n';
  printVerdict(set, out);
}

void printSetJson(const CheckedSet& set, std::ostream& out,
                  const std::vector<std::string>& written) {
  Json json = {{"schema", kSetJsonSchema},
               {"folder", disc::printable(set.folder.string())},
               {"ready", set.ready()},
               {"errors", set.count(Severity::kError)},
               {"warnings", set.count(Severity::kWarning)},
               {"notes", set.count(Severity::kNote)},
               {"catalogue", disc::printable(set.layout.catalogue)},
               {"master_id", disc::printable(set.identifier.master_id)},
               {"user_text", disc::printable(set.identifier.user_text)},
               {"sectors", set.layout.sectors},
               {"texts", textsJson(set, 0)}};
  json["tracks"] = Json::array();
  for (size_t t = 0; t < set.layout.tracks.size(); ++t) json["tracks"].push_back(trackJson(set, t));
  json["files"] = Json::array();
  for (const SetFileSummary& file : set.files) json["files"].push_back(fileJson(file));
  json["findings"] = Json::array();
  for (const check::Finding& finding : set.findings)
    json["findings"].push_back(Json::parse(check::findingJsonText(finding)));
  if (!written.empty()) json["written"] = Json::array();
  for (const std::string& file : written) json["written"].push_back(disc::printable(file));
  out << json.dump(2) << '\n';
}

}  // namespace velmor::ddp
