// velmor-cdcheck: will this disc load elsewhere?

#include <CLI/CLI.hpp>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "check/check.h"
#include "check/portable/make_portable.h"
#include "check/portable/refuse_target.h"
#include "check/report/report_text.h"
#include "disc/failure.h"
#include "disc/files/whole_files.h"
#include "disc/portable/portable_cue.h"
#include "disc/portable/portable_disc.h"
#include "disc/portable/portable_toc.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/phrases.h"
#include "disc/version.h"

namespace {

using namespace velmor::check;
namespace disc = velmor::disc;

constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct Arguments {
  std::string sheet;
  std::vector<std::string> readers;
  std::string cue, toc;
  bool json = false, strict = false, force = false;
};

void describe(CLI::App& app, Arguments& a) {
  app.add_option("SHEET", a.sheet, "the cue sheet to check; its images are read too")->required();
  app.add_flag("--json", a.json, "print the report as one JSON object");
  app.add_flag("--strict", a.strict, "warnings count as errors");
  app.add_option("--for", a.readers,
                 "only these readers matter; what they refuse is an error. Of: " + readerNames())
      ->delimiter(',');
  app.add_option("--portable", a.cue, "write a second sheet that all readers take to this file");
  app.add_option("--toc", a.toc, "write a table of contents for cdrdao to this file");
  app.add_flag("--force", a.force, "replace the files named by --portable and --toc");
  app.set_version_flag("--version", std::string("velmor-cdcheck ") + disc::kVersion);
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

std::vector<std::filesystem::path> imagePaths(const Report& report) {
  std::vector<std::filesystem::path> paths;
  for (const ImageFile& image : report.disc.images) paths.push_back(image.path());
  return paths;
}

using TextOf = std::string (*)(const disc::PortableDisc&);

struct Second {
  std::filesystem::path path;
  TextOf text;
};

std::vector<std::string> writeSeconds(const Report& report, const std::vector<Second>& seconds,
                                      bool force) {
  std::vector<disc::TextFile> files;
  std::vector<std::string> changes;
  for (const Second& s : seconds) {
    refuseTarget(s.path, report.sheet, imagePaths(report), force);
    const disc::PortableDisc disc = makePortable(report, s.path);
    files.push_back({s.path, s.text(disc)});
    if (changes.size() < disc.changes.size()) changes = disc.changes;
  }
  disc::writeWhole(files, force);
  return changes;
}

/// A path that cannot be followed names no file that another one could name too.
bool sameName(const std::filesystem::path& a, const std::filesystem::path& b) {
  std::error_code of_a, of_b;
  const auto whole_a = std::filesystem::weakly_canonical(a, of_a);
  const auto whole_b = std::filesystem::weakly_canonical(b, of_b);
  return !of_a && !of_b && whole_a == whole_b;
}

std::vector<Second> wantedSeconds(const Arguments& a) {
  std::vector<Second> wanted;
  if (!a.cue.empty()) wanted.push_back({a.cue, disc::cueText});
  if (!a.toc.empty()) wanted.push_back({a.toc, disc::tocText});
  if (wanted.size() == 2 && sameName(a.cue, a.toc))
    throw velmor::Failure("--portable and --toc name the same file; give them two names");
  return wanted;
}

void printChanges(const std::vector<Second>& seconds, const std::vector<std::string>& changes) {
  for (const Second& s : seconds) std::cout << "written: " << s.path.string() << '\n';
  for (const std::string& change : changes) std::cout << "changed: " << change << '\n';
}

std::vector<std::string> pathsOf(const std::vector<Second>& seconds) {
  std::vector<std::string> paths;
  paths.reserve(seconds.size());
  for (const Second& s : seconds) paths.push_back(s.path.string());
  return paths;
}

int run(const Arguments& a) {
  const std::vector<Second> seconds = wantedSeconds(a);
  disc::ProgressBar bar(true);
  CheckOptions options;
  options.readers = chosenReaders(a.readers);
  options.progress = [&bar](int64_t done, int64_t all) {
    disc::drawBytes(bar, "Checking", done, all);
  };
  const Report report = check(a.sheet, options);
  bar.clear();
  std::vector<std::string> changes;
  std::optional<std::string> not_written;
  try {
    changes = writeSeconds(report, seconds, a.force);
  } catch (const velmor::Failure& error) {
    not_written = error.what();
  }
  if (a.json)
    printJson(report, a.strict, changes, std::cout,
              not_written ? std::vector<std::string>{} : pathsOf(seconds));
  else
    printReport(report, a.strict, std::cout);
  if (!a.json && !not_written) printChanges(seconds, changes);
  // Scripts go by the exit status: a full disk must not look like a sound disc.
  if (!std::cout.flush())
    throw velmor::Failure("the report cannot be written to standard output: " +
                          std::generic_category().message(errno) + "; give it another place");
  if (not_written) {
    std::cerr << "velmor-cdcheck: " << *not_written << '\n';
    return report.failed(a.strict) ? kFailed : kUsage;
  }
  return report.failed(a.strict) ? kFailed : 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Checks a cue sheet and its image against the rules of the disc and the habits of "
      "thirteen readers.",
      "velmor-cdcheck");
  Arguments arguments;
  describe(app, arguments);
  try {
    app.parse(argc, argv);
    return run(arguments);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);
    std::cerr << "velmor-cdcheck: " << disc::asClause(error.what())
              << "; --help lists the options\n";
    return kUsage;
  } catch (const std::exception& error) {
    std::cerr << "velmor-cdcheck: " << error.what() << '\n';
    return kUsage;
  }
}
