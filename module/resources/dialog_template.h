// How a dialog's controls are made from its rows.
#pragma once

#include "abi/quelm_functions.h"

/// Dialog units to pixels, both ways.
inline constexpr float kDialogScale = 1.7F;

/// Styles that several dialogs use.
inline constexpr int kCombo = CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP;
inline constexpr int kCheckBox = BS_AUTOCHECKBOX | WS_TABSTOP;

/// Lets the layer build the rows after the first, all-null one into `window`.
template <int kRows>
void createControls(HWND window, int flags, const QuelmControl (&rows)[kRows]) {
  QUELM_MakeSetCurParms(kDialogScale, kDialogScale, 0.0F, 0.0F, window, false,
                        !(flags & kQuelmNoAutoSize));
  QUELM_GenerateDialogFromList(rows + 1, kRows - 1);
}
