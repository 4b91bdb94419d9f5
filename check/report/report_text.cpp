#include "check/report/report_text.h"

#include <nlohmann/json.hpp>
#include <ostream>

#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"

namespace velmor::check {

namespace {

nlohmann::ordered_json names(const std::vector<Reader>& readers) {
  auto list = nlohmann::ordered_json::array();
  for (const Reader r : readers) list.push_back(readerName(r));
  return list;
}

nlohmann::ordered_json placeJson(const Finding& f) {
  if (f.file.empty()) return {{"line", f.line}, {"track", f.track}};
  return {{"file", disc::printable(f.file)}, {"packet", f.line}, {"track", f.track}};
}

nlohmann::ordered_json findingJson(const Finding& f) {
  nlohmann::ordered_json json = {{"severity", severityName(f.severity)}, {"rule", f.rule}};
  json.update(placeJson(f));
  json.update({{"what", disc::printable(f.what)},
               {"action", disc::printable(f.action)},
               {"source", f.source},
               {"refused_by", names(f.refused)},
               {"damaged_by", names(f.damaged)},
               {"damage", f.damaged.empty() ? std::string_view() : f.damage}});
  return json;
}

nlohmann::ordered_json tracksJson(const Disc& disc) {
  auto list = nlohmann::ordered_json::array();
  for (size_t t = 0; t < disc.places.size(); ++t) {
    if (!disc.places[t]) continue;
    const TrackPlace& p = *disc.places[t];
    list.push_back({{"track", t + 1},
                    {"file", p.file + 1},
                    {"start_sector", p.start},
                    {"disc_sector", p.on_disc},
                    {"sectors", p.end_known ? p.end - p.start : -1}});
  }
  return list;
}

void printVerdict(const Report& report, bool strict, std::ostream& out) {
  out << disc::printable(report.sheet.filename().string()) << ": "
      << (report.failed(strict) ? "not ready" : "ready") << ", "
      << disc::counted(report.count(Severity::kError), "error") << ", "
      << disc::counted(report.count(Severity::kWarning), "warning") << ", "
      << disc::counted(report.count(Severity::kNote), "note") << '\n';
}

}  // namespace

std::string readerList(const std::vector<Reader>& readers) {
  std::string list;
  for (size_t i = 0; i < readers.size(); ++i) {
    if (i > 0) list += i + 1 == readers.size() ? " and " : ", ";
    list += readerName(readers[i]);
  }
  return list;
}

std::string findingLine(const Finding& f) {
  std::string line(severityName(f.severity));
  if (!f.file.empty()) line += ' ' + f.file;
  if (f.line > 0) line += (f.file.empty() ? " line " : " packet ") + std::to_string(f.line);
  if (f.track > 0) line += " track " + std::to_string(f.track);
  line += " [" + std::string(f.rule) + "] " + f.what + '.';
  if (!f.refused.empty()) line += " Refused by " + readerList(f.refused) + '.';
  if (!f.damaged.empty())
    line += " With " + readerList(f.damaged) + ": " + std::string(f.damage) + '.';
  if (!f.source.empty()) line += " Rule: " + std::string(f.source) + '.';
  if (!f.action.empty()) line += " -> " + f.action;
  return disc::printable(line);
}

std::string findingJsonText(const Finding& finding) {
  return findingJson(finding).dump();
}

void printErrors(const Report& report, std::ostream& out) {
  for (const Finding& f : report.findings)
    if (f.severity == Severity::kError) out << findingLine(f) << '\n';
  printVerdict(report, false, out);
}

void printReport(const Report& report, bool strict, std::ostream& out) {
  for (const Finding& f : report.findings) out << findingLine(f) << '\n';
  printVerdict(report, strict, out);
}

void printJson(const Report& report, bool strict, const std::vector<std::string>& changes,
               std::ostream& out, const std::vector<std::string>& written) {
  nlohmann::ordered_json json;
  json["schema"] = kJsonSchema;
  json["sheet"] = disc::printable(report.sheet.string());
  json["ready"] = !report.failed(strict);
  json["errors"] = report.count(Severity::kError);
  json["warnings"] = report.count(Severity::kWarning);
  json["notes"] = report.count(Severity::kNote);
  json["disc_sectors"] = report.disc.length_known ? report.disc.length : -1;
  json["tracks"] = tracksJson(report.disc);
  json["findings"] = nlohmann::ordered_json::array();
  for (const Finding& f : report.findings) json["findings"].push_back(findingJson(f));
  json["changes"] = nlohmann::ordered_json::array();
  for (const std::string& change : changes) json["changes"].push_back(disc::printable(change));
  if (!written.empty()) json["written"] = nlohmann::ordered_json::array();
  for (const std::string& file : written) json["written"].push_back(disc::printable(file));
  out << json.dump(2) << '\n';
}

}  // namespace velmor::check
