#include "module/sink/project_marks.h"

#include <cmath>
#include <limits>

#include "abi/host_functions.h"

namespace {

/// `end` is where the host leaves a region's end; null when nobody wants it.
ProjectMark firstMark(int& index, double origin, double* end) {
  ProjectMark mark;
  for (;; index = mark.next) {
    mark = ProjectMark{};
    mark.next =
        EnumProjectMarkers(index, &mark.is_region, &mark.position, end, &mark.name, nullptr);
    mark.start = mark.position - origin;
    if (mark.next == 0 || !std::isnan(mark.start)) return mark;
  }
}

}  // namespace

ProjectMark markAt(int& index, double origin) {
  double end = 0.0;
  ProjectMark mark = firstMark(index, origin, &end);
  mark.end = end - origin;
  if (std::isnan(mark.end)) mark.end = -std::numeric_limits<double>::infinity();
  return mark;
}

ProjectMark markStartAt(int& index, double origin) {
  return firstMark(index, origin, nullptr);
}
