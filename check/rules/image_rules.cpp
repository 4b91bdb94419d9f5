#include <algorithm>
#include <array>

#include "check/image/similar_file.h"
#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

constexpr std::array<std::string_view, 5> kTypes = {"BINARY", "MOTOROLA", "WAVE", "AIFF", "MP3"};

std::string shown(const ImageFile& image) {
  return disc::inQuotes(image.path().filename().string().substr(0, 200));
}

std::string hintFor(const std::filesystem::path& missing, const std::filesystem::path& folder) {
  const auto similar = similarFile(missing, folder);
  if (!similar) return "Put it beside the sheet under the name that FILE gives.";
  return "There is " + disc::inQuotes(similar->string()) +
         " beside the sheet: name that one in FILE.";
}

void checkFile(const disc::File& file, const ImageFile& image, const std::filesystem::path& folder,
               Findings& findings) {
  const Place& place{file.name.line, 0};
  if (std::find(kTypes.begin(), kTypes.end(), file.type) == kTypes.end())
    findings.add(
        Severity::kError, "file-type", place,
        "FILE has the type " + disc::inQuotes(file.type.substr(0, 40)),
        "It is one of BINARY, MOTOROLA, WAVE, AIFF, MP3: decode other audio to one of them.",
        kSheetRules);
  if (file.name.bytes.find('"') != std::string::npos)
    findings.addForReaders("quote-in-file-name", place, "the name in FILE has a quote inside",
                           "Rename the image.");
  if (!image.exists()) {
    findings.add(
        Severity::kError, "image-missing", place,
        disc::inQuotes(file.name.bytes.substr(0, 200)) + " cannot be opened: " + image.problem(),
        hintFor(file.name.bytes, folder));
    return;
  }
  if (image.mislabelled()) {
    findings.add(
        Severity::kError, "not-of-its-type", place, shown(image) + " is no " + file.type + " file",
        "Where it holds raw samples write BINARY, or MOTOROLA for big-endian ones.", kSheetRules);
    return;
  }
  if (!image.problem().empty()) {
    findings.add(Severity::kWarning, "audio-not-checked", place,
                 "the samples of " + shown(image) + " are not looked into: " + image.problem(),
                 "Check them with a program that reads this format.");
    return;
  }
  if (image.dataBytes() == 0)
    findings.add(Severity::kError, "image-empty", place, shown(image) + " holds no samples",
                 "Render it again; the render may have been broken off.");
  if (image.dataBytes() % disc::kBytesPerSector != 0)
    findings.add(
        Severity::kWarning, "image-not-whole-sectors", place,
        shown(image) + " has " + std::to_string(image.dataBytes() % disc::kBytesPerSector) +
            " bytes beyond its last whole sector of 2352",
        "Pad it with zeros to a whole sector, or render it again.", "Red Book (IEC 60908)");
  if (file.type == "MOTOROLA")
    findings.add(Severity::kNote, "byte-order", place,
                 "MOTOROLA says that the samples are big-endian; most images are little-endian",
                 "Listen to it: in the wrong order it is noise.", "CDRWIN");
  if (file.type == "BINARY")
    findings.addHabit("raw-byte-order", place, "BINARY says that the samples are little-endian",
                      "Use --toc for a sheet that says so.");
}

void checkPastEnd(const Disc& disc, Findings& findings) {
  int number = 0;
  for (const disc::Track& t : disc.sheet.tracks) {
    ++number;
    for (const disc::Index& i : t.indices) {
      if (i.file >= disc.images.size() || !i.time.readable()) continue;
      const ImageFile& image = disc.images[i.file];
      if (!image.readable() || i.time.sectors() < image.sectors()) continue;
      // Readers measure the last track by its start; of another one they go by the track behind it.
      const bool last = &t == &disc.sheet.tracks.back() && i.number <= 1;
      findings.add(Severity::kError, {"index-past-end", last ? "" : "inside"}, {i.line, number},
                   "the index is sector " + std::to_string(i.time.sectors()) + ", and " +
                       shown(image) + " has " + std::to_string(image.sectors()),
                   "The image is too short or belongs to another sheet: render it again.",
                   kSheetRules);
      break;
    }
  }
}

void checkUse(const disc::Sheet& sheet, Findings& findings) {
  const std::vector<bool> used = filesInUse(sheet);
  for (size_t f = 0; f < used.size() && !sheet.tracks.empty(); ++f)
    if (!used[f])
      findings.add(Severity::kWarning, "file-without-track", {sheet.files[f].name.line, 0},
                   "no index stands in this FILE: it is not on the disc",
                   "Remove the line, or give it the track that is missing.", kSheetRules);
}

}  // namespace

void checkImages(const Disc& disc, Findings& findings) {
  if (disc.sheet.files.empty()) {
    findings.add(Severity::kError, "no-file", {}, "the sheet names no FILE",
                 "Name the image: FILE \"name.bin\" BINARY.", kSheetRules);
    return;
  }
  for (size_t f = 0; f < disc.images.size(); ++f)
    checkFile(disc.sheet.files[f], disc.images[f], disc.name.parent_path(), findings);
  if (disc.images.size() < disc.sheet.files.size())
    findings.add(Severity::kError, "too-many-files",
                 {disc.sheet.files[disc.images.size()].name.line, 0},
                 "the sheet names " + std::to_string(disc.sheet.files.size()) +
                     " files; those from here on are not opened",
                 "A disc has 99 tracks at most: join the files.");
  checkUse(disc.sheet, findings);
  checkPastEnd(disc, findings);
}

}  // namespace velmor::check
