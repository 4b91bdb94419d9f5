// What is printed on standard error during one step of a test.
#pragma once

#include <string>
#include <vector>

namespace fake_host {

/// Diverts descriptor 2 to a file until `lines` is called or the object ends.
class StandardErrorCapture {
 public:
  StandardErrorCapture();
  ~StandardErrorCapture();
  StandardErrorCapture(const StandardErrorCapture&) = delete;
  StandardErrorCapture& operator=(const StandardErrorCapture&) = delete;

  /// Ends the capture; the lines without their line breaks.
  std::vector<std::string> lines();

 private:
  void restore();

  int m_saved = -1;
  int m_file = -1;
};

}  // namespace fake_host
