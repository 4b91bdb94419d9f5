// Times of a disc as people and cue sheets write them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace velmor::disc {

/// A time as written. Negative: not a number. `frames` counts sectors, 75 a second, as cue sheets
/// call them.
struct Msf {
  int64_t minutes = -1, seconds = -1, frames = -1;

  bool readable() const { return minutes >= 0 && seconds >= 0 && frames >= 0; }
  /// Readable, with seconds up to 59 and frames up to 74. Minutes have no bound.
  bool inRange() const;
  /// Of a readable time, in range or not.
  int64_t sectors() const;
};

/// "MM:SS:FF"; not readable when it is anything else. Numbers have at most six digits.
Msf parseMsf(std::string_view text);
/// A number of at most `digits` decimal digits (1 to 9), or -1.
int parseNumber(std::string_view text, size_t digits);

/// The time of a count of sectors, not negative.
Msf msfOf(int64_t sectors);
/// "MM:SS:FF" of a count of sectors, not negative; minutes over 99 have their three digits.
std::string msfText(int64_t sectors);
/// "1.36 s" of a count of sectors, not negative; cut to hundredths.
std::string secondsText(int64_t sectors);
/// A number from 0 on with at least two digits, as cue sheets number tracks and indices.
std::string twoDigits(int64_t number);

/// M:SS.mmm, or H:MM:SS.mmm from an hour on. `seconds` is not negative.
std::string clockTime(double seconds);
/// The same without the milliseconds, for what is still to come: rounded up.
std::string wholeSeconds(double seconds);

}  // namespace velmor::disc
