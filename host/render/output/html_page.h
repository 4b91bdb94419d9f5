// The page to look at that a render makes along.
#pragma once

#include <string>

#include "disc/failure.h"
#include "host/render/options/options.h"
#include "host/render/output/ddp_set.h"
#include "host/render/output/made_along.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Knows before the render that a page can be written.
class PageOutput {
 public:
  /// Throws `Failure` when no page can go to `options.html`.
  PageOutput(const Options& options, const OutputPair& output);

  /// Makes the page from the finished pair, whose sheet is `sheet` and belongs at the place that
  /// `output` says, with the starts that `plan` knows; of `set` instead, where there is one. Shows
  /// progress when `show_progress`. Whatever goes wrong is told in the result.
  void make(const std::string& sheet, const OutputPair& output, const TrackPlan& plan,
            const DdpSet* set, bool show_progress);
  /// What came of it.
  const MadeAlong& made() const { return m_made; }

 private:
  bool m_force;
  MadeAlong m_made;
};

}  // namespace velmor::render
