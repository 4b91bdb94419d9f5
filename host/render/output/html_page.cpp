#include "host/render/output/html_page.h"

#include <filesystem>
#include <utility>
#include <vector>

#include "check/check.h"
#include "check/portable/exact_starts.h"
#include "disc/terminal/interrupt.h"
#include "disc/units/disc_units.h"
#include "host/render/output/exact_starts.h"
#include "host/render/terminal/progress.h"
#include "page/page.h"

namespace velmor::render {

namespace {

std::vector<std::filesystem::path> otherFiles(const Options& options, const OutputPair& output) {
  std::vector<std::filesystem::path> others{output.sheet(), output.image()};
  others.insert(others.end(), options.inputs.begin(), options.inputs.end());
  for (const std::string& path : {output.portableSheet(), options.labels, options.ddp})
    if (!path.empty()) others.emplace_back(path);
  return others;
}

check::Report checkedSheet(const std::string& sheet, const TrackPlan& plan, bool show_progress) {
  Progress progress("Checking", plan.image_frames, show_progress);
  check::CheckOptions options;
  options.progress = [&progress](int64_t done, int64_t) {
    progress.show(done / disc::kBytesPerFrame);
    stopIfInterrupted();
  };
  disc::Sheet parsed = check::readSheet(sheet);
  check::moveStarts(parsed, startsOf(plan));
  return check::check(std::move(parsed), sheet, options);
}

}  // namespace

PageOutput::PageOutput(const Options& options, const OutputPair& output) : m_force(options.force) {
  page::refusePage(options.html, otherFiles(options, output), options.force);
  m_made.path = options.html;
}

void PageOutput::make(const std::string& sheet, const OutputPair& output, const TrackPlan& plan,
                      const DdpSet* set, bool show_progress) {
  makeAlong(m_made, [&] {
    check::Report report = checkedSheet(sheet, plan, show_progress);
    report.sheet = output.sheet();
    page::PageSources sources;
    sources.report = &report;
    if (set && set->checked) sources.set = &*set->checked;
    page::makePage(sources, m_made.path, m_force, show_progress);
  });
}

}  // namespace velmor::render
