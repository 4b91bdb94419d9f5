// The person beside the recorder: hears what happens, sees how far it is, and is asked before a
// disc is erased.
#pragma once

#include <string>

#include "disc/terminal/progress_bar.h"
#include "host/recording/recording_library.h"

namespace velmor::render {

class BurnAttendant final : public recording::Attendant {
 public:
  /// `quiet`: failures and questions only.
  explicit BurnAttendant(bool quiet);

  bool mayBlank(const std::string& question) override;
  void progress(const recording::Progress& progress) override;
  void message(recording::Severity severity, const std::string& text) override;
  /// A message that did not come from the recorder.
  void say(const std::string& text);
  void warn(const std::string& text);
  void fail(const std::string& text);

 private:
  const bool m_quiet;
  disc::ProgressBar m_bar;
  recording::Phase m_phase = recording::Phase::kPreparing;
};

/// "Burning [####......]  40 %  track 2 of 5, 16.0x, 1:03.000 left".
std::string progressLine(const recording::Progress& progress);

}  // namespace velmor::render
