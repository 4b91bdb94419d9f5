#include <map>
#include <set>

#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/text/words.h"

namespace velmor::check {

namespace {

/// How the files of a sheet and the tracks' pauses lie to one another.
struct Spread {
  size_t files = 0;            ///< that an index stands in
  int pause_behind = 0;        ///< first line of an INDEX 00 at the end of the file before; 0: none
  int pause_in_front = 0;      ///< first line of one at the beginning of a later file
  bool tracks_in_one = false;  ///< a WAVE file holds the starts of two tracks
};

Spread spreadOf(const disc::Sheet& sheet) {
  Spread spread;
  std::set<std::string> used;  // a file that is named twice is one
  std::map<size_t, int> starts;
  for (const disc::Track& t : sheet.tracks) {
    const disc::Index *gap = t.index(0), *start = t.index(1);
    for (const disc::Index& i : t.indices)
      if (i.file < sheet.files.size()) used.insert(sheet.files[i.file].name.bytes);
    if (start && ++starts[start->file] > 1 && start->file < sheet.files.size() &&
        sheet.files[start->file].type == "WAVE")
      spread.tracks_in_one = true;
    if (!gap || !start) continue;
    if (gap->file != start->file && spread.pause_behind == 0) spread.pause_behind = gap->line;
    if (gap->file == start->file && starts[start->file] == 1 && used.size() > 1 &&
        spread.pause_in_front == 0)
      spread.pause_in_front = gap->line;
  }
  spread.files = used.size();
  return spread;
}

void checkSpread(const disc::Sheet& sheet, const Spread& spread, Findings& findings) {
  constexpr const char* kJoin =
      "Join the files into one image (--portable with --join IMAGE.bin does).";
  if (spread.files < 2) return;  // a file without a track is told by itself
  findings.addForReaders(
      {"several-files", spread.pause_behind > 0 ? "pause behind" : ""},
      {sheet.files[1].name.line, 0},
      "the disc lies in " + std::to_string(spread.files) + " files" +
          (spread.pause_behind > 0 ? ", and a pause ends the file before its track" : ""),
      kJoin);
  if (spread.pause_in_front > 0)
    findings.addForReaders("pause-begins-file", {spread.pause_in_front, 0},
                           "a file begins with its track's pause", kJoin);
}

/// The first FILE of that type, but for FLAC, of which its own rule tells; none: null.
const disc::File* firstOfType(const Disc& disc, std::string_view type) {
  for (size_t f = 0; f < disc.images.size(); ++f)
    if (disc.sheet.files[f].type == type && disc.images[f].container() != disc::Container::kFlac)
      return &disc.sheet.files[f];
  return nullptr;
}

/// The types that some reader does not take, though the rules have them.
void checkTypes(const Disc& disc, const Spread& spread, Findings& findings) {
  if (const disc::File* wave = firstOfType(disc, "WAVE"))
    findings.addForReaders({"type-not-for-all", spread.tracks_in_one ? "WAVE of tracks" : "WAVE"},
                           {wave->name.line, 0}, "the image is a WAVE file",
                           "Give these readers the samples as BINARY.");
  if (const disc::File* big = firstOfType(disc, "MOTOROLA"))
    findings.addForReaders({"type-not-for-all", "MOTOROLA"}, {big->name.line, 0},
                           "the image is big-endian",
                           "Give these readers the samples as BINARY, their bytes swapped.");
}

void checkSpelling(const disc::File& file, Findings& findings) {
  const std::string& name = file.name.bytes;
  const Place place{file.name.line, 0};
  if (file.type == "BINARY" && !disc::upperCase(name).ends_with(".BIN"))
    findings.addForReaders("image-not-bin", place,
                           "the image's name does not end in " + disc::inQuotes(".bin"),
                           "Name the image so.");
  if (name.starts_with("./") || name.find('\\') != std::string::npos)
    findings.addForReaders(
        "odd-file-name", place,
        "the name in FILE " +
            std::string(name.starts_with("./") ? "begins with ./" : "has a backslash"),
        "Name the image alone, beside the sheet.");
}

/// libcdio takes the sheet's name with ".bin" for the image's, whatever FILE says. Where sheet and
/// image cannot share a name the advice is of no use, and it is told only to who asks for libcdio.
void checkName(const Disc& disc, size_t files, Findings& findings) {
  const std::string stem = disc.name.stem().string();
  const ImageFile& image = disc.images.front();
  const auto folder = disc.name.parent_path().lexically_normal();
  const bool beside = image.path().lexically_normal().parent_path() == folder;
  if (!image.exists() || (beside && image.path().filename() == stem + ".bin")) return;
  const Place place{disc.sheet.files[0].name.line, 0};
  const std::string what =
      "the image is not " + disc::inQuotes(stem.substr(0, 200) + ".bin") + " beside the sheet";
  std::error_code error;
  const bool name_taken =
      beside && image.path().extension() == ".bin" &&
      std::filesystem::exists(std::filesystem::path(image.path()).replace_extension(".cue"), error);
  if (files > 1 || disc.sheet.files[0].type != "BINARY" || name_taken)
    findings.addHabit("image-named-otherwise", place, what,
                      "Copy the two into a folder of their own, under one name.");
  else
    findings.addForReaders("image-named-otherwise", place, what,
                           "Give sheet and image one name in one folder.");
}

}  // namespace

void checkFiles(const Disc& disc, Findings& findings) {
  if (disc.sheet.files.empty()) return;
  const Spread spread = spreadOf(disc.sheet);
  checkSpread(disc.sheet, spread, findings);
  checkTypes(disc, spread, findings);
  for (size_t f = 0; f < disc.images.size(); ++f)
    if (disc.images[f].exists()) checkSpelling(disc.sheet.files[f], findings);
  checkName(disc, spread.files, findings);
}

}  // namespace velmor::check
