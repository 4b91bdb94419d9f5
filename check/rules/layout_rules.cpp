#include <algorithm>

#include "check/rules/rules.h"
#include "disc/sheet/sheet.h"
#include "disc/text/phrases.h"
#include "disc/units/disc_limits.h"
#include "disc/units/disc_time.h"

namespace velmor::check {

namespace {

constexpr std::string_view kRedBook = "Red Book (IEC 60908)";
constexpr std::string_view kAtip = "Orange Book (ATIP)";

void checkNumber(const disc::Track& t, const Place& place, int expected, size_t tracks,
                 Findings& findings) {
  if (t.number >= 0 && t.number != expected)
    findings.add(
        Severity::kError, "track-number", place,
        "TRACK " + std::to_string(t.number) + " where " + std::to_string(expected) + " is expected",
        "Number the tracks without gaps.", kRedBook);
  else if (t.number > disc::kMostTracks && tracks <= disc::kMostTracks)
    findings.add(Severity::kError, "track-number", place,
                 "TRACK " + std::to_string(t.number) + "; the last number that a disc has is 99",
                 "Begin with a lower number.", kRedBook);
}

void checkNumbers(const disc::Sheet& sheet, Findings& findings) {
  if (sheet.tracks.empty()) {
    findings.add(Severity::kError, "no-tracks", {}, "the sheet has no TRACK",
                 "Check that this is a cue sheet, and that its render was finished.", kRedBook);
    return;
  }
  if (sheet.tracks.size() > disc::kMostTracks)
    findings.add(Severity::kError, "too-many-tracks",
                 {sheet.tracks[disc::kMostTracks].line, disc::kMostTracks + 1},
                 "the sheet has " + std::to_string(sheet.tracks_in_all) + " tracks; a disc has 99",
                 "Join tracks, or make two discs.", kRedBook);
  if (sheet.tracks.front().number > 1)
    findings.addForReaders("first-track-not-1", {sheet.tracks.front().line, 1},
                           "the first track is " + std::to_string(sheet.tracks.front().number),
                           "Number the tracks from 1.");
  if (sheet.tracks.size() == 1)
    findings.addHabit("one-track", {sheet.tracks.front().line, 1}, "the disc has one track",
                      "There is nothing to split.");
  int expected = std::max(sheet.tracks.front().number, 1);
  int counted = 0;
  for (const disc::Track& t : sheet.tracks) {
    checkNumber(t, {t.line, ++counted}, expected, sheet.tracks.size(), findings);
    expected = (t.number < 0 ? expected : t.number) + 1;
  }
}

/// `what` begins the sentence about a time that no disc has room for.
void checkTime(const disc::Msf& time, const std::string& what, const Place& place,
               Findings& findings) {
  if (!time.readable()) return;
  if (!time.inRange())
    findings.add(Severity::kError, "time-out-of-range", place,
                 "the time has seconds above 59 or frames above 74",
                 "Seconds go to 59, frames (sectors) to 74.", kRedBook);
  if (time.minutes >= 100)
    findings.add(Severity::kError, "minutes-over-99", place,
                 what + " 100 minutes or more, which no disc has room for", "Make two discs.",
                 kRedBook);
}

void checkIndices(const disc::Track& t, int track, Findings& findings) {
  if (t.pregap) checkTime(*t.pregap, "PREGAP lasts", {t.line, track}, findings);
  for (const disc::Index& i : t.indices)
    checkTime(i.time, "the index lies at", {i.line, track}, findings);
  if (t.postgap) checkTime(*t.postgap, "POSTGAP lasts", {t.line, track}, findings);
  if (!t.index(1))
    findings.add(Severity::kError, "no-index-01", {t.line, track}, "the track has no INDEX 01",
                 "Give the time at which it starts.", kSheetRules);
  for (size_t i = 1; i < t.indices.size(); ++i) {
    const disc::Index& before = t.indices[i - 1];
    const disc::Index& here = t.indices[i];
    const bool known = here.number >= 0 && before.number >= 0;
    if (known && here.number != before.number + 1)
      findings.add(Severity::kError, "index-order", {here.line, track},
                   "INDEX " + std::to_string(here.number) + " follows INDEX " +
                       std::to_string(before.number),
                   "Number the indices one after the other.", kSheetRules);
  }
  if (!t.indices.empty() && t.indices.front().number > 1)
    findings.add(Severity::kError, "index-order", {t.indices.front().line, track},
                 "the first index of the track is " + std::to_string(t.indices.front().number),
                 "Begin with INDEX 00 or 01.", kSheetRules);
}

void addOrder(const disc::Index& before, const disc::Index& here, int track, Findings& findings) {
  const bool empty_gap =
      before.number == 0 && here.number == 1 && before.time.sectors() == here.time.sectors();
  if (empty_gap)
    findings.add(Severity::kError, "empty-gap", {here.line, track},
                 "INDEX 00 and INDEX 01 are the same sector: there is no gap",
                 "Remove INDEX 00 (--portable does), or make the lead-in at least a second long.",
                 kSheetRules);
  else
    findings.add(Severity::kError, "indices-descend", {here.line, track},
                 "the index lies at or before the one that it follows",
                 "Indices ascend through a file: correct the time.", kSheetRules);
}

void checkOrder(const disc::Sheet& sheet, Findings& findings) {
  const disc::Index* before = nullptr;
  int number = 0;
  for (const disc::Track& t : sheet.tracks) {
    ++number;
    for (const disc::Index& i : t.indices) {
      if (!i.time.readable()) continue;
      const bool same_file = before && before->file == i.file;
      if (same_file && i.time.sectors() <= before->time.sectors())
        addOrder(*before, i, number, findings);
      if (!same_file && i.time.sectors() != 0)
        findings.add(
            i.number == 0 || before ? Severity::kError : Severity::kWarning,
            {"file-starts-late", i.number == 1 && !before ? "track 1" : ""}, {i.line, number},
            "the first index of the file is " + disc::msfText(i.time.sectors()) +
                "; what lies before it is in no track",
            "Begin the file at 00:00:00, with INDEX 00 where it is a lead-in.", kSheetRules);
      before = &i;
    }
  }
}

void checkLengths(const Disc& disc, Findings& findings) {
  for (size_t t = 0; t < disc.places.size(); ++t) {
    if (!disc.places[t] || !disc.places[t]->end_known) continue;
    const TrackPlace& place = *disc.places[t];
    const int64_t length = place.own_end - place.start;
    if (length > 0 && length < disc::kShortestTrackSectors)
      findings.add(Severity::kError, "track-under-4-s",
                   {disc.sheet.tracks[t].line, static_cast<int>(t) + 1},
                   "the track lasts " + disc::counted(length, "sector") +
                       "; 300 (4 s) is the least, and cdrdao warns of it",
                   "Join it to a neighbour, or let it last longer.", kRedBook);
  }
}

void checkDiscLength(const Disc& disc, Findings& findings) {
  if (!disc.length_known || disc.length == 0) return;
  const std::string length =
      disc::msfText(disc.length) + " (" + std::to_string(disc.length) + " sectors)";
  if (disc.length - 1 > disc::kLastSector)
    findings.add(Severity::kError, "disc-too-long", {},
                 "the disc lasts " + length + "; its last sector may be " +
                     std::to_string(disc::kLastSector) + " at most",
                 "Make two discs.", kAtip);
  else if (disc.length > disc::kSectorsOf79Minutes57)
    findings.add(Severity::kWarning, "over-79-57", {},
                 "the disc lasts " + length + ", more than the 79:57 of a long blank",
                 "Ask the plant, or shorten it.", kAtip);
  else if (disc.length > disc::kSectorsOf74Minutes)
    findings.add(Severity::kNote, "over-74-minutes", {},
                 "the disc lasts " + length + ", more than the 74 minutes of a standard disc",
                 "Use an 80-minute blank; ask the plant.", kAtip);
}

void checkLeadIns(const disc::Sheet& sheet, Findings& findings) {
  int number = 0;
  for (const disc::Track& t : sheet.tracks) {
    ++number;
    const disc::Index* gap = t.index(0);
    if (!gap) continue;
    if (number == 1) {
      findings.add(Severity::kNote, "lead-in-on-top", {gap->line, 1},
                   "track 1 has a lead-in inside the image; it comes on top of the 150 sectors "
                   "that every disc has before track 1",
                   "Nothing, if that is meant.", "Red Book, MMC");
      findings.addHabit("lead-in-is-track-0", {gap->line, 1}, "track 1 has a lead-in",
                        "Throw track 00 away after splitting.");
    }
    findings.addHabit("gap-thrown-away", {gap->line, number}, "the track has an INDEX 00",
                      "Split with another program where the gaps hold sound.");
  }
}

}  // namespace

void checkLayout(const Disc& disc, Findings& findings) {
  checkNumbers(disc.sheet, findings);
  int number = 0;
  for (const disc::Track& t : disc.sheet.tracks) checkIndices(t, ++number, findings);
  checkOrder(disc.sheet, findings);
  checkLengths(disc, findings);
  checkDiscLength(disc, findings);
  checkLeadIns(disc.sheet, findings);
}

}  // namespace velmor::check
