// The rules by which windows answer messages and tell their dialogs of what a user did.
#pragma once

#include "abi/quelm_types.h"
#include "host/windowing/desktop/window.h"

namespace velmor::windowing {

/// Sends a message and answers its result; 0 when there is no such window.
LRESULT sendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam);

/// WM_COMMAND from a control to the dialog it lies in.
void notifyDialog(const Window& control, int code);

/// Sets the text of an edit as a user or a program does, and tells the dialog of the change.
void setEditText(Window& edit, const char* text);

/// Clicks a button: a check box or radio button of an automatic type changes its state, and then
/// the dialog is told.
void click(Window& button);

/// What the keys Enter and Escape do in a dialog.
void pressEnter(HWND dialog);
void pressEscape(HWND dialog);

}  // namespace velmor::windowing
