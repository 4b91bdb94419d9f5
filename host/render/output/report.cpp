#include "host/render/output/report.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "disc/version.h"
#include "host/render/options/options.h"
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

Json burnJson(const BurnResult& burn) {
  Json json = {{"drive", burn.drive},           {"written", burn.written},
               {"tested", burn.tested},         {"compared", burn.compared},
               {"disc_state", burn.disc_state}, {"image_deleted", burn.image_deleted}};
  if (!burn.failure.empty()) json["failure"] = burn.failure;
  return json;
}

Json pageJson(const HtmlPage& page) {
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
  for (const AlbumInput& input : report.album.inputs) {
    const InputInfo& info = input.info;
    if (info.rate != disc::kSampleRate) {
      printf("%s: resampled from %d Hz\n", info.path.c_str(), info.rate);
    }
    if (info.channels > 2) {
      printf("%s: the first two of %d channels are used\n", info.path.c_str(), info.channels);
    }
  }
  if (report.outcome.clipping.samples > 0) {
    printf("%s clipped, the first at %s\n",
           disc::counted(report.outcome.clipping.samples, "sample").c_str(),
           disc::clockTime(disc::secondsOf(report.outcome.clipping.first_frame)).c_str());
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
  Json inputs = Json::array();
  for (const AlbumInput& input : report.album.inputs) {
    inputs.push_back({{"path", input.info.path},
                      {"format", input.info.format},
                      {"rate", input.info.rate},
                      {"channels", input.info.channels},
                      {"start_seconds", disc::secondsOf(input.start)},
                      {"length_seconds", disc::secondsOf(input.info.frames)}});
  }
  Json clipped = {{"samples", report.outcome.clipping.samples}};
  if (report.outcome.clipping.samples > 0) {
    clipped["first_seconds"] = disc::secondsOf(report.outcome.clipping.first_frame);
  }
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
               {"inputs", inputs},
               {"clipped", clipped},
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
