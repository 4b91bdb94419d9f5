#include "page/page.h"

#include <system_error>

#include "disc/files/draft.h"
#include "disc/files/same_file.h"
#include "disc/files/whole_files.h"
#include "disc/terminal/progress_bar.h"
#include "disc/text/phrases.h"
#include "page/album/disc_of_set.h"
#include "page/album/disc_of_sheet.h"
#include "page/drawing/finding_places.h"
#include "page/html/document.h"

namespace velmor::page {

namespace fs = std::filesystem;

namespace {

PageDisc discOf(const PageSources& sources, const MeasureProgress& progress) {
  if (!sources.set) return discOfSheet(*sources.report);
  PageDisc disc = discOfSet(*sources.set, progress);
  if (sources.report) addReport(*sources.report, disc);
  return disc;
}

}  // namespace

std::string pageText(const PageSources& sources, const MeasureProgress& progress) {
  const PageDisc disc = discOf(sources, progress);
  const MeasuredDisc measured = measure(disc, progress);
  const auto places = findingPlaces(disc, measured);
  return documentText({disc, measured, places, sources.readers, sources.strict});
}

void refusePage(const fs::path& page, const std::vector<fs::path>& others, bool force) {
  const std::string name = disc::inQuotes(page.string());
  for (const fs::path& other : others)
    if (disc::sameFile(page, other))
      throw Failure("the page " + name +
                    " would take the place of another file that is read or written; choose another "
                    "name with --html");
  std::error_code error;
  if (fs::is_directory(page, error))
    throw Failure(name + " is a folder; name a file in it with --html");
  if (!force && fs::exists(fs::symlink_status(page, error)))
    throw Failure(name +
                  " is there already; choose another name with --html, or give --force to replace "
                  "it");
  try {
    const disc::Draft probe(page);
  } catch (const fs::filesystem_error& refusal) {
    throw disc::notWritten(refusal);
  }
}

void makePage(const PageSources& sources, const fs::path& page, bool force, bool show_progress) {
  disc::ProgressBar bar(show_progress);
  const std::string text = pageText(sources, [&bar](int64_t done, int64_t all) {
    stopIfInterrupted();
    if (bar.due() && all > 0)
      bar.draw({"Measuring", static_cast<double>(done) / static_cast<double>(all), "", {}});
  });
  disc::writeWhole(page, text, force);
}

}  // namespace velmor::page
