// How the finished files get to their place.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "disc/failure.h"
#include "host/render/module/renderer.h"
#include "host/render/output/finished_files.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// After the render, or, when they are to be burned, as soon as they are complete: they are safe
/// then whatever becomes of the burn and of this process.
class Delivery {
 public:
  /// All must outlive the object. `whole` is called when the files are whole and still in their
  /// working place; what it adds goes along.
  Delivery(OutputPair& output, const TrackPlan& plan, std::function<void()> whole)
      : m_output(output), m_plan(plan), m_on_whole(std::move(whole)) {}
  /// A render that broke off in its burn: what was complete stays.
  ~Delivery();
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  /// When the burn dialog has opened. Throws `Failure` when the files are not whole, or cannot
  /// be put into their place.
  void beforeBurn();
  /// At the end. Throws as `beforeBurn` does.
  void afterRender(const RenderOutcome& outcome, bool image_deleted);
  const FinishedFiles& files() const { return m_files; }

 private:
  void look(int64_t counted_frames);

  OutputPair& m_output;
  const TrackPlan& m_plan;
  const std::function<void()> m_on_whole;
  FinishedFiles m_files;
  bool m_whole = false;
  bool m_delivered = false;
};

}  // namespace velmor::render
