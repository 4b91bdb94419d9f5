#include <algorithm>
#include <array>
#include <system_error>

#include "check/image/similar_file.h"
#include "check/rules/places.h"
#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"

namespace velmor::check {

namespace {

constexpr std::array<std::string_view, 5> kTypes = {"BINARY", "MOTOROLA", "WAVE", "AIFF", "MP3"};

std::string_view containerName(disc::Container container) {
  switch (container) {
    case disc::Container::kWave:
      return "WAVE";
    case disc::Container::kAiff:
      return "AIFF";
    case disc::Container::kFlac:
      return "FLAC";
    default:
      return "";
  }
}

std::string decodeFlac(const ImageFile& image) {
  std::filesystem::path decoded = image.path().filename();
  decoded.replace_extension(".wav");
  return "Decode it (flac -d) and write FILE " + disc::inQuotes(decoded.string().substr(0, 200)) +
         " WAVE.";
}

void addMislabelled(const disc::File& file, const ImageFile& image, const Place& place,
                    Findings& findings) {
  const std::string_view truly = containerName(image.container());
  std::string action = "Where it holds raw samples write BINARY, or MOTOROLA for big-endian ones.";
  if (image.container() == disc::Container::kFlac)
    action = decodeFlac(image);
  else if (!truly.empty())
    action = "It is " + std::string(truly) + ": write that.";
  findings.add(Severity::kError, "not-of-its-type", place,
               shown(image) + " is no " + file.type + " file", action, kSheetRules);
}

/// A file that names itself raw samples and has the header of a container. Answers whether it does.
bool checkRawHeader(const disc::File& file, const ImageFile& image, const Place& place,
                    Findings& findings) {
  if (image.container() == disc::Container::kOther || !image.readable() ||
      (file.type != "BINARY" && file.type != "MOTOROLA"))
    return false;
  const std::string name(containerName(image.container()));
  if (image.container() == disc::Container::kFlac)
    findings.add(Severity::kError, "header-in-image", place,
                 shown(image) + " is a FLAC file, and " + file.type +
                     " takes its compressed bytes for samples: they will sound as noise",
                 decodeFlac(image), kSheetRules);
  else
    findings.add(Severity::kError, "header-in-image", place,
                 shown(image) + " begins with the header of a " + name + " file, and " + file.type +
                     " takes its " + std::to_string(image.headerBytes()) +
                     " bytes for samples: they will sound",
                 "Write FILE " + shown(image) + ' ' + name + ", or cut the header off.",
                 kSheetRules);
  return true;
}

/// What cannot be looked into. Answers whether it is so.
bool checkNotLookedInto(const ImageFile& image, const Place& place, Findings& findings) {
  if (image.problem().empty()) return false;
  if (!image.wrongFormat().empty()) {
    findings.add(Severity::kError, "audio-format", place,
                 shown(image) + " is " + image.wrongFormat() +
                     ", and a disc is 16 bit, 44100 Hz, stereo: some readers refuse it, others "
                     "play it too slow, too fast or as noise",
                 "Convert it (sox IN.wav -b 16 -r 44100 -c 2 OUT.wav), or let velmor-render make "
                 "the disc.",
                 "Red Book (IEC 60908)");
  } else if (image.container() != disc::Container::kOther) {
    findings.add(Severity::kError, "audio-unreadable", place, image.problem(), "Export it again.");
  } else {
    findings.add(Severity::kWarning, "audio-not-checked", place,
                 "the samples of " + shown(image) + " are not looked into: " + image.problem(),
                 "Check them with a program that reads this format.");
  }
  return true;
}

void checkLength(const ImageFile& image, const Place& place, Findings& findings) {
  if (image.breaksOff())
    findings.add(Severity::kError, "audio-breaks-off", place,
                 shown(image) + " breaks off before the end of the audio that its header states: " +
                     disc::msfText(image.sectors()) + " of it are there",
                 "Copy or export it again.");
  else if (image.dataBytes() == 0)
    findings.add(Severity::kError, "image-empty", place, shown(image) + " holds no samples",
                 "Render it again; the render may have been broken off.");
  else if (image.dataBytes() % disc::kBytesPerSector != 0)
    findings.add(
        Severity::kWarning, "image-not-whole-sectors", place,
        shown(image) + " has " + std::to_string(image.dataBytes() % disc::kBytesPerSector) +
            " bytes beyond its last whole sector of 2352",
        "Pad it with zeros to a whole sector, or render it again.", "Red Book (IEC 60908)");
}

std::string hintFor(const std::filesystem::path& missing, const std::filesystem::path& folder) {
  const auto similar = similarFile(missing, folder);
  if (!similar) return "Put it beside the sheet under the name that FILE gives.";
  return "There is " + disc::inQuotes(similar->string()) +
         " beside the sheet: name that one in FILE.";
}

/// Does a name that counts from the sheet's folder mean another file from the current one?
bool isSoughtElsewhere(const disc::File& file, const std::filesystem::path& folder) {
  std::error_code error;
  return std::filesystem::path(file.name.bytes).is_relative() &&
         !std::filesystem::equivalent(folder.empty() ? "." : folder, ".", error);
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
  if (isSoughtElsewhere(file, folder))
    findings.addHabit("file-from-working-folder", place,
                      disc::inQuotes(file.name.bytes.substr(0, 200)) +
                          " counts from the sheet's folder, which is not the one you are in",
                      "Start cdrskin in the sheet's folder.");
  if (!image.exists()) {
    findings.add(
        Severity::kError, "image-missing", place,
        disc::inQuotes(file.name.bytes.substr(0, 200)) + " cannot be opened: " + image.problem(),
        hintFor(file.name.bytes, folder));
    return;
  }
  if (image.mislabelled()) {
    addMislabelled(file, image, place, findings);
    return;
  }
  if (image.container() == disc::Container::kFlac && file.type == "WAVE")
    findings.addForReaders("flac-as-wave", place,
                           shown(image) + " is a FLAC file, and the sheet calls it WAVE",
                           decodeFlac(image));
  if (checkNotLookedInto(image, place, findings)) return;
  if (!checkRawHeader(file, image, place, findings)) checkLength(image, place, findings);
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
