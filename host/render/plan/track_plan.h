// The tracks that the module is going to make, known before a sample is rendered.
//
// A host never links the module, so this repeats its rule on purpose; the rule's home is
// module/sink/track_cutter.cpp (cuts) and module/sink/pcm_sink_iso_write.cpp (lead-ins, padding).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "abi/sink_registration.h"
#include "host/render/input/marks/mark.h"

namespace velmor::render {

struct PlannedTrack {
  std::string title;
  double start = 0.0;       ///< image seconds, as the sheet's INDEX 01 is made from
  int64_t start_frame = 0;  ///< first frame of its audio in the image
  int64_t frames = 0;       ///< up to the next track's start, or the image's end
  /// The stretch of the project, in seconds, whose tags the module gives to the track.
  double source_start = 0.0;
  double source_length = 0.0;
  int64_t lead_in = 0;  ///< frames of silence that the module puts in front of `start_frame`
  /// The pause that an input's sheet gives the track, where the module's sheet cannot say it:
  /// frames from INDEX 00 to `start_frame`, and from there to INDEX 01. Both 0: it has none.
  int64_t pause_before = 0, pause_behind = 0;
  bool pause_lost = false;  ///< it would have left a track of under four seconds

  bool hasOwnPause() const { return pause_before > 0 || pause_behind > 0; }
};

/// Frames of the input, counted from the render's start; `end` is past the last one.
struct FrameStretch {
  int64_t begin = 0;
  int64_t end = 0;
};

struct TrackPlan {
  std::vector<PlannedTrack> tracks;
  int64_t image_frames = 0;           ///< padding included
  std::vector<FrameStretch> written;  ///< of the input; ascending and apart
  /// The image's length as the module counts it: bytes of a silence that make no whole frame do not
  /// count.
  int64_t counted_frames = 0;
  /// For each mark, the track (from 0) that it begins or, track 1, names.
  std::vector<std::optional<size_t>> track_of_mark;
};

/// Predicts the layout for `frames` frames (0 or more) of input under the marks of the project,
/// ascending by start; the render starts at 0 project seconds.
TrackPlan planTracks(const SinkConfig& config, const std::vector<Mark>& marks, int64_t frames);

}  // namespace velmor::render
