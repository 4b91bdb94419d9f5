#include "host/render/output/portable_sheet.h"

#include <cstdio>
#include <filesystem>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "check/portable/make_portable.h"
#include "check/report/report_text.h"
#include "disc/failure.h"
#include "disc/files/whole_files.h"
#include "disc/portable/portable_cue.h"
#include "disc/portable/portable_disc.h"
#include "disc/terminal/interrupt.h"
#include "disc/text/phrases.h"
#include "disc/text/plain_text.h"
#include "disc/units/disc_units.h"
#include "host/render/options/options.h"
#include "host/render/output/exact_starts.h"
#include "host/render/terminal/messages.h"
#include "host/render/terminal/progress.h"

namespace velmor::render {

namespace {

/// The checker's report on the sheet `working`, made out to the path that it will have in the end.
check::Report checkSheet(const std::string& working, const std::string& final_path, int64_t frames,
                         bool show_progress) {
  Progress progress("Checking", frames, show_progress);
  check::CheckOptions options;
  options.progress = [&progress](int64_t done, int64_t) {
    progress.show(done / disc::kBytesPerFrame);
    stopIfInterrupted();
  };
  check::Report report = check::check(working, options);
  report.sheet = final_path;
  return report;
}

nlohmann::ordered_json reportJson(const check::Report& report,
                                  const std::vector<std::string>& changes) {
  std::ostringstream text;
  check::printJson(report, false, changes, text);
  return nlohmann::ordered_json::parse(text.str());
}

/// The lines by which players know the year and the kind of music; no disc holds them.
std::vector<std::string> remarksOf(const Album& album) {
  std::vector<std::string> remarks;
  const std::string genre = disc::plainText(album.genre).text;
  const std::string date = disc::plainText(album.date).text;
  if (!genre.empty()) remarks.push_back("GENRE " + disc::inQuotes(genre));
  if (!date.empty()) remarks.push_back("DATE " + date);
  return remarks;
}

}  // namespace

PortableSheet makePortableSheet(const OutputPair& output, const Album& album, const TrackPlan& plan,
                                bool show_progress) {
  PortableSheet made;
  made.path = output.portableSheet();
  const std::string working = output.workingPortableSheet();
  made.of_sheet =
      checkSheet(output.workingSheet(), output.sheet(), plan.image_frames, show_progress);
  try {
    disc::PortableDisc disc = check::makePortable(made.of_sheet, working, startsOf(plan));
    disc.remarks = remarksOf(album);
    disc::writeWhole(working, disc::cueText(disc), false);
    made.of_portable = checkSheet(working, made.path, plan.image_frames, show_progress);
    made.changes = disc.changes;
  } catch (const Failure& error) {
    made.failure = error.what();
    std::error_code ignored;
    std::filesystem::remove(working, ignored);
  }
  return made;
}

void printPortableSheet(const PortableSheet& portable) {
  fflush(stdout);
  if (!portable.failure.empty()) {
    check::printReport(portable.of_sheet, false, std::cout);
    std::cout.flush();
    return;
  }
  std::cout << '\n' << portable.path << ": for readers that do not take the first sheet\n";
  for (const std::string& change : portable.changes) std::cout << "changed: " << change << '\n';
  std::cout << '\n';
  check::printErrors(portable.of_sheet, std::cout);
  check::printReport(portable.of_portable, false, std::cout);
  std::cout.flush();
}

std::string portableSheetJson(const PortableSheet& portable) {
  nlohmann::ordered_json json = {{"path", portable.path},
                                 {"written", portable.failure.empty()},
                                 {"check_of_sheet", reportJson(portable.of_sheet, {})}};
  if (portable.failure.empty()) {
    json["check"] = reportJson(portable.of_portable, portable.changes);
  } else {
    json["failure"] = portable.failure;
  }
  return json.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

int portableStatus(const PortableSheet& portable) {
  if (portable.failure.empty()) return 0;
  printMessage("the sheet and the image are complete, but " + disc::inQuotes(portable.path) +
               " was not written: " + portable.failure);
  return 1;
}

}  // namespace velmor::render
