// Every edit of a good sheet, and pairs of them drawn by a seed, before every installed reader.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <atomic>
#include <fstream>
#include <iostream>
#include <mutex>
#include <random>
#include <regex>
#include <stdexcept>
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
  if (edits.empty()) return all;
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

/// Both sheets of each draft before the readers, several at a time.
class Comparison {
 public:
  explicit Comparison(const Arguments& a) : m_all(drafts(a)), m_readers(chosen(a)) {
    if (a.table.empty()) return;
    m_table.open(a.table);
    if (!m_table) throw std::runtime_error(a.table + " cannot be written");
  }

  int run(unsigned jobs) {
    std::vector<std::thread> workers;
    for (unsigned w = 0; w < jobs; ++w) workers.emplace_back([this] { work(); });
    for (std::thread& w : workers) w.join();
    std::cout << m_all.size() << " sheets, " << m_cells << " cells, " << m_disagree
              << " disagree\n";
    if (m_cells == 0) std::cerr << "nothing was compared\n";
    return m_disagree > 0 || m_cells == 0 ? 1 : 0;
  }

 private:
  void work() {
    for (size_t i = m_next++; i < m_all.size(); i = m_next++) {
      try {
        std::vector<Cell> made = cellsOf(m_all[i], m_readers);
        const std::vector<Cell> second = portableCellsOf(m_all[i], m_readers);
        made.insert(made.end(), second.begin(), second.end());
        count(made);
      } catch (const std::exception& error) {
        const std::lock_guard<std::mutex> guard(m_lock);
        ++m_disagree;
        std::cout << m_all[i].name << ": " << error.what() << std::endl;
      }
    }
  }

  void count(const std::vector<Cell>& made) {
    const std::lock_guard<std::mutex> guard(m_lock);
    for (const Cell& cell : made) {
      ++m_cells;
      if (!cell.agrees()) {
        ++m_disagree;
        std::cout << cell.text() << std::endl;
      }
      if (m_table.is_open()) m_table << cell.text() << '\n';
    }
  }

  const std::vector<Draft> m_all;
  const std::vector<Reader> m_readers;
  std::ofstream m_table;
  std::atomic<size_t> m_next{0};
  std::mutex m_lock;
  size_t m_cells = 0, m_disagree = 0;
};

std::vector<std::string> installedReaders() {
  std::vector<std::string> names;
  for (const ReaderRun& run : readerRuns())
    if (run.installed()) names.emplace_back(velmor::check::readerName(run.reader));
  return names;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app("Compares what readers do with spoilt cue sheets and what velmor-cdcheck says.");
  Arguments a;
  app.add_option("--pairs", a.pairs, "how many pairs of edits to draw");
  app.add_flag("--only-pairs", a.only_pairs, "leave out the edits by themselves");
  app.add_option("--seed", a.seed, "of the draw");
  app.add_option("--jobs", a.jobs, "sheets at a time")->check(CLI::PositiveNumber);
  app.add_option("--edits", a.edits, "only edits whose name matches");
  app.add_option("--for", a.readers, "only these readers")
      ->delimiter(',')
      ->check(CLI::IsMember(installedReaders()));
  app.add_option("--table", a.table, "write every cell to this file, one line each");
  CLI11_PARSE(app, argc, argv);
  try {
    return Comparison(a).run(a.jobs);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 2;
  }
}
