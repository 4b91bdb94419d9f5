// The album: the inputs end to end on one timeline, with the marks and the texts that make tracks
// and codes of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "disc/failure.h"
#include "host/render/album/host_project.h"
#include "host/render/album/sheet_lead_ins.h"
#include "host/render/input/audio_input.h"
#include "host/render/input/sheets/audio_source.h"
#include "host/render/options/options.h"
#include "host/render/options/usage_error.h"

namespace velmor::render {

/// One input's place on the timeline.
struct AlbumInput {
  InputInfo info;
  int64_t start = 0;  ///< frames
};

struct Album {
  std::vector<AlbumInput> inputs;
  int64_t render_start = 0;  ///< frames of the timeline
  int64_t render_end = 0;    ///< frames of the timeline, past the last one rendered
  TrackMode track_mode = kTracksFromMarkers;  ///< as given, or as the marks ask for
  LeadIns lead_ins;                           ///< as given, or as an input's sheet asks for
  HostProject project;                        ///< as the module sees it: the render starts at 0
  /// Marks that did not get into the project, seconds of the timeline: beyond the audio or outside
  /// --start and --end.
  std::vector<Mark> marks_outside;
  /// Regions without audio of their own, project seconds. The module would write for them the audio
  /// that follows, so they are not in the project.
  std::vector<Mark> empty_regions;
  std::vector<std::string> warnings;
  std::string date, genre;  ///< the tags that all inputs share

  int64_t frames() const { return render_end - render_start; }
};

/// Lays out the inputs that `options` names. Opens each file, and throws `Failure` for one that
/// cannot be read and `UsageError` for a render range outside the timeline.
Album layOutAlbum(const Options& options);

/// The same where the sources of those inputs are known.
Album layOutAlbum(const Options& options, const std::vector<AudioSource>& sources);

/// The same from what the inputs say of themselves, without opening anything.
Album layOutAlbum(const Options& options, std::vector<InputInfo> infos);

}  // namespace velmor::render
