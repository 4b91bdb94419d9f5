// The controls of a dialog template.
#pragma once

#include "abi/quelm_types.h"
#include "host/windowing/desktop/window.h"

namespace velmor::windowing {

/// What kind a window of this Win32 class and style is; class names without regard to letter case.
WindowKind kindOfClass(const char* class_name, int style);

/// Where the rows' dialog units lie on the screen.
struct Scale {
  float x = 1, y = 1, x_offset = 0, y_offset = 0;
};

/// Makes the control that a row describes, the last child of `dialog`.
void makeControl(const QuelmControl& row, const Scale& scale, HWND dialog);

}  // namespace velmor::windowing
