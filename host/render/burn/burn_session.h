// Everything that has to be in place while the module renders and then burns: the recording
// service, the driver of its burn dialog, and the console.
#pragma once

#include <functional>
#include <string>

#include "disc/failure.h"
#include "host/render/burn/burn_console.h"
#include "host/render/burn/burn_dialog_driver.h"
#include "host/render/burn/scoped_recording_service.h"
#include "host/render/options/options.h"
#include "host/render/plan/track_plan.h"
#include "host/windowing/dialogs/dialog_user.h"

namespace velmor::render {

/// While it lives, the module finds the recorders, and its burn dialog is driven by the options.
/// One at a time; the thread that calls the module.
class BurnSession {
 public:
  /// `sheet`: where CD-TEXT is taken from. `plan`: where the disc's tracks lie, made with `config`.
  /// `image_is_there`: as for `BurnDialogDriver`. `options`
  /// must outlive the object. Throws `Failure` when nothing can be burned on this machine or the
  /// drive asked for is not there; when it is there but cannot be used at the moment, it warns.
  BurnSession(const Options& options, const std::string& sheet, const SinkConfig& config,
              const TrackPlan& plan, std::function<void()> image_is_there);

  const BurnResult& result() const { return m_driver.result(); }

 private:
  void lookAtTheDrives(const BurnOptions& options);

  BurnConsole m_console;
  ScopedRecordingService m_recording;
  BurnDialogDriver m_driver;
  windowing::ScopedDialogUser m_dialog_user;
};

}  // namespace velmor::render
