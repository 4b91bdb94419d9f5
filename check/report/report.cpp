#include "check/report/report.h"

#include <algorithm>

namespace velmor::check {

int Report::count(Severity severity) const {
  return static_cast<int>(
      std::count_if(findings.begin(), findings.end(),
                    [severity](const Finding& f) { return f.severity == severity; }));
}

bool Report::failed(bool strict) const {
  return count(Severity::kError) > 0 || (strict && count(Severity::kWarning) > 0);
}

}  // namespace velmor::check
