// A page to look at: a disc, its times, levels and findings in one file of HTML.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "check/report/report.h"
#include "ddp/check/checked_set.h"
#include "disc/failure.h"
#include "disc/terminal/interrupt.h"
#include "page/measure/measured_disc.h"

namespace velmor::page {

/// What a page is made from; at least one of them. With both the disc is that of the set, and the
/// sheet is the one that the set was made from.
struct PageSources {
  const check::Report* report = nullptr;
  const ddp::CheckedSet* set = nullptr;
  std::vector<check::Reader> readers = {};  ///< those that the report was made for; empty: all
  bool strict = false;                      ///< warnings count as errors
};

/// The page's text. Reads the images again, on several threads. Throws `Failure`, or what
/// `progress` throws.
std::string pageText(const PageSources& sources, const MeasureProgress& progress);

/// Refuses a place for a page when something stands there (unless `force`), when it is that of one
/// of the `others`, by whatever name and whether these are there yet or not, or when nothing can be
/// written there. Throws `Failure`; to be called before the long work.
void refusePage(const std::filesystem::path& page, const std::vector<std::filesystem::path>& others,
                bool force);

/// Makes the page, with a progress bar on a terminal when `show_progress`, and puts it into its
/// place, whole or not at all. Throws `Failure`, or `Interrupted` when a signal was noted.
void makePage(const PageSources& sources, const std::filesystem::path& page, bool force,
              bool show_progress);

}  // namespace velmor::page
