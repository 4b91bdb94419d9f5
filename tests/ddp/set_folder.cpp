#include "tests/ddp/set_folder.h"

#include <algorithm>
#include <filesystem>

#include "ddp/write/set_target.h"

namespace velmor::ddp::test {

namespace fs = std::filesystem;

namespace {

std::vector<std::string> rulesOf(const std::vector<check::Finding>& findings, bool errors_only) {
  std::vector<std::string> rules;
  for (const check::Finding& finding : findings)
    if (!errors_only || finding.severity == check::Severity::kError)
      rules.emplace_back(finding.rule);
  return rules;
}

}  // namespace

std::string countingFrames(int64_t frames) {
  std::string bytes(static_cast<size_t>(frames) * 4, '\0');
  char* to = bytes.data();
  for (int64_t i = 0; i < frames; ++i)
    for (const int64_t sample : {i % 65536, i / 65536}) {
      *to++ = static_cast<char>(sample & 0xFF);
      *to++ = static_cast<char>(sample >> 8 & 0xFF);
    }
  return bytes;
}

std::string richSheet() {
  return "CATALOG 0731452345622\nTITLE \"Night Drive\"\nPERFORMER \"The Lanterns\"\n"
         "FILE \"a.bin\" BINARY\n"
         "  TRACK 01 AUDIO\n    TITLE \"Headlights\"\n    PERFORMER \"Ana\"\n"
         "    ISRC USABC2600001\n    FLAGS PRE\n"
         "    INDEX 01 00:00:00\n    INDEX 02 00:05:00\n"
         "  TRACK 02 AUDIO\n    TITLE \"Toll Road, which is a good deal longer\"\n"
         "    COMPOSER \"Someone\"\n    ISRC USABC2600002\n    FLAGS DCP 4CH\n"
         "    INDEX 00 00:08:00\n    INDEX 01 00:10:00\n";
}

SheetFolder::SheetFolder(const std::string& sheet) {
  writeFile(folder / "a.cue", sheet);
  writeFile(folder / "a.bin", countingSectors(1500));
}

void SheetFolder::write(const std::string& name, const std::string& sheet,
                        const SetOptions& options) const {
  const PreparedSet set = prepareSet(folder / sheet, options);
  if (set.refused()) throw std::runtime_error("the sheet was refused: " + refusals(sheet).front());
  SetTarget(folder / name, false).write(set, [](int64_t) {});
}

std::vector<std::string> SheetFolder::errors(const std::string& name) const {
  return rulesOf(check(name).findings, true);
}

std::vector<std::string> SheetFolder::findings(const std::string& name) const {
  return rulesOf(check(name).findings, false);
}

std::vector<std::string> SheetFolder::refusals(const std::string& sheet,
                                               const SetOptions& options) const {
  return rulesOf(prepareSet(folder / sheet, options).report.findings, true);
}

void SheetFolder::patch(const std::string& file, size_t at, const std::string& bytes) const {
  std::string whole = readFile(folder / file);
  whole.replace(at, bytes.size(), bytes);
  writeFile(folder / file, whole);
}

void SheetFolder::dropChecksums(const std::string& name) const {
  fs::remove(folder / name / "CHECKSUM.MD5");
  fs::remove(folder / name / "CHECKSUM.TXT");
}

test_kit::EndedProcess SheetFolder::run(std::vector<std::string> arguments,
                                        void (*in_child)()) const {
  arguments.insert(arguments.begin(), VELMOR_DDP);
  test_kit::ProcessOptions options;
  options.folder = folder.path().string();
  options.in_child = in_child;
  return test_kit::runProcess(arguments, options);
}

std::vector<std::string> namesIn(const fs::path& folder) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(folder))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

bool sameFiles(const fs::path& a, const fs::path& b) {
  if (namesIn(a) != namesIn(b)) return false;
  for (const std::string& name : namesIn(a))
    if (readFile(a / name) != readFile(b / name)) return false;
  return true;
}

}  // namespace velmor::ddp::test
