#include "host/render/options/burn_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <vector>

#include "host/render/options/number_checks.h"
#include "host/render/options/usage_error.h"

namespace velmor::render {

namespace {

constexpr const char* kGroup = "Burn";
constexpr int kMostCopies = 999;
constexpr const char* kOptionsOfABurn[] = {"--drive",  "--eject",   "--delete-image", "--dry-run",
                                           "--verify", "--cd-text", "--speed",        "--copies"};

/// `CLI::App::count` would do, but ends the program where memory runs out in it.
bool isGiven(const CLI::App& app, const std::string& name) {
  const std::vector<const CLI::Option*> all = app.get_options();
  return std::any_of(all.begin(), all.end(), [&name](const CLI::Option* option) {
    return option->count() > 0 && option->check_name(name);
  });
}

}  // namespace

void addBurnOptions(CLI::App& app, BurnOptions& options) {
  const auto flag = [&app](const char* name, bool& value, const char* about) {
    app.add_flag(name, value, about)->group(kGroup);
  };
  flag("--burn", options.wanted, "burn the finished image to a disc");
  app.add_option("--drive", options.drive,
                 "the recorder: its number in --list-drives, its device file, or part of its name "
                 "(default: the one used last)")
      ->type_name("N|FILE|NAME")
      ->group(kGroup);
  flag("--eject", options.eject, "put the disc out when it is done");
  flag("--delete-image", options.delete_image, "delete sheet and image once every disc is written");
  flag("--dry-run", options.dry_run, "a test write with the laser off; the disc stays as it is");
  app.add_option("--speed", options.speed,
                 "in multiples of playing speed (default: as fast as the drive offers)")
      ->check(positiveNumber("speed", "give one such as 8, or leave it out for the fastest"))
      ->type_name("X")
      ->group(kGroup);
  app.add_option("--copies", options.copies, "burn so many discs, one after the other")
      ->check(wholeNumber(1, kMostCopies, "number of copies", "give one such as 2"))
      ->type_name("N")
      ->group(kGroup);
  flag("--verify", options.verify, "read the disc back and compare it with the image");
  flag("--cd-text", options.cd_text,
       "put the sheet's titles, performers, ISRCs and catalogue number on the disc");
}

void checkBurnOptions(const CLI::App& app, const BurnOptions& options) {
  for (const char* const name : kOptionsOfABurn) {
    if (options.wanted || !isGiven(app, name)) continue;
    throw UsageError(std::string(name) + " is about a burn, and there is none; add --burn");
  }
  if (options.dry_run && options.copies > 1) {
    throw UsageError("--dry-run writes no disc, so there cannot be copies of it; leave out one");
  }
}

}  // namespace velmor::render
