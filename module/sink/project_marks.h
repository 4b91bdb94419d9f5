// The project's markers and regions, as the host enumerates them.
#pragma once

/// One marker or region of the project.
struct ProjectMark {
  int next = 0;  ///< the index of the mark after it; 0: there is no such mark
  bool is_region = false;
  double position = 0.0;       ///< project seconds, as the host gives them
  double start = 0.0;          ///< the same, counted from the caller's origin; never NaN
  double end = 0.0;            ///< a region's end, counted likewise; never NaN
  const char* name = nullptr;  ///< may be null; the host's, until the next mark is asked for
};

// Both functions below give the first mark at `index` or behind it, and move `index` to that mark.
//
// They are the only place that knows of times that are no numbers. A mark whose start is NaN lies
// nowhere, so it is left out. A region whose end is NaN is over before everything else (its end is
// minus infinity), so that nobody enters it.

ProjectMark markAt(int& index, double origin);
/// For callers that have no use for a region's end: the host is not asked for it, and `end` is 0.
ProjectMark markStartAt(int& index, double origin);
