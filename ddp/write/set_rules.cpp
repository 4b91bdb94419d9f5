#include "ddp/write/set_rules.h"

#include "disc/ddp/identifier.h"
#include "disc/ddp/sheet_flags.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_units.h"

namespace velmor::ddp {

namespace {

using check::Findings;
using check::Severity;

void checkTracks(const disc::Sheet& sheet, Findings& findings) {
  int number = 0;
  for (const disc::Track& track : sheet.tracks) {
    ++number;
    if (!track.isAudio())
      findings.add(Severity::kError, "set-holds-audio-only", {track.line, number},
                   "the track is " + disc::inQuotes(track.mode) + ", and a set holds audio tracks",
                   "Leave it out, or write AUDIO where it is audio.", kLevel);
    const TrackFlags flags = flagsOf(track);
    if (flags.copy_permitted && flags.serial_copies)
      findings.add(Severity::kError, "copy-flags", {track.flags->line, number},
                   "FLAGS has DCP, which permits copies, and SCMS, which limits them",
                   "Keep one of them.", kLevel);
  }
  if (!sheet.tracks.empty() && sheet.tracks.front().number > 1)
    findings.add(Severity::kError, "first-track", {sheet.tracks.front().line, 1},
                 "the first track is number " + std::to_string(sheet.tracks.front().number),
                 "A set counts its tracks from 1: number them so.", kLevel);
}

void checkImage(const check::ImageFile& image, const disc::File& file, bool is_last,
                Findings& findings) {
  if (!image.exists() || image.mislabelled()) return;
  const std::string name = disc::inQuotes(image.path().filename().string());
  if (!image.readable()) {
    // Of the kinds that the checker knows it has told the reason itself.
    if (image.container() != disc::Container::kOther) return;
    findings.add(Severity::kError, "audio-not-taken", {file.name.line},
                 name + " cannot become the audio of a set: " + image.problem(),
                 "Convert it to 16-bit 44100 Hz stereo, WAVE or BINARY.", kLevel);
  } else if (!is_last && image.dataBytes() % disc::kBytesPerSector != 0) {
    findings.add(Severity::kError, "file-ends-inside-sector", {file.name.line},
                 name + " ends inside a sector, and another FILE follows",
                 "Cut or pad it to a whole number of 588 samples; only the last may end anywhere.",
                 "Red Book (IEC 60908)");
  }
}

void checkSetImages(const check::Disc& disc, Findings& findings) {
  const std::vector<bool> used = check::filesInUse(disc.sheet);
  size_t last = 0;
  for (size_t f = 0; f < used.size(); ++f)
    if (used[f]) last = f;
  for (size_t f = 0; f < disc.images.size(); ++f)
    if (used[f]) checkImage(disc.images[f], disc.sheet.files[f], f == last, findings);
}

}  // namespace

void checkForSet(const check::Disc& disc, Findings& findings) {
  checkTracks(disc.sheet, findings);
  checkSetImages(disc, findings);
}

}  // namespace velmor::ddp
