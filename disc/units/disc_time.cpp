#include "disc/units/disc_time.h"

#include <cassert>
#include <cmath>
#include <cstdio>

#include "disc/units/disc_units.h"

namespace velmor::disc {

bool Msf::inRange() const {
  return readable() && seconds < 60 && frames < kSectorsPerSecond;
}

int64_t Msf::sectors() const {
  assert(readable());
  return (minutes * 60 + seconds) * kSectorsPerSecond + frames;
}

int parseNumber(std::string_view text, size_t digits) {
  assert(digits >= 1 && digits <= 9);
  if (text.empty() || text.size() > digits) return -1;
  int number = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return -1;
    number = number * 10 + (c - '0');
  }
  return number;
}

Msf parseMsf(std::string_view text) {
  constexpr size_t kMostDigits = 6;
  const size_t first = text.find(':');
  if (first == std::string_view::npos) return {};
  const size_t second = text.find(':', first + 1);
  if (second == std::string_view::npos) return {};
  return {parseNumber(text.substr(0, first), kMostDigits),
          parseNumber(text.substr(first + 1, second - first - 1), kMostDigits),
          parseNumber(text.substr(second + 1), kMostDigits)};
}

std::string twoDigits(int64_t number) {
  assert(number >= 0);
  return (number < 10 ? "0" : "") + std::to_string(number);
}

Msf msfOf(int64_t sectors) {
  assert(sectors >= 0);
  const int64_t seconds = sectors / kSectorsPerSecond;
  return {seconds / 60, seconds % 60, sectors % kSectorsPerSecond};
}

std::string msfText(int64_t sectors) {
  const Msf time = msfOf(sectors);
  return twoDigits(time.minutes) + ':' + twoDigits(time.seconds) + ':' + twoDigits(time.frames);
}

std::string secondsText(int64_t sectors) {
  const int64_t hundredths = sectors * 100 / kSectorsPerSecond;
  return std::to_string(hundredths / 100) + '.' + twoDigits(hundredths % 100) + " s";
}

std::string clockTime(double seconds) {
  assert(seconds >= 0.0);
  const long long ms = std::llround(seconds * 1000.0);
  char text[64];
  if (ms >= 3600000) {
    snprintf(text, sizeof(text), "%lld:%02lld:%02lld.%03lld", ms / 3600000, ms / 60000 % 60,
             ms / 1000 % 60, ms % 1000);
  } else {
    snprintf(text, sizeof(text), "%lld:%02lld.%03lld", ms / 60000, ms / 1000 % 60, ms % 1000);
  }
  return text;
}

std::string wholeSeconds(double seconds) {
  const std::string text = clockTime(std::ceil(seconds));
  return text.substr(0, text.find('.'));
}

}  // namespace velmor::disc
