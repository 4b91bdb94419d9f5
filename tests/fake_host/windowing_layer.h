// A windowing layer that records: dialogs stay in memory, every call is written down, any function
// can be withheld, and nothing happens that the test does not script. The layer that behaves as
// windows do, with messages and a person, is that of velmor-render in host/windowing.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "abi/quelm_provider.h"
#include "abi/quelm_types.h"

namespace fake_host {

/// A dialog or a control.
struct Window {
  int id = 0;
  Window* dialog = nullptr;  ///< null for a dialog
  std::string kind;          ///< the class marker or window class of a control
  std::string caption;
  bool enabled = true;
  int value = 0;  ///< of an edit
  int checked = 0;
  std::vector<std::string> items;  ///< of a combo
  std::vector<intptr_t> item_data;
  int selection = -1;
  std::vector<std::string> columns;            ///< of a list view, "title width"
  std::vector<std::vector<std::string>> rows;  ///< of a list view
  int list_style = 0;
  // Of a dialog.
  DLGPROC procedure = nullptr;
  intptr_t user_data = 0;
  std::vector<std::unique_ptr<Window>> controls;
  bool ended = false;
  int result = 0;

  /// The control of that id; null when there is none.
  Window* control(int control_id);
};

/// One request for a dialog.
struct DialogRequest {
  bool modal = false;
  const QuelmDialogResource* head = nullptr;
  intptr_t id = 0;
  HWND parent = nullptr;
  DLGPROC procedure = nullptr;
  LPARAM init = 0;
};

/// What a dialog's create function asked the layer to build.
struct Layout {
  float xscale = 0, yscale = 0, xoffset = 0, yoffset = 0;
  HWND parent = nullptr;
  bool flag = false;
  bool autosize = false;
  std::vector<QuelmControl> rows;
};

/// While it lives it stands behind the process's provider symbol: one at a time. The script of the
/// provider must be set before the module is loaded.
class WindowingLayer {
 public:
  WindowingLayer();
  ~WindowingLayer();
  WindowingLayer(const WindowingLayer&) = delete;
  WindowingLayer& operator=(const WindowingLayer&) = delete;

  // Script of the provider.
  bool has_lookup = true;  ///< false: the provider answers null
  intptr_t version = kQuelmApiVersion;
  std::set<std::string> withheld;  ///< names the layer does not know
  // Script of the layer.
  bool creates_dialogs = true;             ///< false: null windows, 0 from modal dialogs
  std::function<void(Window&)> on_modal;   ///< the user's doings in a modal dialog
  int message_box_answer = 1;              ///< IDOK
  std::map<std::string, std::string> ini;  ///< "section/key" to value
  Window parent;                           ///< a window of the host's

  // Record.
  int provider_calls = 0;
  std::vector<std::string> lookups;  ///< "(null)" for the call with a null name
  std::vector<std::string> calls;    ///< "SetDlgItemInt(1001, 0, signed)", …
  std::vector<DialogRequest> requests;
  std::vector<Layout> layouts;
  std::vector<std::unique_ptr<Window>> dialogs;

  /// Takes the user's or the host's message to a dialog's procedure.
  static LRESULT send(Window& dialog, UINT message, WPARAM wparam = 0, LPARAM lparam = 0);

 private:
  friend struct LayerFunctions;
  Window* build(const DialogRequest& request);
};

}  // namespace fake_host
