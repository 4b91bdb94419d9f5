// The seam to whoever uses the dialogs: a test's script, velmor-render's command line, a toolkit.
#pragma once

#include <string>
#include <vector>

#include "abi/quelm_types.h"
#include "host/windowing/dialogs/open_dialog.h"

namespace velmor::windowing {

/// A message box as it is shown.
struct ShownMessage {
  HWND owner = nullptr;
  std::string text, caption;
  int type = 0;  ///< MB_…
};

/// The answers (IDOK, IDYES, …) a message box of this type has buttons for, from left to right.
std::vector<int> messageBoxButtons(int type);

/// What a user does at modal dialogs and message boxes. Called on the thread that opened the
/// dialog, from inside the module's call.
///
/// What these functions throw passes through the layer and the module to the caller of the module:
/// the dialogs on the way are destroyed, WM_DESTROY included.
class DialogUser {
 public:
  virtual ~DialogUser() = default;

  /// A modal dialog has opened; called once, before the first turn at it.
  virtual void dialogOpened(OpenDialog& /*dialog*/) {}
  /// One turn at the modal dialog in front: look, change, press. Called again and again until the
  /// dialog ends. False: the user gives up, and the dialog is cancelled as by Escape; if its
  /// procedure does not end it then, it ends with IDCANCEL.
  virtual bool useDialog(OpenDialog& dialog) = 0;
  /// Answers the button pressed, one of `messageBoxButtons(message.type)`.
  virtual int readMessage(const ShownMessage& message) = 0;
};

/// Makes `user` the user of all dialogs for as long as the object lives; then the one before is
/// again. `user` must outlive the object.
///
/// While there is no user, a modal dialog is cancelled at once and no message box is agreed to:
/// those with one button answer it (IDOK), the others IDCANCEL, IDNO or IDABORT.
class ScopedDialogUser {
 public:
  explicit ScopedDialogUser(DialogUser& user);
  ~ScopedDialogUser();
  ScopedDialogUser(const ScopedDialogUser&) = delete;
  ScopedDialogUser& operator=(const ScopedDialogUser&) = delete;

 private:
  DialogUser* m_before;
};

}  // namespace velmor::windowing
