// The set of files for a pressing plant that a render makes along, from where its tracks truly
// start.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "check/portable/make_portable.h"
#include "check/report/report.h"
#include "ddp/check/checked_set.h"
#include "ddp/write/set_target.h"
#include "disc/failure.h"
#include "host/render/options/options.h"
#include "host/render/output/made_along.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct DdpSet : MadeAlong {
  std::vector<std::string> changes;        ///< against the sheet, one sentence each
  std::optional<check::Report> refusal;    ///< the errors that it was refused for
  std::optional<ddp::CheckedSet> checked;  ///< the set, read back
};

/// Holds the place of the set during the render.
class DdpOutput {
 public:
  /// Throws `Failure` when no set can go to `options.ddp`, or when none can be made of a disc with
  /// these lead-ins.
  DdpOutput(const Options& options, const OutputPair& output);

  /// Makes the set from the finished pair, whose sheet is `sheet`, and checks it; shows progress
  /// when `show_progress`. Whatever goes wrong is told in the result.
  void make(const std::string& sheet, const TrackPlan& plan, bool show_progress);
  /// Clauses about what killed runs had left in its place.
  const std::vector<std::string>& warnings() const { return m_target.warnings(); }
  /// What came of it.
  const DdpSet& made() const { return m_made; }

 private:
  void makeSet(const std::string& sheet, const TrackPlan& plan, bool show_progress);
  void joinShortFirstPause(const TrackPlan& plan, check::ExactStarts& starts);

  ddp::SetTarget m_target;
  DdpSet m_made;
};

/// Prints what the set has otherwise than the sheet, and the verdict on it, on standard output.
void printDdpSet(const DdpSet& set);
/// The same as the text of one JSON object.
std::string ddpSetJson(const DdpSet& set);
/// The exit status for it: that of `statusOf`, or 1 when the set is not good.
int ddpStatus(const DdpSet& set);

}  // namespace velmor::render
