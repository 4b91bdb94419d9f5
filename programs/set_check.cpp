#include "programs/set_check.h"

#include <iostream>
#include <optional>
#include <system_error>
#include <vector>

#include "ddp/check/checked_set.h"
#include "ddp/check/set_files.h"
#include "ddp/check/set_report.h"
#include "disc/ddp/set_layout.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/line_of_text.h"
#include "page/page.h"
#include "programs/program_run.h"

namespace velmor::programs {

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> filesOf(const fs::path& set) {
  std::vector<fs::path> files;
  for (const std::string& name : ddp::namesOfSet(set)) files.push_back(set / name);
  return files;
}

ddp::CheckedSet checkedSet(const fs::path& folder) {
  disc::ProgressBar bar(true);
  ddp::SetCheckOptions options;
  options.progress = [&bar](int64_t done, int64_t all) {
    stopIfInterrupted();
    disc::drawBytes(bar, "Checking", done, all);
  };
  return ddp::checkSet(folder, options);
}

/// Why the page was not written; the set has been read all the same.
std::optional<std::string> writePage(const SetCheck& wanted, const ddp::CheckedSet& set) {
  try {
    page::makePage({nullptr, &set, {}, wanted.strict}, wanted.page, wanted.force, true);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return std::nullopt;
}

void print(const SetCheck& wanted, const ddp::CheckedSet& set, bool page_written) {
  std::cout << wanted.before;
  if (wanted.json) {
    ddp::printSetJson(
        set, std::cout,
        page_written ? std::vector<std::string>{wanted.page.string()} : std::vector<std::string>{});
  } else {
    ddp::printSet(set, std::cout);
    if (page_written) std::cout << "written: " << disc::printable(wanted.page.string()) << '\n';
  }
  flushReport();
}

}  // namespace

int checkSet(const SetCheck& wanted) {
  const bool with_page = !wanted.page.empty();
  if (with_page) page::refusePage(wanted.page, filesOf(wanted.set), wanted.force);
  const ddp::CheckedSet set = checkedSet(wanted.set);
  const auto not_written = with_page ? writePage(wanted, set) : std::nullopt;
  print(wanted, set, with_page && !not_written);
  if (not_written) printMessage(wanted.program, *not_written);
  const bool warned = wanted.strict && set.count(check::Severity::kWarning) > 0;
  return set.ready() && !warned && !not_written ? 0 : kFailed;
}

bool looksLikeSet(const fs::path& folder) {
  std::error_code error;
  return fs::exists(folder / ddp::kIdentifierFile, error);
}

}  // namespace velmor::programs
