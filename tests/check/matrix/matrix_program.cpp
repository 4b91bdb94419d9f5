// Every edit of a good sheet, and pairs of them drawn by a seed, before every installed reader.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <fstream>
#include <iostream>
#include <mutex>
#include <random>
#include <regex>
#include <thread>

#include "tests/check/matrix/cells.h"
#include "tests/check/matrix/edits.h"

namespace {

using namespace velmor::check::test;
using velmor::check::Reader;

struct Arguments {
  size_t pairs = 0;
  bool only_pairs = false;
  unsigned seed = 1;
  unsigned jobs = 2;
  std::string edits = ".*", table;
  std::vector<std::string> readers;
};

std::vector<Draft> drafts(const Arguments& a) {
  const std::regex wanted(a.edits);
  std::vector<Draft> all;
  const auto add = [&all](Draft draft, const std::vector<const Edit*>& edits) {
    draft.name.clear();
    for (const Edit* edit : edits) {
      if (!edit->apply(draft)) return;
      draft.name += (draft.name.empty() ? "" : " + ") + edit->name;
    }
    all.push_back(std::move(draft));
  };
  if (a.edits == ".*") {
    all.push_back(goodDraft());
    all.push_back(goodWaveDraft());
  }
  std::vector<const Edit*> edits;
  for (const Edit& edit : allEdits())
    if (std::regex_search(edit.name, wanted)) edits.push_back(&edit);
  for (const Edit* edit : edits)
    if (!a.only_pairs) add(goodDraft(), {edit});
  std::mt19937 random(a.seed);
  for (size_t p = 0; p < a.pairs; ++p) {
    const Edit* first = edits[random() % edits.size()];
    const Edit* second = &allEdits()[random() % allEdits().size()];
    if (first != second && (first->line.empty() || first->line != second->line))
      add(goodDraft(), {first, second});
  }
  return all;
}

std::vector<Reader> chosen(const Arguments& a) {
  std::vector<Reader> readers;
  for (const std::string& name : a.readers)
    for (const ReaderRun& run : readerRuns())
      if (velmor::check::readerName(run.reader) == name) readers.push_back(run.reader);
  return readers;
}

int run(const Arguments& a) {
  const std::vector<Draft> all = drafts(a);
  const std::vector<Reader> readers = chosen(a);
  std::ofstream table;
  if (!a.table.empty()) table.open(a.table);
  std::atomic<size_t> next{0};
  std::mutex lock;
  size_t cells = 0, disagree = 0;
  const auto work = [&] {
    for (size_t i = next++; i < all.size(); i = next++) {
      std::vector<Cell> made = cellsOf(all[i], readers);
      const std::vector<Cell> second = portableCellsOf(all[i], readers);
      made.insert(made.end(), second.begin(), second.end());
      const std::lock_guard<std::mutex> guard(lock);
      for (const Cell& cell : made) {
        ++cells;
        if (!cell.agrees()) {
          ++disagree;
          std::cout << cell.text() << std::endl;
        }
        if (table) table << cell.text() << '\n';
      }
    }
  };
  std::vector<std::thread> workers;
  for (unsigned w = 0; w < a.jobs; ++w) workers.emplace_back(work);
  for (std::thread& w : workers) w.join();
  std::cout << all.size() << " sheets, " << cells << " cells, " << disagree << " disagree\n";
  return disagree > 0 ? 1 : 0;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Compares what readers do with spoilt cue sheets and what velmor-cdcheck says.");
  Arguments a;
  app.add_option("--pairs", a.pairs, "how many pairs of edits to draw");
  app.add_flag("--only-pairs", a.only_pairs, "leave out the edits by themselves");
  app.add_option("--seed", a.seed, "of the draw");
  app.add_option("--jobs", a.jobs, "sheets at a time");
  app.add_option("--edits", a.edits, "only edits whose name matches");
  app.add_option("--for", a.readers, "only these readers")->delimiter(',');
  app.add_option("--table", a.table, "write every cell to this file, one line each");
  CLI11_PARSE(app, argc, argv);
  return run(a);
}
