#include "host/render/output/report.h"

#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "disc/version.h"
#include "host/render/options/options.h"
#include "host/render/output/input_treatment.h"
#include "host/render/terminal/json_schema.h"
#include "host/render/terminal/messages.h"

namespace velmor::render {

namespace {

using Json = nlohmann::ordered_json;

/// Texts from elsewhere may be no UTF-8; such bytes become question marks rather than no output at
/// all.
std::string dumped(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace);
}

Json trackJson(const PlannedTrack& track, const CueTextTrack& text, size_t number) {
  const int64_t sector = track.start_frame / disc::kFramesPerSector;
  Json json = {{"number", number},
               {"title", text.title},
               {"start_msf", disc::msfText(sector)},
               {"start_sector", sector},
               {"starts_inside_sector", track.start_frame % disc::kFramesPerSector != 0},
               {"start_seconds", disc::secondsOf(track.start_frame)},
               {"length_seconds", disc::secondsOf(track.frames)}};
  if (!text.performer.empty()) json["performer"] = text.performer;
  if (!text.songwriter.empty()) json["songwriter"] = text.songwriter;
  if (!text.isrc.empty()) json["isrc"] = text.isrc;
  return json;
}

Json markJson(const MarkFate& fate) {
  const Mark& mark = fate.mark;
  Json json = {{"name", mark.name}, {"start_seconds", mark.start}};
  if (mark.end) json["end_seconds"] = *mark.end;
  if (!mark.given_by.empty()) json["given_by"] = mark.given_by;
  if (mark.input > 0) json["input"] = mark.input;
  json["fate"] = fate.use == MarkUse::kTrack ? "track" : fate.use == MarkUse::kTag ? "tag" : "none";
  if (fate.track) json["track"] = *fate.track + 1;
  if (!fate.why.empty()) json["why"] = fate.why;
  return json;
}

Json inputsJson(const RenderReport& report) {
  Json inputs = Json::array();
  for (const AlbumInput& input : report.album.inputs) {
    inputs.push_back({{"path", input.info.path},
                      {"format", input.info.format},
                      {"rate", input.info.rate},
                      {"channels", input.info.channels},
                      {"start_seconds", disc::secondsOf(input.start)},
                      {"length_seconds", disc::secondsOf(input.info.frames)}});
  }
  for (const InputOutcome& outcome : report.outcome.inputs) {
    const InputInfo& info = report.album.inputs[outcome.input].info;
    inputs[outcome.input]["samples"] = treatmentWord(info, outcome);
  }
  return inputs;
}

/// Magnitudes that are no number have no member.
Json clippedJson(const RenderReport& report) {
  Json inputs = Json::array();
  int64_t samples = 0;
  std::optional<int64_t> first;
  for (const InputOutcome& outcome : report.outcome.inputs) {
    const Clipping& clipping = outcome.clipping;
    if (clipping.samples == 0) continue;
    samples += clipping.samples;
    if (!first) first = clipping.first_frame;
    Json input = {{"input", outcome.input + 1},
                  {"samples", clipping.samples},
                  {"worst_seconds_in_input",
                   secondsInInput(report.album, outcome.input, clipping.worst_frame)}};
    if (std::isfinite(clipping.peak)) input["worst_decibels"] = 20.0 * std::log10(clipping.peak);
    inputs.push_back(input);
  }
  Json clipped = {{"samples", samples}};
  if (first) clipped["first_seconds"] = disc::secondsOf(*first);
  clipped["inputs"] = inputs;
  return clipped;
}

Json burnJson(const BurnResult& burn) {
  Json json = {{"drive", burn.drive},           {"written", burn.written},
               {"tested", burn.tested},         {"compared", burn.compared},
               {"disc_state", burn.disc_state}, {"image_deleted", burn.image_deleted}};
  if (!burn.failure.empty()) json["failure"] = burn.failure;
  return json;
}

Json pageJson(const MadeAlong& page) {
  Json json = {{"path", page.path}, {"written", page.failure.empty()}};
  if (!page.failure.empty()) json["failure"] = page.failure;
  return json;
}

void printBurn(const BurnResult& burn) {
  if (burn.written > 0) {
    printf("%s written by %s%s\n", disc::counted(burn.written, "disc").c_str(), burn.drive.c_str(),
           burn.compared ? ", read back and equal to the image" : "");
  } else if (burn.tested) {
    printf("a test write by %s went well; no disc was written\n", burn.drive.c_str());
  }
  if (burn.image_deleted) puts("the sheet and the image are deleted");
}

}  // namespace

