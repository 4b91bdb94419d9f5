// One window of the layer: everything that a toolkit would need to draw it.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "abi/quelm_types.h"
#include "host/windowing/lists/combo_box.h"
#include "host/windowing/lists/list_view.h"

namespace velmor::windowing {

enum class WindowKind {
  kTop,  ///< a window of the host's own
  kDialog,
  kLabel,
  kEdit,
  kComboBox,
  kPushButton,
  kCheckBox,
  kRadioButton,
  kGroupBox,
  kListView,
  kOther
};

/// Pixels, from the top left corner of the parent's content.
struct WindowRectangle {
  int x = 0, y = 0, width = 0, height = 0;
};

/// Plain state. `Desktop` owns it; the message rules change it.
struct Window {
  HWND handle = nullptr;
  WindowKind kind = WindowKind::kOther;
  std::string class_name;
  std::string text;
  int id = 0;
  HWND parent = nullptr;       ///< of a child; the owner of a dialog that is no child
  bool child = false;          ///< lies inside its parent
  std::vector<HWND> children;  ///< in tab order; owned dialogs too
  int style = 0;
  int extended_style = 0;
  WindowRectangle place;
  bool enabled = true;
  bool visible = true;
  bool being_destroyed = false;
  intptr_t user_data = 0;
  std::map<std::string, void*> properties;

  int check_state = 0;          ///< buttons: BST_…
  bool default_button = false;  ///< push buttons: pressed by Enter
  ComboBox combo;
  ListView list;

  // Dialogs.
  intptr_t resource_id = 0;
  DLGPROC procedure = nullptr;
  bool modal = false;
  bool ended = false;  ///< `EndDialog` was called
  int result = 0;
};

}  // namespace velmor::windowing
