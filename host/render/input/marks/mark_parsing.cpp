#include "host/render/input/marks/mark_parsing.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "disc/failure.h"
#include "disc/text/line_of_text.h"
#include "disc/text/phrases.h"
#include "disc/text/utf8.h"
#include "disc/text/words.h"
#include "disc/units/disc_units.h"

namespace velmor::render {
namespace {

/// Far beyond any album, and safely inside what counts of frames can hold.
constexpr double kLongestTime = 1e9;

constexpr const char* kForms =
    "it has another form; give seconds (12.5), MM:SS.mmm, "
    "H:MM:SS.mmm or MM:SS:FF";

/// In quotes and fit for a message, whatever bytes were typed.
std::string quoted(std::string_view text) {
  return disc::inQuotes(disc::asLineOfText(text));
}

[[noreturn]] void refuseTime(std::string_view text, const std::string& reason) {
  throw Failure(quoted(text) + " is no time: " + reason);
}

/// Digits only: no sign, no point, no space.
uint64_t wholeNumber(std::string_view digits, std::string_view text) {
  if (!disc::allDigits(digits)) refuseTime(text, kForms);
  uint64_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec != std::errc() || static_cast<double>(value) > kLongestTime) {
    refuseTime(text, "it is too large");
  }
  return value;
}

/// Digits with at most one point among or around them.
double decimalNumber(std::string_view digits, std::string_view text) {
  const auto points = std::count(digits.begin(), digits.end(), '.');
  const auto figures = std::count_if(digits.begin(), digits.end(), disc::isDigit);
  if (points > 1 || figures == 0 || static_cast<size_t>(points + figures) != digits.size()) {
    refuseTime(text, kForms);
  }
  double value = 0.0;
  const char* const end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, value, std::chars_format::fixed);
  // Digits after the point alone may also fall below what a double holds: that is no time either.
  if (result.ec != std::errc() || result.ptr != end) refuseTime(text, "it cannot be represented");
  if (value > kLongestTime) refuseTime(text, "it is too large");
  return value;
}

double minutesAndSeconds(std::string_view minutes, double seconds, std::string_view text) {
  if (seconds >= 60.0) refuseTime(text, "after minutes the seconds end at 59");
  const double time = 60.0 * static_cast<double>(wholeNumber(minutes, text)) + seconds;
  if (time > kLongestTime) refuseTime(text, "it is too large");
  return time;
}

double hoursMinutesAndSeconds(std::string_view hours, std::string_view minutes, double seconds,
                              std::string_view text) {
  const uint64_t minutes_over = wholeNumber(minutes, text);
  if (minutes_over >= 60) refuseTime(text, "after hours the minutes end at 59");
  const double time = 3600.0 * static_cast<double>(wholeNumber(hours, text)) +
                      60.0 * static_cast<double>(minutes_over) + seconds;
  if (seconds >= 60.0) refuseTime(text, "after minutes the seconds end at 59");
  if (time > kLongestTime) refuseTime(text, "it is too large");
  return time;
}

struct Option {
  std::string_view time, name;
};

Option splitOption(std::string_view text, const char* form) {
  const size_t equals = text.find('=');
  if (equals == std::string_view::npos) {
    throw Failure(quoted(text) + " has no \"=\" before its name; give " + form);
  }
  const std::string_view name = text.substr(equals + 1);
  if (!disc::isUtf8(name))
    throw Failure("the name in " + quoted(text) + " is not UTF-8; retype it");
  if (disc::hasControlCharacters(name)) {
    throw Failure("the name in " + quoted(text) +
                  " has a line break or another control character; take it out");
  }
  return {text.substr(0, equals), name};
}

}  // namespace

double parseTime(std::string_view text, std::vector<TwoFacedTime>* two_faced) {
  const size_t first = text.find(':');
  if (first == std::string_view::npos) return decimalNumber(text, text);
  const std::string_view minutes = text.substr(0, first);
  const std::string_view rest = text.substr(first + 1);
  const size_t second = rest.find(':');
  if (second == std::string_view::npos) {
    return minutesAndSeconds(minutes, decimalNumber(rest, text), text);
  }
  const std::string_view last = rest.substr(second + 1);
  if (last.find('.') != std::string_view::npos) {
    return hoursMinutesAndSeconds(minutes, rest.substr(0, second), decimalNumber(last, text), text);
  }
  const auto seconds = static_cast<double>(wholeNumber(rest.substr(0, second), text));
  const auto frames = static_cast<double>(wholeNumber(last, text));
  if (frames >= disc::kSectorsPerSecond) refuseTime(text, "a second has the frames 0 to 74");
  const double time = minutesAndSeconds(minutes, seconds, text) + frames / disc::kSectorsPerSecond;
  if (two_faced != nullptr && frames < 60.0) {
    const double hours = std::floor(time / 60.0);
    two_faced->push_back({std::string(text), time, 3600.0 * hours + 60.0 * seconds + frames});
  }
  return time;
}

Mark parseMarkerOption(std::string_view text, std::vector<TwoFacedTime>* two_faced) {
  const Option option = splitOption(text, "TIME=NAME");
  Mark mark;
  mark.given_by = "--marker";
  mark.start = parseTime(option.time, two_faced);
  mark.name = option.name;
  return mark;
}

Mark parseRegionOption(std::string_view text, std::vector<TwoFacedTime>* two_faced) {
  const Option option = splitOption(text, "START-END=NAME");
  const size_t dash = option.time.find('-');
  if (dash == std::string_view::npos) {
    throw Failure(quoted(text) + " has no \"-\" between two times; give START-END=NAME");
  }
  Mark mark;
  mark.given_by = "--region";
  mark.start = parseTime(option.time.substr(0, dash), two_faced);
  mark.end = parseTime(option.time.substr(dash + 1), two_faced);
  if (*mark.end <= mark.start) {
    throw Failure("the region " + quoted(text) + " does not end after its start; swap the times");
  }
  mark.name = option.name;
  return mark;
}

}  // namespace velmor::render
