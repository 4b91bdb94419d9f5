// A user interface that answers as told and remembers all that was said.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/recording/interface/recording_service.h"

namespace velmor::recording::testing {

class ScriptedUserInterface final : public UserInterface {
 public:
  bool mayBlank(const std::string& question) override {
    questions.push_back(question);
    return blank;
  }
  void progress(const BurnProgress& progress) override {
    steps.push_back(progress);
    if (on_progress) on_progress(progress);
  }
  void message(MessageKind kind, const std::string& text) override {
    (kind == MessageKind::kFailure   ? failures
     : kind == MessageKind::kWarning ? warnings
                                     : notes)
        .push_back(text);
  }

  bool blank = false;
  std::function<void(const BurnProgress&)> on_progress;
  std::vector<std::string> questions, failures, warnings, notes;
  std::vector<BurnProgress> steps;
};

}  // namespace velmor::recording::testing
