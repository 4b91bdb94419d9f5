// A marker or region, wherever it comes from: an audio file, a label track or the command line.
#pragma once

#include <optional>
#include <string>

namespace velmor::render {

/// A marker, or a region when it has an end. Its times are seconds from the start of what it
/// belongs to: a file, the timeline of all inputs, or the project that the module sees.
struct Mark {
  double start = 0.0;
  std::optional<double> end;  ///< not before `start`
  std::string name;           ///< UTF-8
  /// The input that the mark was made for, the album's inputs counted from 1; 0 when it was made
  /// for none of them.
  int input = 0;
  /// What the user gave it with, for messages: "--marker", line 3 of "x.txt"; empty when it comes
  /// from an input.
  std::string given_by = {};
  /// The pause of its track, from INDEX 00 to INDEX 01: seconds of it that lie in front of the
  /// mark, and behind it.
  double pause_before = 0.0;
  double pause_behind = 0.0;
};

}  // namespace velmor::render
