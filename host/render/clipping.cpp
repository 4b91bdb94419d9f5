#include "host/render/clipping.h"

#include <cmath>
#include <cstddef>

namespace velmor::render {

namespace {

bool isOver(double x) {
  return !(std::fabs(x) <= 1.0);
}

int64_t countOver(const std::vector<double>& samples) {
  int64_t over = 0;
  for (const double x : samples) over += isOver(x);
  return over;
}

}  // namespace

void Clipping::look(const std::vector<double>& left, const std::vector<double>& right,
                    int64_t start) {
  const int64_t over = countOver(left) + countOver(right);
  if (over > 0 && first_frame < 0) {
    size_t i = 0;
    while (!isOver(left[i]) && !isOver(right[i])) ++i;
    first_frame = start + static_cast<int64_t>(i);
  }
  samples += over;
}

}  // namespace velmor::render
