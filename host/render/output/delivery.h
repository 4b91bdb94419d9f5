// Checks the finished files and moves them from the working folder to their place.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "disc/failure.h"
#include "host/render/album/host_project.h"
#include "host/render/module/renderer.h"
#include "host/render/output/finished_files.h"
#include "host/render/output/output_pair.h"
#include "host/render/plan/track_plan.h"

namespace velmor::render {

/// Delivers after the render or, when the files are to be burned, before the burn begins: they are
/// complete then, and stay whatever becomes of the burn and of this process.
class Delivery {
 public:
  /// `output`, `project` and `plan` must outlive the object. `whole` is called when the files have
  /// been checked and still lie in the working folder; a file that it adds there is delivered along
  /// with them. `in_place` is called once they are in their place, or are to be burned, with a path
  /// that leads to the sheet.
  Delivery(
      OutputPair& output, const HostProject& project, const TrackPlan& plan,
      std::function<void()> whole,
      std::function<void(const std::string& sheet)> in_place = [](const std::string&) {})
      : m_output(output),
        m_project(project),
        m_plan(plan),
        m_on_whole(std::move(whole)),
        m_in_place(std::move(in_place)) {}
  /// Delivers files that were complete when an exception ended the burn, if that has not been done.
  ~Delivery();
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  /// To be called when the burn dialog has opened, which is when the files are complete. Throws
  /// `Failure` when the files are not whole, or cannot be put into their place.
  void beforeBurn();
  /// To be called at the end of the render and, if there is one, of the burn; `image_deleted` when
  /// that has deleted sheet and image. Throws as `beforeBurn` does.
  void afterRender(const RenderOutcome& outcome, bool image_deleted);
  /// What was found in the files; empty before they were complete.
  const FinishedFiles& files() const { return m_files; }

 private:
  void look(int64_t counted_frames);

  OutputPair& m_output;
  const HostProject& m_project;
  const TrackPlan& m_plan;
  const std::function<void()> m_on_whole;
  const std::function<void(const std::string&)> m_in_place;
  FinishedFiles m_files;
  bool m_whole = false;
  bool m_delivered = false;
};

}  // namespace velmor::render
