// What goes to the system log. Link `fake_host_faults` for it.
#pragma once

#include <string>
#include <vector>

namespace fake_host {

/// While it lives, calls of syslog(3) are kept instead of sent.
class SystemLogCapture {
 public:
  SystemLogCapture();
  ~SystemLogCapture();
  SystemLogCapture(const SystemLogCapture&) = delete;
  SystemLogCapture& operator=(const SystemLogCapture&) = delete;

  /// The messages without a line break at their end.
  std::vector<std::string> lines;
};

}  // namespace fake_host
