#include "tests/check/matrix/cells.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tests/check/reader_process.h"
#include "tests/check/test_images.h"

namespace velmor::check::test {

namespace fs = std::filesystem;

namespace {

/// Could this damage be seen at all? cdrdao's list of tracks shows no texts, so that how it stores
/// their letters is known from its discs alone.
bool shows(Reader reader, const std::string& rule) {
  return reader != Reader::kCdrdao || rule != "utf8-text";
}

Said askChecker(const fs::path& folder, const std::string& sheet, Reader reader) {
  const ProcessResult run = runProcess(
      {VELMOR_CDCHECK, sheet, "--json", "--for", std::string(readerName(reader))}, folder.string());
  Said said;
  const auto json = nlohmann::json::parse(run.out, nullptr, false);
  if (json.is_discarded()) {
    said.reported = false;
    said.rules = "no report: " + run.all.substr(0, 200);
    return said;
  }
  said.wrong = json["errors"] > 0;
  for (const auto& finding : json["findings"]) {
    // A note tells a habit that no spelling of the sheet changes.
    const auto rule = finding["rule"].get<std::string>();
    if (finding["severity"] != "note") {
      said.refused = said.refused || !finding["refused_by"].empty();
      said.damaged = said.damaged || (!finding["damaged_by"].empty() && shows(reader, rule));
    }
    said.rules += ' ' + rule;
  }
  return said;
}

std::string lastWords(const std::string& output) {
  const size_t most = 400;
  std::string words = output.size() > most ? output.substr(output.size() - most) : output;
  std::replace(words.begin(), words.end(), '\n', '|');
  return words;
}

/// What the making of a second sheet said of a reader that will not take it.
Said saidOfPortable(const nlohmann::json& json, Reader reader) {
  Said said;
  if (!json.is_object() || !json.contains("changes")) {
    said.reported = false;
    said.rules = "no report";
    return said;
  }
  for (const auto& change : json["changes"]) {
    const auto sentence = change.get<std::string>();
    const std::string name(readerName(reader));
    const size_t refused = sentence.find("Refused by ");
    const bool names_it =
        refused != std::string::npos && sentence.find(name, refused) < sentence.find('.', refused);
    if (!names_it && !sentence.starts_with("For " + name + ' ')) continue;
    said.refused = true;
    said.rules += ' ' + sentence;
  }
  return said;
}

/// Calls `use` for each installed reader, or those of `readers`, with a folder of its own that has
/// links to the files of `prepared`.
void runReaders(const std::vector<Reader>& readers, const fs::path& prepared,
                const std::function<void(const ReaderRun&, const fs::path&)>& use) {
  for (const ReaderRun& run : readerRuns()) {
    const bool wanted =
        readers.empty() || std::find(readers.begin(), readers.end(), run.reader) != readers.end();
    if (!wanted || !run.installed()) continue;
    const TemporaryFolder folder;
    for (const auto& entry : fs::directory_iterator(prepared))
      fs::create_hard_link(entry, folder.path() / entry.path().filename());
    use(run, folder.path());
  }
}

LoadedDisc load(const ReaderRun& run, SheetOnDisk disk, const fs::path& folder) {
  disk.folder = folder.string();
  return run.load(disk);
}

void judge(const LoadedDisc& loaded, const LoadedDisc& truth, Cell& cell) {
  const std::string lost = loaded.accepted ? difference(loaded, truth) : "";
  cell.seen = !loaded.accepted ? Outcome::kRefused
              : lost.empty()   ? Outcome::kTaken
                               : Outcome::kDamaged;
  cell.detail = lastWords(loaded.accepted ? lost : loaded.output);
}

std::string_view nameOf(Outcome outcome) {
  switch (outcome) {
    case Outcome::kTaken:
      return "taken";
    case Outcome::kDamaged:
      return "damaged";
    default:
      return "refused";
  }
}

}  // namespace

bool Cell::agrees() const {
  if (!said.reported) return false;
  switch (seen) {
    case Outcome::kTaken:
      return !said.refused && !said.damaged;
    case Outcome::kDamaged:
      return !said.refused && (said.damaged || said.wrong);
    default:
      return said.refused || said.wrong;
  }
}

std::string Cell::text() const {
  const std::string_view word = said.refused   ? "refused"
                                : said.damaged ? "damaged"
                                : said.wrong   ? "wrong"
                                               : "ready";
  std::string line(readerName(reader));
  line += '\t' + draft + '\t';
  line += nameOf(seen);
  line += '\t';
  line += word;
  return line + '\t' + said.rules + '\t' + detail;
}

std::string notCompared(const Draft& draft, Reader reader) {
  if (reader == Reader::kBchunk && draft.files.front().wave)
    return "bchunk cuts the file that it is given, header and all, whatever FILE says";
  return {};
}

std::vector<Cell> cellsOf(const Draft& draft, const std::vector<Reader>& readers) {
  const TemporaryFolder prepared;
  const SheetOnDisk disk = writeDraft(draft, prepared.path());
  std::vector<Cell> cells;
  runReaders(readers, prepared.path(), [&](const ReaderRun& run, const fs::path& folder) {
    if (!notCompared(draft, run.reader).empty()) return;
    Cell cell;
    cell.draft = draft.name;
    cell.reader = run.reader;
    cell.said = askChecker(folder, disk.sheet, run.reader);
    judge(load(run, disk, folder), draft.truth, cell);
    cells.push_back(std::move(cell));
  });
  return cells;
}

std::vector<Cell> portableCellsOf(const Draft& draft, const std::vector<Reader>& readers) {
  const TemporaryFolder prepared;
  SheetOnDisk disk = writeDraft(draft, prepared.path());
  // The second sheet gets the name of the first, by which libcdio looks for the image.
  fs::rename(prepared.path() / disk.sheet, prepared.path() / "first.cue");
  std::vector<std::string> make{VELMOR_CDCHECK, "first.cue", "--portable", disk.sheet, "--json"};
  if (draft.files.size() > 1) {
    disk.image = "image.bin";
    make.insert(make.end(), {"--join", disk.image});
    disk.files.clear();
  }
  const ProcessResult made = runProcess(make, prepared.path().string());
  // 2 tells that no second sheet can be made of this one; what lies above is a crash.
  if (made.status > 2)
    throw std::runtime_error("--portable of " + draft.name + ": " + lastWords(made.all));
  if (!fs::exists(prepared.path() / disk.sheet)) return {};
  const auto json = nlohmann::json::parse(made.out, nullptr, false);
  std::vector<Cell> cells;
  runReaders(readers, prepared.path(), [&](const ReaderRun& run, const fs::path& folder) {
    if (!notCompared(draft, run.reader).empty()) return;
    Cell cell;
    cell.draft = "portable of " + draft.name;
    cell.reader = run.reader;
    cell.said = saidOfPortable(json, run.reader);
    const LoadedDisc loaded = load(run, disk, folder);
    cell.seen = loaded.accepted ? Outcome::kTaken : Outcome::kRefused;
    cell.detail = lastWords(loaded.output);
    cells.push_back(std::move(cell));
  });
  return cells;
}

}  // namespace velmor::check::test
