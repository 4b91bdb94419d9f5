#include "host/render/input/sheets/audio_source.h"

#include <strings.h>

#include <filesystem>

#include "disc/audio/readable_file.h"
#include "disc/sheet/sheet_parser.h"
#include "disc/text/phrases.h"
#include "host/render/input/sheets/sheet_marks.h"

namespace velmor::render {
namespace {

/// No sheet of a disc is nearly as long; what is, is a file of another kind.
constexpr int64_t kLongestSheet = int64_t{16} << 20;

disc::RawSamples rawSamplesOf(const disc::File& file) {
  if (file.type == "BINARY") return disc::RawSamples::kLittleEndian;
  return file.type == "MOTOROLA" ? disc::RawSamples::kBigEndian : disc::RawSamples::kNone;
}

void addSheet(const std::string& path, int number, std::vector<AudioSource>& sources) {
  const disc::ReadableFile file(path);
  const std::string name = disc::inQuotes(path);
  if (file.size() > kLongestSheet) throw Failure(name + " is too large for a cue sheet");
  const disc::Sheet sheet = disc::parseSheet(file.contents());
  SheetMarks marks = marksOfSheet(sheet, name);
  const std::filesystem::path folder = std::filesystem::path(path).parent_path();
  for (size_t i = 0; i < sheet.files.size(); ++i) {
    AudioSource source;
    source.path = (folder / sheet.files[i].name.bytes).string();
    source.raw = rawSamplesOf(sheet.files[i]);
    source.number = number;
    source.sheet = SheetPart{marks.disc, std::move(marks.of_files[i]), {}};
    if (i == 0) {
      source.sheet->warnings = std::move(marks.warnings);
    } else {
      source.sheet->tags.converted.clear();  // told once
    }
    sources.push_back(std::move(source));
  }
}

}  // namespace

bool isSheetName(const std::string& path) {
  return path.size() > 4 && strcasecmp(path.c_str() + path.size() - 4, ".cue") == 0;
}

std::vector<AudioSource> sourcesOf(const std::vector<std::string>& inputs) {
  std::vector<AudioSource> sources;
  int number = 0;
  for (const std::string& input : inputs) {
    ++number;
    if (isSheetName(input)) {
      addSheet(input, number, sources);
    } else {
      sources.push_back({input, disc::RawSamples::kNone, number, std::nullopt});
    }
  }
  return sources;
}

}  // namespace velmor::render
