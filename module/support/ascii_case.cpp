#include "module/support/ascii_case.h"

namespace {

int folded(char c) {
  const int byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? byte - 'A' + 'a' : byte;
}

}  // namespace

int compareIgnoringCase(const char* a, const char* b, size_t length) {
  for (size_t i = 0; i < length; ++i) {
    const int difference = folded(a[i]) - folded(b[i]);
    if (difference != 0 || a[i] == 0) return difference;
  }
  return 0;
}
