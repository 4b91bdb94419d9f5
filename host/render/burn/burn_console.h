// A burn at the terminal: its messages, its progress bar, and the question before a disc is erased.
#pragma once

#include <string>

#include "disc/terminal/progress_bar.h"
#include "host/recording/interface/recording_service.h"

namespace velmor::render {

/// All on standard error; the answers come from standard input. One thread.
class BurnConsole final : public recording::UserInterface {
 public:
  /// `quiet`: failures and questions only. The progress bar needs a terminal besides.
  explicit BurnConsole(bool quiet);

  /// False without asking where standard input is no terminal.
  bool mayBlank(const std::string& question) override;
  void progress(const recording::BurnProgress& progress) override;
  void message(recording::MessageKind kind, const std::string& text) override;

  /// Messages in the form of `printMessage`; the progress bar is taken off the screen first.
  void say(const std::string& text);
  void warn(const std::string& text);
  void fail(const std::string& text);

 private:
  const bool m_quiet;
  disc::ProgressBar m_bar;
  recording::Phase m_phase = recording::Phase::kPreparing;
};

/// "Burning [####......]  40 %  track 2 of 5, 16.0x, 1:03 left".
disc::ProgressLine progressLine(const recording::BurnProgress& progress);

}  // namespace velmor::render