void printReport(const RenderReport& report) {
  printf("  #  start     sector  length      title\n");
  for (size_t i = 0; i < report.plan.tracks.size(); ++i) {
    const PlannedTrack& track = report.plan.tracks[i];
    const CueTextTrack& text = report.sheet.tracks[i];
    const int64_t sector = track.start_frame / disc::kFramesPerSector;
    const std::string performer = text.performer.empty() ? "" : " (" + text.performer + ")";
    const std::string isrc = text.isrc.empty() ? "" : "  [" + text.isrc + "]";
    printf("%3zu  %-8s %7lld  %-10s  %s%s%s\n", i + 1, disc::msfText(sector).c_str(),
           static_cast<long long>(sector), disc::clockTime(disc::secondsOf(track.frames)).c_str(),
           text.title.c_str(), performer.c_str(), isrc.c_str());
  }
  printf("\n%s: %llu bytes\n%s: %llu bytes, %s (MM:SS:FF)\n", report.sheet_path.c_str(),
         static_cast<unsigned long long>(report.sheet_bytes), report.image_path.c_str(),
         static_cast<unsigned long long>(report.image_bytes),
         disc::msfText(report.plan.image_frames / disc::kFramesPerSector).c_str());
  printTreatments(report.album, report.outcome.inputs);
  for (const AlbumInput& input : report.album.inputs) {
    const InputInfo& info = input.info;
    if (info.channels > 2) {
      printf("%s: the first two of %d channels are used\n", info.path.c_str(), info.channels);
    }
  }
  if (report.burn) printBurn(*report.burn);
  if (report.portable) printPortableSheet(*report.portable);
  if (report.ddp) printDdpSet(*report.ddp);
  if (report.page && report.page->failure.empty())
    printf("\n%s: a page to look at\n", report.page->path.c_str());
}

void printJsonReport(const RenderReport& report) {
  Json tracks = Json::array();
  for (size_t i = 0; i < report.plan.tracks.size(); ++i) {
    tracks.push_back(trackJson(report.plan.tracks[i], report.sheet.tracks[i], i + 1));
  }
  Json marks = Json::array();
  for (const MarkFate& fate : report.marks) marks.push_back(markJson(fate));
  Json json = {{"schema_version", kJsonSchemaVersion},
               {"program", kProgram},
               {"program_version", disc::kVersion},
               {"sheet", {{"path", report.sheet_path}, {"bytes", report.sheet_bytes}}},
               {"image",
                {{"path", report.image_path},
                 {"bytes", report.image_bytes},
                 {"sectors", report.plan.image_frames / disc::kFramesPerSector},
                 {"length_seconds", disc::secondsOf(report.plan.image_frames)}}},
               {"tracks", tracks},
               {"marks", marks},
               {"inputs", inputsJson(report)},
               {"clipped", clippedJson(report)},
               {"warnings", report.warnings}};
  if (report.burn) json["burn"] = burnJson(*report.burn);
  if (report.portable) json["portable_sheet"] = Json::parse(portableSheetJson(*report.portable));
  if (report.ddp) json["ddp_set"] = Json::parse(ddpSetJson(*report.ddp));
  if (report.page) json["page"] = pageJson(*report.page);
  printf("%s\n", dumped(json).c_str());
}

void printJsonFailure(const std::string& sentence) {
  const Json json = {{"schema_version", kJsonSchemaVersion}, {"error", sentence}};
  printf("%s\n", dumped(json).c_str());
}

}  // namespace velmor::render
