#include "host/render/album/album.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "disc/text/phrases.h"
#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/album/disc_fields.h"
#include "host/render/album/own_marks.h"
#include "host/render/album/range_warnings.h"
#include "host/render/album/render_range.h"
#include "host/render/album/sheet_text.h"
#include "host/render/album/track_mode.h"
#include "host/render/input/marks/label_track.h"
#include "host/render/input/silences.h"
#include "host/render/options/usage_error.h"

namespace velmor::render {

namespace {

/// Tells the marks of the pauses, which begin at `pauses` and end at the next mark.
void endPauses(const std::vector<double>& pauses, std::vector<Mark>& marks) {
  for (const double pause : pauses) {
    const auto end = std::find_if(marks.begin(), marks.end(),
                                  [&](const Mark& mark) { return mark.start > pause; });
    if (end != marks.end()) end->pause_before = end->start - pause;
  }
}

/// The marks of the album's inputs, on its timeline.
std::vector<Mark> marksOfInputs(const Options& options, const Album& album) {
  std::vector<Mark> marks;
  std::vector<double> pauses;
  for (const AlbumInput& input : album.inputs) {
    const double start = disc::secondsOf(input.start);
    for (const double pause : input.info.pauses) pauses.push_back(start + pause);
    for (Mark mark : input.info.marks) {
      // Those of a sheet have a giver already; the sheet was named on purpose.
      const bool is_embedded = mark.given_by.empty();
      if (is_embedded && !options.embedded_markers) continue;
      if (is_embedded) mark.given_by = "inside " + disc::inQuotes(input.info.path);
      mark.start += start;
      if (mark.end) *mark.end += start;
      marks.push_back(std::move(mark));
    }
  }
  endPauses(pauses, marks);
  return marks;
}

std::vector<Mark> givenMarks(const Options& options, Album& album) {
  std::vector<Mark> marks = options.marks;
  if (!options.labels.empty()) {
    const LabelTrack labels = readLabelTrack(options.labels);
    marks.insert(marks.end(), labels.marks.begin(), labels.marks.end());
    album.warnings.insert(album.warnings.end(), labels.warnings.begin(), labels.warnings.end());
  }
  const std::vector<Mark> of_inputs = marksOfInputs(options, album);
  marks.insert(marks.end(), of_inputs.begin(), of_inputs.end());
  return marks;
}

/// `given`, and before them what the inputs bring by themselves.
std::vector<Mark> allMarks(const Options& options, const Album& album,
                           const std::string& disc_performer, const std::vector<Mark>& given) {
  std::vector<Mark> marks = ownMarks(options, album, disc_performer, given);
  marks.insert(marks.end(), given.begin(), given.end());
  std::stable_sort(marks.begin(), marks.end(),
                   [](const Mark& a, const Mark& b) { return a.start < b.start; });
  return marks;
}

/// Inputs of the numbers from `first` to `last` make one track, as far as no mark cuts it.
void join(const Options& options, Album& album) {
  for (const InputRange& joined : options.joined) {
    for (AlbumInput& input : album.inputs) {
      const int number = input.info.number;
      const bool is_behind = number > joined.first && number <= joined.last;
      if (is_behind && input.info.beginning == Beginning::kTrack) {
        input.info.beginning = Beginning::kJoined;
      }
    }
  }
}

void placeInputs(Album& album, std::vector<InputInfo> infos) {
  int64_t at = 0;
  for (InputInfo& info : infos) {
    const int64_t frames = info.frames;
    if (info.number == 0) info.number = static_cast<int>(album.inputs.size()) + 1;
    album.inputs.push_back({std::move(info), at});
    at += frames;
  }
  album.render_end = at;
}

/// Files older than Unicode have texts in the encoding of the system they were made on, which
/// nothing tells.
void warnOfConvertedTexts(Album& album) {
  for (const AlbumInput& input : album.inputs) {
    std::vector<std::string> quoted;
    for (const std::string& text : input.info.tags.converted) {
      const std::string name = disc::inQuotes(text);
      if (std::find(quoted.begin(), quoted.end(), name) == quoted.end()) quoted.push_back(name);
    }
    if (quoted.empty()) continue;
    const bool one = quoted.size() == 1;
    album.warnings.push_back(
        disc::listed(quoted) + " in " + disc::inQuotes(input.info.path) +
        (one ? " is no UTF-8 there and is read as Windows-1252; look whether it is right"
             : " are no UTF-8 there and are read as Windows-1252; look whether they are right"));
  }
}

/// Refuses a time like 01:02:03 where both of its readings lie inside the album: a track an hour
/// from its place would be noticed by nobody before the disc is played.
void refuseTwoFacedTimes(const std::vector<TwoFacedTime>& times, const Album& album) {
  for (const TwoFacedTime& time : times) {
    if (time.as_hours >= disc::secondsOf(album.render_end)) continue;
    const auto sectors = static_cast<int64_t>(time.as_hours * disc::kSectorsPerSecond);
    throw UsageError(disc::inQuotes(time.text) +
                     " may be hours, minutes and seconds, or MM:SS:FF; give " +
                     disc::clockTime(time.as_hours) + " or " + disc::msfText(sectors) +
                     " for the one, " + disc::clockTime(time.as_frames) + " for the other");
  }
}

void setRange(const Options& options, Album& album) {
  const int64_t whole = album.render_end;
  const auto frame = [](double time) {
    return static_cast<int64_t>(std::min(time * disc::kSampleRate + 0.5, 9.0e15));
  };
  if (options.start) album.render_start = frame(*options.start);
  if (options.end) album.render_end = std::min(frame(*options.end), whole);
  if (album.render_start >= whole) {
    throw UsageError("--start lies at " + disc::clockTime(*options.start) +
                     ", but the inputs end at " + disc::clockTime(disc::secondsOf(whole)));
  }
  if (album.render_start >= album.render_end) {
    throw UsageError("there is nothing to render between --start and --end");
  }
}

/// What a source says of itself or, where it belongs to a cue sheet, what that says of it.
InputInfo infoOf(const AudioSource& source, const Options& options) {
  InputInfo info = AudioInput::open(source.path, options.dither, source.raw)->info();
  info.number = source.number;
  if (!source.sheet) {
    if (!options.embedded_markers) info.silences.clear();
    info.frames += framesOf(info.silences);
    return info;
  }
  if (options.isrcs.count(source.number) > 0) {
    throw UsageError("--isrc for input " + std::to_string(source.number) +
                     ", which is a cue sheet: its tracks have their ISRCs there");
  }
  info.tags = source.sheet->tags;
  info.marks = source.sheet->marks.marks;
  info.pauses = source.sheet->marks.pauses;
  info.silences = source.sheet->marks.silences;
  info.frames += framesOf(info.silences);
  info.warnings = source.sheet->warnings;
  info.beginning = Beginning::kNothing;
  return info;
}

/// Whether the tracks will be those of one sheet, with no lead-ins and no cuts of the user's own.
bool isSheetAsItIs(const Options& options, const std::vector<AudioSource>& sources) {
  return options.inputs.size() == 1 && !sources.empty() && sources.front().sheet &&
         options.disc_leadin_ms == 0 && options.track_leadin_ms == 0 && options.marks.empty() &&
         options.labels.empty() && !options.start && !options.end &&
         options.track_mode.value_or(kTracksFromMarkers) == kTracksFromMarkers &&
         !options.hash_markers_only;
}

}  // namespace

Album layOutAlbum(const Options& options) {
  return layOutAlbum(options, sourcesOf(options.inputs));
}

Album layOutAlbum(const Options& options, const std::vector<AudioSource>& sources) {
  std::vector<InputInfo> infos;
  infos.reserve(sources.size());
  for (const AudioSource& source : sources) infos.push_back(infoOf(source, options));
  const LeadIns taken = isSheetAsItIs(options, sources) ? takeLeadIns(infos) : LeadIns{};
  Album album = layOutAlbum(options, std::move(infos));
  if (taken.disc_ms > 0) album.lead_ins.disc_ms = taken.disc_ms;
  if (taken.track_ms > 0) album.lead_ins.track_ms = taken.track_ms;
  return album;
}

Album layOutAlbum(const Options& options, std::vector<InputInfo> infos) {
  Album album;
  album.lead_ins = {options.disc_leadin_ms, options.track_leadin_ms};
  placeInputs(album, std::move(infos));
  join(options, album);
  refuseTwoFacedTimes(options.two_faced_times, album);
  setRange(options, album);
  for (const AlbumInput& input : album.inputs) {
    const std::vector<std::string>& more = input.info.warnings;
    album.warnings.insert(album.warnings.end(), more.begin(), more.end());
  }
  warnOfConvertedTexts(album);
  const std::vector<Mark> given = givenMarks(options, album);
  album.track_mode = options.track_mode ? *options.track_mode : modeFor(given, album.warnings);
  const AlbumTexts texts = discTexts(options.texts, album.inputs);
  album.date = sharedTag(album.inputs, &Tags::date);
  album.genre = sharedTag(album.inputs, &Tags::genre);
  album.project.metadata = sinkMetadata(texts, album.warnings);
  std::vector<Mark> marks = allMarks(options, album, texts.performer, given);
  for (Mark& mark : marks) mark.name = fitForSheet(mark.name, album.warnings);
  warnBeyondAudio(options, marks, album);
  std::vector<Mark>& left_out = album.marks_outside;
  album.project.marks = marksInRange(std::move(marks), album.render_start, album.render_end,
                                     album.track_mode, options.hash_markers_only, left_out);
  warnOutsideRange(options, left_out, album);
  if (album.track_mode == kTracksFromRegions) {
    album.empty_regions = takeEmptyRegions(album.project.marks);
  }
  return album;
}

}  // namespace velmor::render
