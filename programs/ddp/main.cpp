// velmor-ddp: the set of files that a pressing plant takes, made from a sheet, checked, taken
// apart.

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>

#include "check/report/report_text.h"
#include "ddp/check/checked_set.h"
#include "ddp/check/set_report.h"
#include "ddp/extract/extract.h"
#include "ddp/write/prepared_set.h"
#include "ddp/write/set_target.h"
#include "disc/ddp/identifier.h"
#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "disc/version.h"
#include "programs/program_run.h"
#include "programs/set_check.h"

namespace {

using namespace velmor::ddp;
namespace disc = velmor::disc;
namespace fs = std::filesystem;

using velmor::programs::flushReport;
using velmor::programs::kFailed;

constexpr const char* kProgram = "velmor-ddp";

struct Arguments {
  std::string sheet, set;      ///< what is read
  std::string output, tracks;  ///< what is written
  std::string master_id, page;
  bool no_cd_text = false, force = false, json = false;
};

void printMessage(const std::string& text) {
  velmor::programs::printMessage(kProgram, text);
}

/// What was read is sound; what cannot be written is another failure. False after its message.
bool tried(const std::function<void()>& writing) {
  try {
    writing();
    return true;
  } catch (const velmor::Failure& failure) {
    printMessage(failure.what());
    return false;
  }
}

class Bar {
 public:
  explicit Bar(std::string what) : m_what(std::move(what)) {}
  void show(int64_t done, int64_t all) {
    velmor::stopIfInterrupted();
    disc::drawBytes(m_bar, m_what, done, all);
  }
  void showSectors(int64_t done, int64_t all) {
    show(done * disc::kBytesPerSector, all * disc::kBytesPerSector);
  }

