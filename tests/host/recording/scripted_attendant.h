// A person who answers as told and remembers all that was said.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/recording/recording_library.h"

namespace velmor::recording::testing {

class ScriptedAttendant final : public Attendant {
 public:
  bool mayBlank(const std::string& question) override {
    questions.push_back(question);
    return blank;
  }
  void progress(const Progress& progress) override {
    steps.push_back(progress);
    if (on_progress) on_progress(progress);
  }
  void message(Severity severity, const std::string& text) override {
    (severity == Severity::kFailure   ? failures
     : severity == Severity::kWarning ? warnings
                                      : notes)
        .push_back(text);
  }

  bool blank = false;
  std::function<void(const Progress&)> on_progress;
  std::vector<std::string> questions, failures, warnings, notes;
  std::vector<Progress> steps;
};

}  // namespace velmor::recording::testing
