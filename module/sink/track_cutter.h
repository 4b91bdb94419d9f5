// Where a block of the render is cut: at the project's markers, or to its regions.
//
// Times: project positions are seconds; "relative" ones count from the render's start. A position
// becomes a frame of the block only here, by rounding its distance from the first frame not yet
// handled, in 64 bits.
#pragma once

#include <cstdint>

/// The image, as a cutter fills it with one block: the block's frames in order, and the tracks they
/// begin.
class TrackCutTarget {
 public:
  /// Converts and writes the block's next `frames` frames.
  virtual void WriteFrames(int64_t frames) = 0;
  /// Passes over the block's next `frames` frames.
  virtual void DropFrames(int64_t frames) = 0;
  /// Seconds in the image since the last track start.
  virtual double TrackLength() = 0;
  /// Lead-in silence, sector alignment, and a new track start after them.
  virtual void StartTrack() = 0;
  /// The title and the project position of the track that a marker has begun.
  virtual void RecordMarker(const char* title, double position) = 0;
  /// The title and the span in the project of a region whose audio follows.
  virtual void RecordRegion(const char* title, double position, double length) = 0;

 protected:
  ~TrackCutTarget() = default;
};

/// The part of a block that is still to be handled.
struct BlockRest {
  int64_t frames;  ///< R: frames left
  double start;    ///< t: relative time of the first of them, seconds
};

/// Writes the block and begins a track at each marker in it that lies at least four seconds after
/// the last track start. `start_time`: the render's start in the project. `marker_index`: the
/// marker to look at next, kept between blocks.
void cutAtMarkers(TrackCutTarget& target, BlockRest rest, double start_time, bool hash_only,
                  int& marker_index);

/// Writes what of the block lies in regions and drops the rest. `region_end`: the relative end of
/// the region being written, negative before the first; kept between blocks like `marker_index`.
void cutToRegions(TrackCutTarget& target, BlockRest rest, double start_time, int& marker_index,
                  double& region_end);
