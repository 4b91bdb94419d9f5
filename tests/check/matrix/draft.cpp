#include "tests/check/matrix/draft.h"

#include <algorithm>
#include <utility>

#include "tests/check/test_images.h"

namespace velmor::check::test {

namespace fs = std::filesystem;

namespace {

const std::string& imageBytes() {
  static const std::string kBytes = TestImage(kDraftSectors).bytes();
  return kBytes;
}

void writeFileOf(const DraftFile& file, const fs::path& path) {
  std::string bytes = imageBytes().substr(static_cast<size_t>(file.first_sector) * 2352,
                                          static_cast<size_t>(file.sectors) * 2352);
  if (file.big_endian)
    for (size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  writeFile(path, (file.wave ? wavHeader(bytes.size()) : "") + bytes);
}

}  // namespace

DraftLine* Draft::line(const std::string& id) {
  const size_t place = at(id);
  return place < lines.size() ? &lines[place] : nullptr;
}

size_t Draft::at(const std::string& id) const {
  const auto found =
      std::find_if(lines.begin(), lines.end(), [&id](const DraftLine& l) { return l.id == id; });
  return static_cast<size_t>(found - lines.begin());
}

bool Draft::add(const std::string& behind, const DraftLine& line) {
  size_t place = 0;
  if (!behind.empty()) {
    place = at(behind) + 1;
    if (place > lines.size()) return false;
  }
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(place), line);
  return true;
}

std::string Draft::text() const {
  std::string text = before;
  for (const DraftLine& line : lines) text += line.text + line_end;
  if (!last_line_ends) text.resize(text.size() - line_end.size());
  return text;
}

Draft goodDraft() {
  Draft draft;
  draft.name = "good";
  draft.lines = {{"catalog", "CATALOG 0731452345622"},
                 {"title0", "TITLE \"Night Drive\""},
                 {"performer0", "PERFORMER \"The Lanterns\""},
                 {"file", "FILE \"image.bin\" BINARY"},
                 {"track1", "  TRACK 01 AUDIO"},
                 {"title1", "    TITLE \"First Light\""},
                 {"performer1", "    PERFORMER \"Ana Bell\""},
                 {"isrc1", "    ISRC USABC0500001"},
                 {"index1.1", "    INDEX 01 00:00:00"},
                 {"track2", "  TRACK 02 AUDIO"},
                 {"title2", "    TITLE \"Toll Road\""},
                 {"performer2", "    PERFORMER \"Ana Bell\""},
                 {"flags2", "    FLAGS DCP"},
                 {"isrc2", "    ISRC USABC0500002"},
                 {"index2.0", "    INDEX 00 00:05:25"},
                 {"index2.1", "    INDEX 01 00:07:25"},
                 {"track3", "  TRACK 03 AUDIO"},
                 {"title3", "    TITLE \"Harbour Bar\""},
                 {"performer3", "    PERFORMER \"Ana Bell\""},
                 {"isrc3", "    ISRC USABC0500003"},
                 {"index3.1", "    INDEX 01 00:14:00"}};
  draft.files = {{"image.bin", 0, kDraftSectors}};
  draft.truth.catalog = "0731452345622";
  draft.truth.titles = {"First Light", "Toll Road", "Harbour Bar"};
  draft.truth.performers = {"Ana Bell", "Ana Bell", "Ana Bell"};
  draft.truth.isrcs = {"USABC0500001", "USABC0500002", "USABC0500003"};
  draft.truth.disc_texts = {"Night Drive", "The Lanterns"};
  draft.truth.more_indices.emplace();
  draft.truth.starts = {0, 550, 1050};
  draft.truth.gap_starts = {0, 400, 1050};
  return draft;
}

Draft goodWaveDraft() {
  Draft draft = goodDraft();
  draft.files = {{"image.wav", 0, kDraftSectors, true}};
  draft.line("file")->text = "FILE \"image.wav\" WAVE";
  return draft;
}

SheetOnDisk writeDraft(const Draft& draft, const fs::path& folder) {
  SheetOnDisk disk{folder.string(), "image.cue", draft.files.front().name, kDraftSectors};
  disk.silence_added = draft.silence_added;
  writeFile(folder / disk.sheet, draft.text());
  for (const DraftFile& file : draft.files) writeFileOf(file, folder / file.name);
  if (draft.files.size() > 1) {
    // For readers that are given the audio beside the sheet.
    disk.image = "all.bin";
    writeFileOf({"all.bin", 0, kDraftSectors}, folder / disk.image);
    for (const DraftFile& file : draft.files) disk.files.emplace_back(file.name, file.sectors);
  }
  return disk;
}

}  // namespace velmor::check::test
