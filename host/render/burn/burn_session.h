// All that a burn at the end of a render takes.
#pragma once

#include <functional>
#include <string>

#include "disc/failure.h"
#include "host/render/burn/burn_attendant.h"
#include "host/render/burn/burn_desk.h"
#include "host/render/burn/recording_room.h"
#include "host/render/options/options.h"
#include "host/windowing/dialogs/person.h"

namespace velmor::render {

/// While it lives the module finds the recorders, and its burn dialog is attended to.
class BurnSession {
 public:
  /// `sheet`: where CD-TEXT is taken from. `image_is_there`: as for `BurnDesk`. Throws
  /// `Failure` when nothing can be burned on this machine or the drive asked for is not there;
  /// one that is only not to be had now is warned of.
  BurnSession(const Options& options, const std::string& sheet,
              std::function<void()> image_is_there);

  const BurnResult& result() const { return m_desk.result(); }

 private:
  void lookAtTheDrives(const BurnOptions& options);

  BurnAttendant m_attendant;
  RecordingRoom m_room;
  BurnDesk m_desk;
  windowing::PersonAtDesk m_seat;
};

/// Prints the machine's recorders.
void listDrives(const Options& options);

}  // namespace velmor::render