 private:
  std::string m_what;
  disc::ProgressBar m_bar{true};
};

/// What a plant should know of, without what only readers of sheets mind.
void printWarnings(const PreparedSet& set) {
  for (const velmor::check::Finding& finding : set.report.findings)
    if (finding.severity == velmor::check::Severity::kWarning && finding.refused.empty() &&
        finding.damaged.empty())
      std::cout << velmor::check::findingLine(finding) << '\n';
}

int write(const Arguments& a) {
  SetOptions options;
  options.master_id = a.master_id;
  options.cd_text = !a.no_cd_text;
  const PreparedSet set = prepareSet(a.sheet, options);
  if (set.refused()) {
    velmor::check::printErrors(set.report, std::cout);
    flushReport();
    printMessage("no set was made of " + disc::inQuotes(a.sheet) +
                 "; nothing was written; mend what stands above");
    return kFailed;
  }
  const int64_t sectors = set.layout.set.sectors;
  const bool written = tried([&] {
    SetTarget target(a.output, a.force);
    for (const std::string& left : target.warnings()) printMessage(left);
    Bar bar("Writing");
    target.write(set, [&](int64_t done) { bar.showSectors(done, sectors); });
  });
  if (!written) return kFailed;
  printWarnings(set);
  for (const std::string& change : set.changes) std::cout << "changed: " << change << '\n';
  std::cout << "written: " << disc::printable(a.output) << ", "
            << disc::counted(static_cast<int64_t>(set.layout.set.tracks.size()), "track") << ", "
            << disc::msfText(sectors) << '\n';
  flushReport();
  return 0;
}

int check(const Arguments& a) {
  velmor::programs::SetCheck wanted;
  wanted.program = kProgram;
  wanted.set = a.set;
  wanted.page = a.page;
  wanted.json = a.json;
  wanted.force = a.force;
  return velmor::programs::checkSet(wanted);
}

CheckedSet checked(const Arguments& a) {
  Bar bar("Checking");
  SetCheckOptions options;
  options.progress = [&bar](int64_t done, int64_t all) { bar.show(done, all); };
  return checkSet(a.set, options);
}

int extract(const Arguments& a) {
  const CheckedSet set = checked(a);
  if (!set.ready()) {
    printSet(set, std::cout);
    flushReport();
    printMessage("nothing was taken from " + disc::inQuotes(a.set) +
                 ", since it has errors; they stand above");
    return kFailed;
  }
  Extracted extracted;
  const bool written = tried([&] {
    Bar bar("Extracting");
    const auto progress = [&bar](int64_t done, int64_t all) { bar.showSectors(done, all); };
    extracted = a.tracks.empty() ? extractAlbum(set, a.output, a.force, progress)
                                 : extractTracks(set, a.tracks, a.force, progress);
  });
  if (!written) return kFailed;
  for (const std::string& left : extracted.warnings) printMessage(left);
  for (const std::string& change : extracted.changes) std::cout << "changed: " << change << '\n';
  for (const fs::path& path : extracted.written)
    std::cout << "written: " << disc::printable(path.string()) << '\n';
  flushReport();
  return 0;
}

void describeWrite(CLI::App& app, Arguments& a) {
  app.add_option("SHEET", a.sheet, "the cue sheet; its images lie beside it")
      ->required()
      ->type_name("");
  app.add_option("-o,--output", a.output, "the folder of the set, new or empty")
      ->required()
      ->type_name("DIR");
  app.add_option("--master-id", a.master_id,
                 "the master's identifier, up to 48 ASCII characters; it is not on the disc")
      ->type_name("TEXT")
      ->check(
          [](const std::string& text) {
            return isMasterId(text)
                       ? std::string()
                       : "it is not up to 48 printable ASCII characters without a blank at the end";
          },
          "");
  app.add_flag("--no-cd-text", a.no_cd_text, "leave the sheet's texts out");
  app.add_flag("--force", a.force, "replace the set that is in DIR; other files in it stay");
}

void describeCheck(CLI::App& app, Arguments& a) {
  app.add_option("DIR", a.set, "the folder with DDPID and DDPMS")->required()->type_name("");
  app.add_flag("--json", a.json, "print the report as one JSON object");
  app.add_option("--html", a.page, "also write a page to look at: tracks, times, levels, findings")
      ->type_name("PAGE.html");
  app.add_flag("--force", a.force, "replace the page where there is one");
}

void describeExtract(CLI::App& app, Arguments& a) {
  app.add_option("DIR", a.set, "the folder with DDPID and DDPMS")->required()->type_name("");
  CLI::Option* const sheet =
      app.add_option("-o,--output", a.output, "the cue sheet to write; the image goes beside it")
          ->type_name("ALBUM.cue");
  CLI::Option* const tracks =
      app.add_option("--tracks", a.tracks, "instead a WAV for each track, in this new folder")
          ->type_name("FOLDER");
  sheet->excludes(tracks);
  app.add_flag("--force", a.force, "replace files of the same names");
  app.final_callback([&a] {
    if (a.output.empty() && a.tracks.empty())
      throw CLI::ValidationError("give -o ALBUM.cue or --tracks FOLDER");
    if (!a.output.empty() && fs::path(a.output).extension() != ".cue") a.output += ".cue";
  });
}

}  // namespace

int main(int argc, char** argv) {
  Arguments arguments;
  CLI::App app("Makes, checks and takes apart the DDP 2.00 set of an audio CD.", kProgram);
  app.set_version_flag("--version", std::string(kProgram) + ' ' + disc::kVersion);
  app.footer(
      "velmor-ddp COMMAND --help tells more. Exit status: 0 done or nothing wrong, 1 refused,\n"
      "errors, or not written, 2 wrong usage or a sheet or set that cannot be read, 128 and its\n"
      "number for a signal.");
  CLI::App* const writing = app.add_subcommand("write", "make a set of a cue sheet and its images");
  CLI::App* const checking = app.add_subcommand("check", "say what a set holds and what is wrong");
  CLI::App* const extracting = app.add_subcommand("extract", "get the audio and a sheet back");
  describeWrite(*writing, arguments);
  describeCheck(*checking, arguments);
  describeExtract(*extracting, arguments);
  app.require_subcommand(0, 1);  // none is told of below, in words of our own
  return velmor::programs::runProgram(app, argc, argv, [&] {
    if (writing->parsed()) return write(arguments);
    if (checking->parsed()) return check(arguments);
    if (extracting->parsed()) return extract(arguments);
    throw velmor::Failure("a command is needed: write, check or extract; --help lists the options");
  });
}
