// The page to look at that a render makes along.
#pragma once

#include <string>

#include "disc/failure.h"
#include "host/render/options/options.h"
#include "host/render/output/ddp_set.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

struct HtmlPage {
  std::string path;
  std::string failure;  ///< why there is none, for a message; empty when it was written
  bool interrupted = false;
};

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
  const HtmlPage& made() const { return m_made; }

 private:
  bool m_force;
  HtmlPage m_made;
};

/// The exit status for it: 1, or that of an interruption, after the reason was printed on standard
/// error, when the page was not written, otherwise 0.
int pageStatus(const HtmlPage& page);

}  // namespace velmor::render
