// velmor-cdcheck: will this disc load elsewhere?

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "check/check.h"
#include "check/left_for_readers.h"
#include "check/portable/joined_image.h"
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
  std::vector<std::string> sheets;
  std::vector<std::string> readers;
  std::string cue, toc, join;
  bool json = false, strict = false, force = false;
};

void describe(CLI::App& app, Arguments& a) {
  app.add_option("SHEET", a.sheets, "the cue sheets to check; their images are read too")
      ->required();
  app.add_flag("--json", a.json, "print the report as one JSON object");
  app.add_flag("--strict", a.strict, "warnings count as errors");
  app.add_option("--for", a.readers,
                 "only these readers matter; what they refuse is an error. Of: " + readerNames())
      ->delimiter(',');
  app.add_option("--portable", a.cue, "write a second sheet that all readers take to this file");
  app.add_option("--join", a.join,
                 "with --portable: write all audio, pauses included, as one image to this file, "
                 "and name that in the second sheet");
  app.add_option("--toc", a.toc, "write a table of contents for cdrdao to this file");
  app.add_flag("--force", a.force, "replace the files named by --portable, --toc and --join");
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
                                      const std::string& join, bool force) {
  std::vector<disc::TextFile> files;
  std::vector<std::string> changes;
  std::vector<ImagePiece> pieces;
  for (const Second& s : seconds) {
    refuseTarget(s.path, report.sheet, imagePaths(report), force);
    disc::PortableDisc disc = makePortable(report, s.path);
    if (!join.empty()) pieces = joinFiles(report, join, s.path, disc);
    files.push_back({s.path, s.text(disc)});
    if (s.text == disc::cueText)
      for (std::string& left : leftForReaders(files.back().text, s.path))
        disc.changes.push_back(std::move(left));
    if (changes.size() < disc.changes.size()) changes = disc.changes;
  }
  if (!join.empty()) {
    refuseTarget(join, report.sheet, imagePaths(report), force);
    files.push_back(
        {join, "", [&](const disc::WriteBytes& write) { writePieces(report, pieces, write); }});
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
  if (!a.join.empty() && wanted.empty())
    throw velmor::Failure("--join needs a sheet that names the image; give --portable too");
  for (const Second& s : wanted)
    if (!a.join.empty() && sameName(s.path, a.join))
      throw velmor::Failure("--join names the second sheet; give the image another name");
  if (a.sheets.size() > 1 && !wanted.empty())
    throw velmor::Failure("a second sheet is made of one sheet; check the others by themselves");
  return wanted;
}

void printChanges(const std::vector<std::string>& paths, const std::vector<std::string>& changes) {
  for (const std::string& path : paths) std::cout << "written: " << path << '\n';
  for (const std::string& change : changes) std::cout << "changed: " << change << '\n';
}

std::vector<std::string> pathsOf(const std::vector<Second>& seconds, const std::string& join) {
  std::vector<std::string> paths;
  paths.reserve(seconds.size());
  for (const Second& s : seconds) paths.push_back(s.path.string());
  if (!join.empty()) paths.push_back(join);
  return paths;
}

/// `before` is printed in front of the report, where there is one.
int runOne(const Arguments& a, const std::string& sheet, std::string_view before = {}) {
  const std::vector<Second> seconds = wantedSeconds(a);
  disc::ProgressBar bar(true);
  CheckOptions options;
  options.readers = chosenReaders(a.readers);
  options.progress = [&bar](int64_t done, int64_t all) {
    disc::drawBytes(bar, "Checking", done, all);
  };
  const Report report = check(sheet, options);
  bar.clear();
  std::vector<std::string> changes;
  std::optional<std::string> not_written;
  try {
    changes = writeSeconds(report, seconds, a.join, a.force);
  } catch (const velmor::Failure& error) {
    not_written = error.what();
  }
  std::cout << before;
  if (a.json)
    printJson(report, a.strict, changes, std::cout,
              not_written ? std::vector<std::string>{} : pathsOf(seconds, a.join));
  else
    printReport(report, a.strict, std::cout);
  if (!a.json && !not_written) printChanges(pathsOf(seconds, a.join), changes);
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

/// Each sheet by itself; of several one that cannot be read stops none of the others. As JSON they
/// are one array.
int run(const Arguments& a) {
  if (a.sheets.size() == 1) return runOne(a, a.sheets.front());
  wantedSeconds(a);
  int worst = 0;
  bool any = false;
  if (a.json) std::cout << "[\n";
  for (const std::string& sheet : a.sheets) {
    try {
      worst = std::max(worst, runOne(a, sheet, a.json && any ? ",\n" : ""));
      any = true;
    } catch (const velmor::Failure& error) {
      std::cerr << "velmor-cdcheck: " << error.what() << '\n';
      worst = kUsage;
    }
  }
  if (a.json) std::cout << "]\n";
  return worst;
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
