#include "tests/check/bad_cases.h"

#include "tests/check/test_images.h"

namespace velmor::check::test {

namespace {

constexpr int64_t kPlainSectors = 1500;        // 20 s
constexpr int64_t kWholeDiscSectors = 450750;  // 100 min 10 s

LoadedDisc usual() {
  LoadedDisc disc;
  disc.catalog = "0731452345622";
  disc.titles = {"One", "Two", "Three"};
  disc.isrcs = {"USABC0500001", "USABC0500002", "USABC0500003"};
  disc.starts = {0, 400, 900};
  disc.gap_starts = disc.starts;
  return disc;
}

LoadedDisc withTitle(size_t track, const std::string& title) {
  LoadedDisc disc = usual();
  (*disc.titles)[track - 1] = title;
  return disc;
}

LoadedDisc withCode(size_t track, const std::string& code) {
  LoadedDisc disc = usual();
  (*disc.isrcs)[track - 1] = code;
  return disc;
}

LoadedDisc withCatalog(const std::string& catalog) {
  LoadedDisc disc = usual();
  disc.catalog = catalog;
  return disc;
}

LoadedDisc withLastStart(int64_t sector) {
  LoadedDisc disc = usual();
  disc.starts->back() = sector;
  disc.gap_starts = disc.starts;
  return disc;
}

LoadedDisc hundredTracks() {
  LoadedDisc disc;
  disc.catalog = "0731452345622";
  disc.titles.emplace();
  disc.starts.emplace();
  disc.isrcs.emplace(100);
  for (int64_t t = 0; t < 100; ++t) {
    disc.titles->push_back("T" + std::to_string(t + 1));
    disc.starts->push_back(t * 300);
  }
  disc.gap_starts = disc.starts;
  return disc;
}

std::string longTitle() {
  std::string title;
  for (int i = 0; i < 5; ++i) title += "A long way to the sea ";
  title.pop_back();
  return title;
}

}  // namespace

const std::vector<BadCase>& badCases() {
  static const std::vector<BadCase> kCases = {
      {"bad.01.catalog-in-quotes", "catalog-quoted", usual()},
      {"bad.02.isrc-in-quotes", "isrc-quoted", usual()},
      {"bad.03.quote-inside-a-title", "quote-in-text", withTitle(2, "Say \"Go\" now")},
      {"bad.04.title-ends-in-backslash", "backslash-at-end", withTitle(1, "One\\")},
      {"bad.05.empty-performer", "empty-performer", usual()},
      {"bad.06.empty-isrc", "empty-isrc", withCode(2, "")},
      {"bad.07.title-over-80-characters", "text-too-long", withTitle(2, longTitle())},
      {"bad.08.line-break-inside-a-title", "line-break-in-value", withTitle(2, "Two halves")},
      {"bad.09.line-cut-at-4095-bytes", "line-cut", withTitle(2, std::string(4084, 'x'))},
      {"bad.10.index-at-100-minutes",
       "minutes-over-99",
       withLastStart(450000),
       ImageKind::kWholeDisc,
       {},
       {Reader::kChdman, Reader::kMetaflac, Reader::kBchunk, Reader::kShnsplit}},
      {"bad.11.a-hundred-tracks", "too-many-tracks", hundredTracks(), ImageKind::kHundredTracks},
      {"bad.12.utf-8-text",
       "utf8-text",
       withTitle(2, "Caf\xC3\xA9"),
       ImageKind::kPlain,
       {Reader::kCdrdao}},
      {"bad.13.iso-8859-1-text", "latin1-text", withTitle(2, "Caf\xC3\xA9")},
      {"bad.14.byte-order-mark", "byte-order-mark", usual()},
      {"bad.15.isrc-with-dashes", "isrc-dashes", usual()},
      {"bad.16.isrc-in-lower-case", "isrc-lower-case", usual()},
      {"bad.17.catalog-of-12-digits", "catalog-12-digits", usual()},
      {"bad.18.catalog-with-wrong-check-digit", "catalog-check-digit",
       withCatalog("0731452345628")},
      {"bad.19.isrc-twice-in-a-track", "repeated-isrc", usual()},
      // chdman writes gigabytes before it gives up.
      {"bad.20.index-past-the-end-of-the-image",
       "index-past-end",
       withLastStart(1540),
       ImageKind::kPlain,
       {},
       {Reader::kChdman}},
      {"bad.21.image-not-whole-sectors", "image-not-whole-sectors", usual(),
       ImageKind::kExtraBytes},
      {"bad.22.track-under-4-seconds",
       "track-under-4-s",
       withLastStart(600),
       ImageKind::kPlain,
       {Reader::kCdrdao}},
      {"bad.23.one-isrc-for-two-tracks", "isrc-twice", withCode(2, "USABC0500001")},
      {"bad.24.image-named-otherwise", "image-named-otherwise", usual(), ImageKind::kOtherName},
      {"bad.25.no-line-end-at-the-end", "no-last-line-end", usual()},
      // chdman waits without end for the line's.
      {"bad.26.carriage-returns-alone",
       "carriage-return-alone",
       usual(),
       ImageKind::kPlain,
       {},
       {Reader::kChdman}},
      {"bad.27.commands-in-small-letters", "lower-case-command", usual()},
      {"bad.28.file-type-in-small-letters", "lower-case-file-type", usual()},
      {"bad.29.empty-songwriter", "empty-text", usual()},
      {"bad.30.unknown-flag", "unknown-flag", usual()},
      {"bad.31.unknown-track-mode", "unknown-track-mode", usual()},
      {"bad.32.quote-in-the-file-name", "quote-in-file-name", usual(), ImageKind::kQuotedName},
  };
  return kCases;
}

SheetOnDisk prepare(const BadCase& bad, const std::filesystem::path& folder) {
  SheetOnDisk disk{folder.string(), "image.cue", "image.bin", kPlainSectors};
  if (bad.image == ImageKind::kOtherName) disk.sheet = "album.cue";
  writeFile(folder / disk.sheet, readFile(casesFolder() / (bad.name + ".cue")));
  if (bad.image == ImageKind::kQuotedName) disk.image = "im\"age.bin";
  const std::filesystem::path image = folder / disk.image;
  switch (bad.image) {
    case ImageKind::kPlain:
    case ImageKind::kOtherName:
    case ImageKind::kQuotedName:
      TestImage(kPlainSectors).write(image);
      break;
    case ImageKind::kExtraBytes:
      writeFile(image, TestImage(kPlainSectors).bytes() + std::string(1000, '\1'));
      disk.sectors = kPlainSectors + 1;
      break;
    case ImageKind::kWholeDisc:
      disk.sectors = kWholeDiscSectors;
      writeSparse(image, kWholeDiscSectors * 2352);
      break;
    case ImageKind::kHundredTracks:
      disk.sectors = 100 * 300;
      writeSparse(image, disk.sectors * 2352);
      break;
  }
  return disk;
}

}  // namespace velmor::check::test
