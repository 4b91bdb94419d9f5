// velmor-cdcheck: will this disc load elsewhere?

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "check/check.h"
#include "check/report/report_text.h"
#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/version.h"
#include "page/page.h"
#include "programs/cdcheck/second_sheets.h"
#include "programs/program_run.h"
#include "programs/set_check.h"

namespace {

using namespace velmor::check;
using namespace velmor::programs;
namespace disc = velmor::disc;

constexpr const char* kProgram = "velmor-cdcheck";

struct Arguments {
  std::vector<std::string> sheets;
  std::vector<std::string> readers;
  std::string cue, toc, join, page;
  bool json = false, strict = false, force = false;
};

void describe(CLI::App& app, Arguments& a) {
  app.add_option("SHEET", a.sheets,
                 "the cue sheets to check, whose images are read too, or folders of DDP sets")
      ->required();
  app.add_flag("--json", a.json, "print the report as one JSON object");
  app.add_flag("--strict", a.strict, "warnings count as errors");
  app.add_option("--for", a.readers,
                 "only these readers matter; what they refuse is an error. Of: " + readerNames())
      ->delimiter(',');
  app.add_option("--portable", a.cue, "write a second sheet that all readers take to this file");
  app.add_option("--join", a.join,
                 "with --portable or --toc: write all audio, pauses included, as one image to this "
                 "file, and name that in the second sheet");
  app.add_option("--toc", a.toc, "write a table of contents for cdrdao to this file");
  app.add_option("--html", a.page,
                 "write a page to look at to this file: tracks, times, levels, findings");
  app.add_flag("--force", a.force,
               "replace the files named by --portable, --toc, --join and --html");
  app.set_version_flag("--version", std::string(kProgram) + ' ' + disc::kVersion);
  app.footer(
      "Exit status: 0 nothing wrong, 1 errors (with --strict warnings too), 2 wrong usage, a\n"
      "sheet that cannot be read or a file that was not written, 128 and its number for a signal.");
}

std::vector<Reader> chosenReaders(const std::vector<std::string>& names) {
  std::vector<Reader> chosen;
  for (const std::string& name : names) {
    const auto reader = readerByName(name);
    if (!reader)
      throw velmor::Failure("--for knows no reader " + disc::inQuotes(name) + "; it knows " +
                            readerNames());
    chosen.push_back(*reader);
  }
  return chosen;
}

/// What was made along with the report, and what could not be.
struct Written {
  std::vector<std::string> files;
  std::vector<std::string> changes;   ///< of the second sheets against the first
  std::vector<std::string> failures;  ///< sentences
  bool interrupted = false;
};

void writePage(const Arguments& a, const Report& report, Written& written) {
  try {
    velmor::page::makePage({&report, nullptr, chosenReaders(a.readers), a.strict}, a.page, a.force,
                           true);
    written.files.push_back(a.page);
  } catch (const velmor::Failure& failure) {
    written.failures.emplace_back(failure.what());
  } catch (const velmor::Interrupted&) {
    if (written.files.empty()) throw;
    written.failures.push_back(disc::inQuotes(a.page) + " was not written: interrupted");
    written.interrupted = true;
  }
}

Written writeAll(const Arguments& a, const Report& report, const SecondFiles& seconds) {
  Written written;
  try {
    written.changes = writeSeconds(report, seconds, a.force);
    for (const std::filesystem::path& path : seconds.paths())
      written.files.push_back(path.string());
  } catch (const velmor::Failure& failure) {
    written.failures.emplace_back(failure.what());
  }
  if (!a.page.empty()) writePage(a, report, written);
  return written;
}

/// What the page must not take the place of.
std::vector<std::filesystem::path> otherFiles(const disc::Sheet& sheet,
                                              const std::filesystem::path& name,
                                              const SecondFiles& seconds) {
  std::vector<std::filesystem::path> others = seconds.paths();
  others.push_back(name);
  for (const disc::File& file : sheet.files) others.push_back(name.parent_path() / file.name.bytes);
  return others;
}

Report checked(const Arguments& a, const std::string& name, const SecondFiles& seconds) {
  CheckOptions options;
  options.readers = chosenReaders(a.readers);
  disc::Sheet sheet = readSheet(name);
  if (!a.page.empty()) velmor::page::refusePage(a.page, otherFiles(sheet, name, seconds), a.force);
  disc::ProgressBar bar(true);
  options.progress = [&bar](int64_t done, int64_t all) {
    velmor::stopIfInterrupted();
    disc::drawBytes(bar, "Checking", done, all);
  };
  return check(std::move(sheet), name, options);
}

void print(const Arguments& a, const Report& report, const Written& written) {
  if (a.json) {
    printJson(report, a.strict, written.changes, std::cout, written.files);
  } else {
    printReport(report, a.strict, std::cout);
    for (const std::string& file : written.files)
      std::cout << "written: " << disc::printable(file) << '\n';
    for (const std::string& change : written.changes) std::cout << "changed: " << change << '\n';
  }
  flushReport();
}

int runOnSheet(const Arguments& a, const std::string& sheet, std::string_view before) {
  const SecondFiles seconds = wantedSeconds(a.cue, a.toc, a.join);
  const Report report = checked(a, sheet, seconds);
  const Written written = writeAll(a, report, seconds);
  std::cout << before;
  print(a, report, written);
  for (const std::string& failure : written.failures) printMessage(kProgram, failure);
  if (written.interrupted) return velmor::interruptedStatus();
  if (report.failed(a.strict)) return kFailed;
  return written.failures.empty() ? 0 : kNotDone;
}

int runOnSet(const Arguments& a, const std::string& set, std::string_view before) {
  if (!a.cue.empty() || !a.toc.empty() || !a.join.empty() || !a.readers.empty())
    throw velmor::Failure("--portable, --toc, --join and --for are for cue sheets, and " +
                          disc::inQuotes(set) +
                          " is a DDP set; velmor-ddp extract makes a sheet of it");
  SetCheck wanted;
  wanted.program = kProgram;
  wanted.set = set;
  wanted.page = a.page;
  wanted.before = before;
  wanted.json = a.json;
  wanted.strict = a.strict;
  wanted.force = a.force;
  return checkSet(wanted);
}

/// `before` is printed in front of the report, where there is one.
int runOne(const Arguments& a, const std::string& name, std::string_view before = {}) {
  return looksLikeSet(name) ? runOnSet(a, name, before) : runOnSheet(a, name, before);
}

/// Each by itself: one that cannot be read stops none of the others. As JSON they are one array.
int runSeveral(const Arguments& a) {
  if (!a.page.empty() || !a.cue.empty() || !a.toc.empty() || !a.join.empty())
    throw velmor::Failure("--portable, --toc, --join and --html take one sheet, and here are " +
                          std::to_string(a.sheets.size()) + "; make them for each by itself");
  chosenReaders(a.readers);
  int worst = 0;
  std::string_view before = a.json ? "[\n" : "";
  for (const std::string& name : a.sheets) {
    try {
      worst = std::max(worst, runOne(a, name, before));
      if (a.json) before = ",\n";
    } catch (const velmor::Failure& failure) {
      printMessage(kProgram, failure.what());
      worst = kNotDone;
    }
  }
  if (a.json) std::cout << (before == ",\n" ? "]\n" : "[]\n");
  flushReport();
  return worst;
}

int run(const Arguments& a) {
  return a.sheets.size() == 1 ? runOne(a, a.sheets.front()) : runSeveral(a);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Checks a cue sheet and its image against the rules of the disc and the habits of "
      "thirteen readers.",
      kProgram);
  Arguments arguments;
  describe(app, arguments);
  return runProgram(app, argc, argv, [&arguments] { return run(arguments); });
}
