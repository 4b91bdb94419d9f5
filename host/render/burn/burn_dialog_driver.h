// Operates the module's burn dialog as the command line's options say: picks the recorder, sets the
// check boxes, presses the burn button, and does so again for further copies.
#pragma once

#include <functional>
#include <string>

#include "host/recording/interface/recording_service.h"
#include "host/render/burn/burn_console.h"
#include "host/render/options/burn_options.h"
#include "host/windowing/dialogs/dialog_user.h"

namespace velmor::render {

/// What came of the burns of one image.
struct BurnResult {
  /// The burn dialog has opened. Every failure from then on has been printed already.
  bool has_begun = false;
  std::string drive;      ///< as the dialog names it
  int written = 0;        ///< good discs
  bool tested = false;    ///< a test write went well
  bool compared = false;  ///< the last disc was read back and equals the image
  bool image_deleted = false;
  bool interrupted = false;
  std::string disc_state;  ///< of the last disc, in words
  std::string failure;     ///< empty when all that was asked for was done
};

class BurnDialogDriver final : public windowing::DialogUser {
 public:
  /// All references must outlive the object. `image_is_there` is called when the dialog has opened,
  /// which is when the module has closed the image; it is to throw unless sheet and image are
  /// whole. That ends the dialog, and the exception arrives at the caller of the module.
  BurnDialogDriver(const BurnOptions& options, recording::Service& service, BurnConsole& console,
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
  BurnConsole& m_console;
  const std::function<void()> m_image_is_there;
  BurnResult m_result;
  bool m_told = false;  ///< why the current burn failed has been printed already
};

}  // namespace velmor::render
