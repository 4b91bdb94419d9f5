#include "host/render/output/ddp_set.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "check/report/report_text.h"
#include "ddp/check/set_report.h"
#include "ddp/write/prepared_set.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "host/render/output/exact_starts.h"
#include "host/render/terminal/progress.h"

namespace velmor::render {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr int kLeastLeadIn = disc::kSectorsBeforeTrack1 / disc::kSectorsPerSecond * 1000;

/// The folder of the set, which is not that of the album: that is never empty when the set comes.
const std::string& checkedFolder(const Options& options, const OutputPair& output) {
  std::error_code error;
  const fs::path album = fs::path(output.sheet()).parent_path();
  if (fs::equivalent(album.empty() ? fs::path(".") : album, options.ddp, error) && !error)
    throw Failure("--ddp names the folder of the album, " + disc::inQuotes(options.ddp) +
                  "; name one of its own");
  if (options.disc_leadin_ms > 0 && options.disc_leadin_ms < kLeastLeadIn)
    throw Failure("--ddp needs a --disc-leadin of 0 or of at least " +
                  std::to_string(kLeastLeadIn) +
                  ": the image then contains the 2 seconds that every disc has before track 1");
  return options.ddp;
}

}  // namespace

DdpOutput::DdpOutput(const Options& options, const OutputPair& output)
    : m_target(checkedFolder(options, output), options.force) {
  m_made.path = options.ddp;
}

void DdpOutput::make(const std::string& sheet, const TrackPlan& plan, bool show_progress) {
  makeAlong(m_made, [&] { makeSet(sheet, plan, show_progress); });
}

/// The audio of a set holds the whole of track 1's pause, which is two seconds at least, or nothing
/// of it.
void DdpOutput::joinShortFirstPause(const TrackPlan& plan, check::ExactStarts& starts) {
  check::ExactStart& first = starts.front();
  const int64_t sectors = first.frame / disc::kFramesPerSector;
  if (!first.pause || sectors >= disc::kSectorsBeforeTrack1) return;
  first = {plan.tracks.front().start_frame};
  m_made.changes.push_back("the pause of track 1, " + disc::counted(sectors, "sector") +
                           ", becomes a part of the track: in a set it is 150 sectors at least");
}

void DdpOutput::makeSet(const std::string& sheet, const TrackPlan& plan, bool show_progress) {
  ddp::SetOptions options;
  options.exact_starts = startsOf(plan);
  joinShortFirstPause(plan, options.exact_starts);
  const ddp::PreparedSet prepared = ddp::prepareSet(sheet, options);
  m_made.changes.insert(m_made.changes.end(), prepared.changes.begin(), prepared.changes.end());
  if (prepared.refused()) {
    m_made.refusal.emplace();
    m_made.refusal->sheet = prepared.report.sheet;
    m_made.refusal->findings = prepared.report.findings;
    m_made.failure = "the disc breaks the rules of such a set";
    return;
  }
  {
    Progress progress("Writing the set", plan.image_frames, show_progress);
    m_target.write(prepared, [&progress](int64_t sectors) {
      progress.show(sectors * disc::kFramesPerSector);
      stopIfInterrupted();
    });
  }
  Progress progress("Checking the set", plan.image_frames, show_progress);
  ddp::SetCheckOptions checks;
  checks.progress = [&progress](int64_t done, int64_t) {
    progress.show(done / disc::kBytesPerFrame);
  };
  m_made.checked = ddp::checkSet(m_made.path, checks);
}

void printDdpSet(const DdpSet& set) {
  fflush(stdout);
  if (set.refusal) check::printErrors(*set.refusal, std::cout);
  if (set.checked) {
    std::cout << '\n' << set.path << ": the DDP 2.00 set for a pressing plant\n";
    for (const std::string& change : set.changes) std::cout << "changed: " << change << '\n';
    for (const check::Finding& finding : set.checked->findings)
      std::cout << check::findingLine(finding) << '\n';
    ddp::printVerdict(*set.checked, std::cout);
  }
  std::cout.flush();
}

std::string ddpSetJson(const DdpSet& set) {
  Json json = {{"path", set.path}, {"written", set.checked.has_value()}};
  if (!set.failure.empty()) json["failure"] = set.failure;
  json["changes"] = set.changes;
  if (set.refusal) {
    json["findings"] = Json::array();
    for (const check::Finding& finding : set.refusal->findings)
      json["findings"].push_back(Json::parse(check::findingJsonText(finding)));
  }
  if (set.checked) {
    std::ostringstream text;
    ddp::printSetJson(*set.checked, text);
    json["check"] = Json::parse(text.str());
  }
  return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

int ddpStatus(const DdpSet& set) {
  if (set.failure.empty()) return set.checked && set.checked->ready() ? 0 : 1;
  return statusOf(set);
}

}  // namespace velmor::render
