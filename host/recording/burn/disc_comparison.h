// Compares what can be read from a disc with what was to be written.
#pragma once

#include <functional>
#include <string>

#include "host/recording/burn/recorder.h"
#include "host/recording/session/session_plan.h"

namespace velmor::recording {

struct Comparison {
  enum class Verdict { kEqual, kDifferent, kUndecided };
  Verdict verdict = Verdict::kUndecided;
  std::string words;  ///< the result as a message (see recording_library.h)
};

/// Told the sectors compared so far; false ends the comparison.
using ComparisonProgress = std::function<bool(int64_t sectors)>;

/// Reads the disc and the producers (which it starts over) side by side.
///
/// Audio has no exact addresses: a drive reads it a constant number of frames early or late. That
/// offset, up to five sectors, is found first and then has to hold from end to end; the frames that
/// it moves beyond the ends of the disc cannot be compared.
Comparison compareDisc(Recorder& recorder, const SessionPlan& plan,
                       const ComparisonProgress& progress);

}  // namespace velmor::recording
