// Where a block of the render is cut: at the project's markers, or to its regions.
//
// A cutter is made for one block and asked what to do next until it is done with it; it knows
// nothing of the image, except how long the current track is by now, which it is told with every
// question.
//
// Times: project positions are seconds; "relative" ones count from the render's start. A position
// becomes a frame of the block only here, by rounding its distance from the first frame not yet
// handled, in 64 bits.
#pragma once

#include <cstdint>

#include "module/sink/project_marks.h"

enum class CutAction {
  kWriteFrames,         ///< convert and write the block's next `frames` frames, which may be none
  kDropFrames,          ///< pass over the block's next `frames` frames
  kBeginTrackAtMarker,  ///< begin a track of `title` and `position`
  kBeginTrackOfRegion,  ///< begin a track of `title`, `position` and `length`
  kJoinRegion,          ///< the current track goes on with a region of these
};

struct CutStep {
  CutAction action = CutAction::kWriteFrames;
  int64_t frames = 0;
  const char* title = "";  ///< the host's, until the next step is asked for
  double position = 0.0;   ///< project seconds at which the material begins
  double length = 0.0;     ///< seconds of the region
};

/// The part of a block that is still to be handled.
struct BlockRest {
  int64_t frames;  ///< frames left
  double start;    ///< relative time of the first of them, seconds
};

/// Writes the block and begins a track at each marker in it that lies at least four seconds after
/// the last track start.
class MarkerCutter {
 public:
  /// `start_time`: the render's start in the project. `marker_index`: the marker to look at next,
  /// kept between blocks.
  MarkerCutter(BlockRest rest, double start_time, bool hash_only, int& marker_index)
      : m_rest(rest),
        m_start_time(start_time),
        m_hash_only(hash_only),
        m_marker_index(marker_index) {}

  bool done() const { return m_rest.frames < 1; }
  /// Only before it is `done`. `track_length`: seconds in the image since the last track start.
  CutStep next(double track_length);

 private:
  bool canBeginATrack(const ProjectMark& mark) const;

  BlockRest m_rest;
  const double m_start_time;
  const bool m_hash_only;
  int& m_marker_index;
  ProjectMark m_reached;  ///< the marker before which everything is written, if there is one
};

/// Writes what of the block lies in regions and drops the rest.
class RegionCutter {
 public:
  /// As above. `region_end`: the relative end of the region being written, negative before the
  /// first; kept between blocks like `marker_index`.
  RegionCutter(BlockRest rest, double start_time, int& marker_index, double& region_end)
      : m_rest(rest),
        m_start_time(start_time),
        m_marker_index(marker_index),
        m_region_end(region_end) {}

  bool done() const { return m_rest.frames < 1; }
  /// As above.
  CutStep next(double track_length);

 private:
  enum class Did { kNothing, kWrote, kEntered };

  CutStep goToNextRegion(double track_length);
  ProjectMark regionInRest();
  CutStep enterRegion(double track_length);

  BlockRest m_rest;
  const double m_start_time;
  int& m_marker_index;
  double& m_region_end;
  ProjectMark m_reached;  ///< the region before which everything is dropped, if there is one
  Did m_did = Did::kNothing;
};
