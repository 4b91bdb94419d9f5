// velmor-cdcheck: will this disc load elsewhere?

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "check/check.h"
#include "check/report/report_text.h"
#include "disc/failure.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/phrases.h"
#include "disc/version.h"
#include "page/page.h"
#include "programs/cdcheck/second_sheets.h"
#include "programs/set_check.h"

namespace {

using namespace velmor::check;
using namespace velmor::programs;
namespace disc = velmor::disc;

constexpr const char* kProgram = "velmor-cdcheck";
constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct Arguments {
  std::string sheet;
  std::vector<std::string> readers;
  std::string cue, toc, page;
  bool json = false, strict = false, force = false;
};

void describe(CLI::App& app, Arguments& a) {
  app.add_option("SHEET", a.sheet,
                 "the cue sheet to check, whose images are read too, or the folder of a DDP set")
      ->required();
  app.add_flag("--json", a.json, "print the report as one JSON object");
  app.add_flag("--strict", a.strict, "warnings count as errors");
  app.add_option("--for", a.readers,
                 "only these readers matter; what they refuse is an error. Of: " + readerNames())
      ->delimiter(',');
  app.add_option("--portable", a.cue, "write a second sheet that all readers take to this file");
  app.add_option("--toc", a.toc, "write a table of contents for cdrdao to this file");
  app.add_option("--html", a.page,
                 "write a page to look at to this file: tracks, times, levels, findings");
  app.add_flag("--force", a.force, "replace the files named by --portable, --toc and --html");
  app.set_version_flag("--version", std::string(kProgram) + ' ' + disc::kVersion);
  app.footer(
      "Exit status: 0 nothing wrong, 1 errors (with --strict warnings too), 2 wrong usage or a\n"
      "sheet that cannot be read.");
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
};

void tryTo(Written& written, const std::function<void()>& write) {
  try {
    write();
  } catch (const velmor::Failure& failure) {
    written.failures.emplace_back(failure.what());
  }
}

Written writeAll(const Arguments& a, const Report& report, const std::vector<Second>& seconds) {
  Written written;
  tryTo(written, [&] {
    written.changes = writeSeconds(report, seconds, a.force);
    for (const Second& s : seconds) written.files.push_back(s.path.string());
  });
  if (a.page.empty()) return written;
  tryTo(written, [&] {
    velmor::page::makePage({&report, nullptr, chosenReaders(a.readers), a.strict}, a.page, a.force,
                           true);
    written.files.push_back(a.page);
  });
  return written;
}

/// What the page must not take the place of.
std::vector<std::filesystem::path> otherFiles(const Arguments& a, const disc::Sheet& sheet,
                                              const std::vector<Second>& seconds) {
  std::vector<std::filesystem::path> others{a.sheet};
  for (const disc::File& file : sheet.files)
    others.push_back(std::filesystem::path(a.sheet).parent_path() / file.name.bytes);
  for (const Second& s : seconds) others.push_back(s.path);
  return others;
}

Report checked(const Arguments& a, const std::vector<Second>& seconds) {
  CheckOptions options;
  options.readers = chosenReaders(a.readers);
  disc::Sheet sheet = readSheet(a.sheet);
  if (!a.page.empty()) velmor::page::refusePage(a.page, otherFiles(a, sheet, seconds), a.force);
  disc::ProgressBar bar(true);
  options.progress = [&bar](int64_t done, int64_t all) {
    disc::drawBytes(bar, "Checking", done, all);
  };
  return check(std::move(sheet), a.sheet, options);
}

void print(const Arguments& a, const Report& report, const Written& written) {
  if (a.json) {
    printJson(report, a.strict, written.changes, std::cout, written.files);
  } else {
    printReport(report, a.strict, std::cout);
    for (const std::string& file : written.files) std::cout << "written: " << file << '\n';
    for (const std::string& change : written.changes) std::cout << "changed: " << change << '\n';
  }
  flushReport();
}

int runOnSheet(const Arguments& a) {
  const std::vector<Second> seconds = wantedSeconds(a.cue, a.toc);
  const Report report = checked(a, seconds);
  const Written written = writeAll(a, report, seconds);
  print(a, report, written);
  for (const std::string& failure : written.failures)
    std::cerr << kProgram << ": " << failure << '\n';
  if (report.failed(a.strict)) return kFailed;
  return written.failures.empty() ? 0 : kUsage;
}

int runOnSet(const Arguments& a) {
  if (!a.cue.empty() || !a.toc.empty() || !a.readers.empty())
    throw velmor::Failure("--portable, --toc and --for are for cue sheets, and " +
                          disc::inQuotes(a.sheet) +
                          " is a DDP set; velmor-ddp extract makes a sheet of it");
  SetCheck wanted;
  wanted.program = kProgram;
  wanted.set = a.sheet;
  wanted.page = a.page;
  wanted.json = a.json;
  wanted.strict = a.strict;
  wanted.force = a.force;
  return checkSet(wanted);
}

int run(const Arguments& a) {
  return looksLikeSet(a.sheet) ? runOnSet(a) : runOnSheet(a);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Checks a cue sheet and its image against the rules of the disc and the habits of "
      "thirteen readers.",
      kProgram);
  Arguments arguments;
  describe(app, arguments);
  try {
    app.parse(argc, argv);
    return run(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << kProgram << ": " << disc::asClause(error.what()) << "; --help lists the options\n";
    return kUsage;
  } catch (const std::exception& error) {
    std::cerr << kProgram << ": " << error.what() << '\n';
    return kUsage;
  }
}
