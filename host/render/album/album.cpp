#include "host/render/album/album.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <utility>

#include "disc/units/disc_time.h"
#include "disc/units/disc_units.h"
#include "host/render/album/disc_fields.h"
#include "host/render/album/mark_names.h"
#include "host/render/album/range_warnings.h"
#include "host/render/album/render_range.h"
#include "host/render/album/sheet_text.h"
#include "host/render/input/marks/label_track.h"
#include "host/render/options/usage_error.h"

namespace velmor::render {

namespace {

std::string inputTitle(const InputInfo& info) {
  return info.tags.title.empty() ? std::filesystem::path(info.path).stem().string()
                                 : info.tags.title;
}

bool canNameTrack(const Mark& mark, const Options& options) {
  if (options.track_mode == kTracksFromRegions) return mark.end.has_value();
  return !mark.end && namesTrack(mark.name, options.hash_markers_only);
}

bool overlap(const Mark& a, const Mark& b) {
  return a.end && b.end && a.start < *b.end && b.start < *a.end;
}

/// Whether one of the other marks, which the user or the files have set, stands where an input's
/// own mark would go and makes that one superfluous.
bool isReplaced(const Mark& own, const std::vector<Mark>& others, const Options& options) {
  constexpr double kOneFrame = 1.0 / disc::kSampleRate;
  return std::any_of(others.begin(), others.end(), [&](const Mark& other) {
    if (!canNameTrack(other, options)) return false;
    return own.end ? overlap(own, other)
                   : std::abs(other.start - own.start) <= kOneFrame * 1.000001;
  });
}

/// Where to put the tags of an input so that every track with its audio gets them: at its own mark
/// or, in regions mode, at the start of each region that replaces that mark. Seconds of the
/// timeline, ascending, never empty.
std::vector<double> tagPlaces(const Mark& own, const std::vector<Mark>& others) {
  std::vector<double> places;
  for (const Mark& other : others) {
    if (overlap(own, other)) places.push_back(std::max(own.start, other.start));
  }
  if (places.empty()) places.push_back(own.start);
  std::sort(places.begin(), places.end());
  return places;
}

/// Where an input's audio begins in the render: at its start, or at the render's start when that
/// lies inside the input. For an input that ends before the render begins, its start. Seconds of
/// the timeline.
double startInRange(const Album& album, const AlbumInput& input) {
  const bool is_cut = input.start + input.info.frames > album.render_start;
  return disc::secondsOf(is_cut ? std::max(input.start, album.render_start) : input.start);
}

std::vector<Mark> givenMarks(const Options& options, Album& album) {
  std::vector<Mark> marks = options.marks;
  if (!options.labels.empty()) {
    LabelTrack labels = readLabelTrack(options.labels);
    marks.insert(marks.end(), labels.marks.begin(), labels.marks.end());
    album.warnings.insert(album.warnings.end(), labels.warnings.begin(), labels.warnings.end());
  }
  if (options.embedded_markers) {
    for (const AlbumInput& input : album.inputs) {
      for (Mark mark : input.info.marks) {
        mark.start += disc::secondsOf(input.start);
        if (mark.end) *mark.end += disc::secondsOf(input.start);
        marks.push_back(std::move(mark));
      }
    }
  }
  return marks;
}

/// Adds the marks that an input brings by itself: one where it starts (in regions mode, one that it
/// spans), and tags for the performer and the ISRC that the disc as a whole does not have.
void addInputMarks(const Options& options, const Album& album, size_t index,
                   const std::string& disc_performer, const std::vector<Mark>& others,
                   std::vector<Mark>& marks) {
  const AlbumInput& input = album.inputs[index];
  Mark own;
  own.input = static_cast<int>(index) + 1;
  own.start = disc::secondsOf(input.start);
  own.name = inputTitle(input.info);
  if (options.track_mode == kTracksFromRegions)
    own.end = disc::secondsOf(input.start + input.info.frames);
  if (options.track_mode == kTracksFromMarkers) {
    if (options.hash_markers_only) {
      own.name.insert(0, 1, '#');
    } else if (!namesTrack(own.name, false)) {
      own.name.insert(0, 1, ' ');  // a title that reads like a tag would become one
    }
  }
  if (options.track_mode != kOneTrack && !isReplaced(own, others, options)) marks.push_back(own);
  const std::vector<double> places = tagPlaces(own, others);
  const std::string& artist = input.info.tags.artist;
  if (options.track_mode != kOneTrack && !artist.empty() && artist != disc_performer) {
    for (const double place : places) {
      marks.push_back({place, std::nullopt, "PERF=" + artist, own.input});
    }
  }
  const auto given = options.isrcs.find(own.input);
  const std::string code = given != options.isrcs.end() ? given->second : input.info.tags.isrc;
  if (code.empty()) return;
  const double place =
      options.track_mode == kOneTrack ? startInRange(album, input) : places.front();
  marks.push_back({place, std::nullopt, "ISRC=" + code, own.input});
}

std::vector<Mark> allMarks(const Options& options, Album& album,
                           const std::string& disc_performer) {
  std::vector<Mark> others = givenMarks(options, album);
  std::vector<Mark> marks;
  for (size_t i = 0; i < album.inputs.size(); ++i) {
    addInputMarks(options, album, i, disc_performer, others, marks);
  }
  marks.insert(marks.end(), others.begin(), others.end());
  std::stable_sort(marks.begin(), marks.end(),
                   [](const Mark& a, const Mark& b) { return a.start < b.start; });
  return marks;
}

void placeInputs(Album& album, std::vector<InputInfo> infos) {
  int64_t at = 0;
  for (InputInfo& info : infos) {
    const int64_t frames = info.frames;
    album.inputs.push_back({std::move(info), at});
    at += frames;
  }
  album.render_end = at;
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

}  // namespace

Album layOutAlbum(const Options& options) {
  std::vector<InputInfo> infos;
  for (const std::string& path : options.inputs) {
    infos.push_back(AudioInput::open(path, options.dither)->info());
  }
  return layOutAlbum(options, std::move(infos));
}

Album layOutAlbum(const Options& options, std::vector<InputInfo> infos) {
  Album album;
  placeInputs(album, std::move(infos));
  setRange(options, album);
  const AlbumTexts texts = discTexts(options.texts, album.inputs);
  album.project.metadata = sinkMetadata(texts, album.warnings);
  std::vector<Mark> marks = allMarks(options, album, texts.performer);
  for (Mark& mark : marks) mark.name = fitForSheet(mark.name, album.warnings);
  warnBeyondAudio(options, marks, album);
  std::vector<Mark> left_out;
  album.project.marks = marksInRange(std::move(marks), album.render_start, album.render_end,
                                     options.track_mode, options.hash_markers_only, left_out);
  warnOutsideRange(options, left_out, album);
  if (options.track_mode == kTracksFromRegions) {
    dropEmptyRegions(album.project.marks, album.warnings);
  }
  return album;
}

}  // namespace velmor::render
