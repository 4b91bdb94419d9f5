#include "host/render/album/own_marks.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>

#include "disc/units/disc_limits.h"
#include "disc/units/disc_units.h"
#include "host/render/album/mark_names.h"

namespace velmor::render {

namespace {

std::string inputTitle(const InputInfo& info) {
  return info.tags.title.empty() ? std::filesystem::path(info.path).stem().string()
                                 : info.tags.title;
}

bool overlap(const Mark& a, const Mark& b) {
  return a.end && b.end && a.start < *b.end && b.start < *a.end;
}

/// The markers of `given` that make a track, or name track 1, where there are no others: a marker
/// within four seconds of the track before makes none. Seconds of the timeline, ascending.
std::vector<double> startsOfTracks(const std::vector<Mark>& given, bool hash_only,
                                   double render_start) {
  std::vector<double> named;
  for (const Mark& mark : given)
    if (!mark.end && namesTrack(mark.name, hash_only)) named.push_back(mark.start);
  std::sort(named.begin(), named.end());
  std::vector<double> starts;
  double last = render_start;
  for (const double start : named) {
    const bool makes_track = start - last >= disc::kShortestTrackSeconds;
    if (!makes_track && !starts.empty()) continue;
    starts.push_back(start);
    if (makes_track) last = start;
  }
  return starts;
}

/// Where to put the tags of an input so that every track with its audio gets them: at its own mark
/// or, in regions mode, at the start of each region that replaces that mark. Seconds of the
/// timeline, ascending, never empty.
std::vector<double> tagPlaces(const Mark& own, const std::vector<Mark>& given) {
  std::vector<double> places;
  for (const Mark& other : given) {
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

class OwnMarks {
 public:
  OwnMarks(const Options& options, const Album& album, const std::string& disc_performer,
           const std::vector<Mark>& given)
      : m_options(options),
        m_album(album),
        m_disc_performer(disc_performer),
        m_given(given),
        m_starts(startsOfTracks(given, options.hash_markers_only,
                                disc::secondsOf(album.render_start))) {}

  void add(size_t index, std::vector<Mark>& marks) const {
    const AlbumInput& input = m_album.inputs[index];
    const Mark own = markOf(index);
    const bool can_begin =
        m_album.track_mode != kOneTrack && input.info.beginning == Beginning::kTrack;
    if (can_begin && !isReplaced(own)) marks.push_back(own);
    const std::vector<double> places = tagPlaces(own, m_given);
    const std::string& artist = input.info.tags.artist;
    if (can_begin && !artist.empty() && artist != m_disc_performer) {
      for (const double place : places) {
        marks.push_back({place, std::nullopt, "PERF=" + artist, own.input});
      }
    }
    const auto given = m_options.isrcs.find(own.input);
    const std::string code = given != m_options.isrcs.end() ? given->second : input.info.tags.isrc;
    if (code.empty()) return;
    const double place =
        m_album.track_mode == kOneTrack ? startInRange(m_album, input) : places.front();
    marks.push_back({place, std::nullopt, "ISRC=" + code, own.input});
  }

 private:
  Mark markOf(size_t index) const {
    const AlbumInput& input = m_album.inputs[index];
    Mark own;
    own.input = input.info.number;
    own.start = disc::secondsOf(input.start);
    own.name = inputTitle(input.info);
    if (m_album.track_mode == kTracksFromRegions) own.end = disc::secondsOf(endOfTrack(index));
    // A title that reads like a tag would become one.
    if (m_album.track_mode == kTracksFromMarkers && !m_options.hash_markers_only &&
        !namesTrack(own.name, false))
      own.name.insert(0, 1, ' ');
    return own;
  }

  /// Where the audio of an input ends, with that of those that are joined to it. Frames of the
  /// timeline.
  int64_t endOfTrack(size_t index) const {
    const std::vector<AlbumInput>& inputs = m_album.inputs;
    size_t last = index;
    while (last + 1 < inputs.size() && inputs[last + 1].info.beginning == Beginning::kJoined) {
      ++last;
    }
    return inputs[last].start + inputs[last].info.frames;
  }

  /// Whether a mark that was set on purpose makes the input's own one superfluous. Two markers
  /// within four seconds make one track, and that is to be the one that was set.
  bool isReplaced(const Mark& own) const {
    if (own.end) {
      return std::any_of(m_given.begin(), m_given.end(),
                         [&](const Mark& other) { return overlap(own, other); });
    }
    return std::any_of(m_starts.begin(), m_starts.end(), [&](double start) {
      return std::abs(start - own.start) < disc::kShortestTrackSeconds;
    });
  }

  const Options& m_options;
  const Album& m_album;
  const std::string& m_disc_performer;
  const std::vector<Mark>& m_given;
  const std::vector<double> m_starts;
};

}  // namespace

std::vector<Mark> ownMarks(const Options& options, const Album& album,
                           const std::string& disc_performer, const std::vector<Mark>& given) {
  const OwnMarks own(options, album, disc_performer, given);
  std::vector<Mark> marks;
  for (size_t i = 0; i < album.inputs.size(); ++i) own.add(i, marks);
  return marks;
}

}  // namespace velmor::render
