#include "check/image/disc_units.h"

namespace velmor::check {

namespace {

std::string twoDigits(int64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string msfText(int64_t sectors) {
  const int64_t seconds = sectors / kSecondSectors;
  return twoDigits(seconds / 60) + ':' + twoDigits(seconds % 60) + ':' +
         twoDigits(sectors % kSecondSectors);
}

}  // namespace velmor::check
