// Who sits before the module's burn dialog: picks the recorder, sets the boxes, presses the button,
// and does so again for further copies.
#pragma once

#include <functional>
#include <string>

#include "host/recording/recording_library.h"
#include "host/render/burn/burn_attendant.h"
#include "host/render/options/burn_options.h"
#include "host/windowing/dialogs/person.h"

namespace velmor::render {

/// What came of the burns of one image.
struct BurnResult {
  bool has_begun = false;  ///< the dialog came up; what failed from there on has been told
  std::string drive;       ///< as the dialog names it
  int written = 0;         ///< good discs
  bool tested = false;     ///< a test write went well
  bool compared = false;   ///< the last disc was read back and equals the image
  bool image_deleted = false;
  bool interrupted = false;
  std::string disc_state;  ///< of the last disc, in words
  std::string failure;     ///< empty when all that was asked for was done
};

class BurnDesk final : public windowing::Person {
 public:
  /// `image_is_there` is called when the dialog has opened: the files are whole then, or it throws,
  /// which ends the dialog and reaches who finished the render.
  BurnDesk(const BurnOptions& options, recording::Service& service, BurnAttendant& attendant,
           std::function<void()> image_is_there);

  void dialogOpened(windowing::OpenDialog& dialog) override;
  bool useDialog(windowing::OpenDialog& dialog) override;
  int readMessage(const windowing::ShownMessage& message) override;

  const BurnResult& result() const { return m_result; }

 private:
  bool burnAll(windowing::OpenDialog& dialog);
  bool burnOne(windowing::OpenDialog& dialog, int copy);
  void burnOnce(windowing::OpenDialog& dialog, int copy);
  void pickDrive(windowing::OpenDialog& dialog) const;
  void pressBurn(windowing::OpenDialog& dialog);
  void fail(const std::string& sentence);
  bool nextDiscIsIn(int copy);
  void tellObstacles();

  const BurnOptions& m_options;
  recording::Service& m_service;
  BurnAttendant& m_attendant;
  const std::function<void()> m_image_is_there;
  BurnResult m_result;
  bool m_told = false;  ///< the person has heard why the burn at hand failed
};

}  // namespace velmor::render
