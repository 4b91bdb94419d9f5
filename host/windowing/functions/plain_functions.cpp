#include <chrono>
#include <climits>
#include <cstdlib>
#include <thread>

#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/win32/bounded_text.h"

namespace velmor::windowing::functions {

char* lstrcpyn(char* to, const char* from, int size) {
  copyBounded(from == nullptr ? "" : from, to, size);
  return to;
}

int MulDiv(int number, int numerator, int denominator) {
  if (denominator == 0) {
    return -1;
  }
  const long long product = static_cast<long long>(number) * numerator;
  const long long divisor = denominator;
  const long long half = std::llabs(divisor) / 2;
  const bool negative = (product < 0) != (divisor < 0);
  const long long magnitude = (std::llabs(product) + half) / std::llabs(divisor);
  const long long result = negative ? -magnitude : magnitude;
  return result > INT_MAX || result < INT_MIN ? -1 : static_cast<int>(result);
}

void Sleep(int milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

UINT GetTickCount() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<UINT>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

}  // namespace velmor::windowing::functions
