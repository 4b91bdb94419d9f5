// The seam to whoever sits before the dialogs: a script, a person at a terminal, a toolkit.
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

/// The answers (IDOK, IDYES, …) a message box of this type has buttons for.
std::vector<int> messageBoxButtons(int type);

/// What a person does. Called on the thread that opened the dialog, from inside the module's call.
///
/// What these functions throw passes through the layer and the module to whoever called the module:
/// the dialogs on the way are destroyed, WM_DESTROY included.
class Person {
 public:
  virtual ~Person() = default;

  /// A modal dialog has opened; called once, before the first turn at it.
  virtual void dialogOpened(OpenDialog& /*dialog*/) {}
  /// One turn at the modal dialog in front: look, change, press. Asked again and again until the
  /// dialog ends. False: the person walks away, and the dialog is cancelled as by Escape; if its
  /// procedure does not end it then, it ends with IDCANCEL.
  virtual bool useDialog(OpenDialog& dialog) = 0;
  /// Answers the button pressed, one of `message_box_buttons(message.type)`.
  virtual int readMessage(const ShownMessage& message) = 0;
};

/// Seats a person for as long as the object lives, then the one who sat there before.
///
/// While nobody sits there, a modal dialog is cancelled at once and no message box is agreed to:
/// those with one button answer it (IDOK), the others IDCANCEL, IDNO or IDABORT.
class PersonAtDesk {
 public:
  explicit PersonAtDesk(Person& person);
  ~PersonAtDesk();
  PersonAtDesk(const PersonAtDesk&) = delete;
  PersonAtDesk& operator=(const PersonAtDesk&) = delete;

 private:
  Person* m_before;
};

}  // namespace velmor::windowing
