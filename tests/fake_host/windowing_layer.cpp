#include "tests/fake_host/windowing_layer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <type_traits>

#include "abi/quelm_functions.h"

namespace fake_host {

namespace {

WindowingLayer* current_layer = nullptr;

std::string Hex(UINT number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", number);
  return text;
}

std::string Quoted(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}

Window& WindowOf(HWND handle) {
  static Window nowhere;
  if (handle != nullptr) return *static_cast<Window*>(handle);
  ADD_FAILURE() << "a null window was used";
  nowhere = Window();
  return nowhere;
}

Window& ControlOf(HWND dialog, int id) {
  return WindowOf(WindowOf(dialog).Control(id));
}

void Record(const std::string& call) {
  current_layer->calls.push_back(call);
}

std::unique_ptr<Window> MakeControl(const QuelmControl& row, Window* dialog) {
  auto control = std::make_unique<Window>();
  const std::string first = row.first_text;
  const bool layer_classed = first.rfind("__QUELM_", 0) == 0;
  control->kind = layer_classed ? row.first_text : row.second_text;
  control->caption = layer_classed ? row.second_text : row.first_text;
  control->id = layer_classed ? row.second_value : row.first_value;
  control->dialog = dialog;
  return control;
}

LRESULT SendToCombo(Window& combo, UINT message, WPARAM wparam, LPARAM lparam) {
  const bool in_range = wparam >= 0 && static_cast<size_t>(wparam) < combo.items.size();
  const auto index = static_cast<size_t>(in_range ? wparam : 0);
  switch (message) {
    case CB_ADDSTRING:
      combo.items.emplace_back(reinterpret_cast<const char*>(lparam));
      combo.item_data.push_back(0);
      return static_cast<LRESULT>(combo.items.size()) - 1;
    case CB_RESETCONTENT:
      combo.items.clear();
      combo.item_data.clear();
      combo.selection = -1;
      return 0;
    case CB_SETCURSEL:
      combo.selection = in_range ? static_cast<int>(wparam) : -1;
      return combo.selection;
    case CB_GETCURSEL:
      return combo.selection;
    case CB_SETITEMDATA:
      if (!in_range) return -1;
      combo.item_data[index] = lparam;
      return 0;
    case CB_GETITEMDATA:
      return in_range ? combo.item_data[index] : -1;
    default:
      return 0;
  }
}

}  // namespace

Window* Window::Control(int control_id) {
  for (const auto& control : controls) {
    if (control->id == control_id) return control.get();
  }
  return nullptr;
}

struct LayerFunctions {
  static HWND GetDlgItem(HWND dialog, int id) {
    Record("GetDlgItem(" + std::to_string(id) + ")");
    return WindowOf(dialog).Control(id);
  }
  static LRESULT SendMessage(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    Window& window = WindowOf(handle);
    const std::string target = window.dialog == nullptr ? "dialog" : std::to_string(window.id);
    const std::string last = message == CB_ADDSTRING ? Quoted(reinterpret_cast<const char*>(lparam))
                                                     : std::to_string(lparam);
    Record("SendMessage(" + target + ", " + Hex(message) + ", " + std::to_string(wparam) + ", " +
           last + ")");
    if (window.dialog != nullptr) return SendToCombo(window, message, wparam, lparam);
    return window.procedure == nullptr ? 0 : window.procedure(&window, message, wparam, lparam);
  }
  static void SetDlgItemInt(HWND dialog, int id, int value, int is_signed) {
    Record("SetDlgItemInt(" + std::to_string(id) + ", " + std::to_string(value) +
           (is_signed != 0 ? ", signed)" : ", unsigned)"));
    ControlOf(dialog, id).value = value;
  }
  static int GetDlgItemInt(HWND dialog, int id, BOOL* translated, int is_signed) {
    Record("GetDlgItemInt(" + std::to_string(id) +
           (translated != nullptr ? ", success asked for" : "") +
           (is_signed != 0 ? ", signed)" : ", unsigned)"));
    if (translated != nullptr) *translated = 1;
    return ControlOf(dialog, id).value;
  }
  static void CheckDlgButton(HWND dialog, int id, int state) {
    Record("CheckDlgButton(" + std::to_string(id) + ", " + std::to_string(state) + ")");
    ControlOf(dialog, id).checked = state;
  }
  static int IsDlgButtonChecked(HWND dialog, int id) {
    Record("IsDlgButtonChecked(" + std::to_string(id) + ")");
    return ControlOf(dialog, id).checked;
  }
  static void EnableWindow(HWND handle, int enable) {
    Window& window = WindowOf(handle);
    Record("EnableWindow(" + std::to_string(window.id) + ", " + std::to_string(enable) + ")");
    window.enabled = enable != 0;
  }
  static intptr_t GetWindowLong(HWND handle, int index) {
    Record("GetWindowLong(" + std::to_string(index) + ")");
    return WindowOf(handle).user_data;
  }
  static intptr_t SetWindowLong(HWND handle, int index, intptr_t value) {
    Record("SetWindowLong(" + std::to_string(index) + ")");
    return std::exchange(WindowOf(handle).user_data, value);
  }
  static int MessageBox(HWND, const char* text, const char* caption, int type) {
    Record("MessageBox(" + Quoted(text) + ", " + Quoted(caption) + ", " + std::to_string(type) +
           ")");
    return current_layer->message_box_answer;
  }
  static void EndDialog(HWND dialog, int result) {
    Record("EndDialog(" + std::to_string(result) + ")");
    WindowOf(dialog).ended = true;
    WindowOf(dialog).result = result;
  }

  static HWND CreateDialog(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                           LPARAM init) {
    Record("QUELM_CreateDialog(" + std::to_string(id) + ")");
    current_layer->requests.push_back({false, head, id, parent, procedure, init});
    return current_layer->Build(DialogRequest(current_layer->requests.back()));
  }
  static int DialogBox(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                       LPARAM init) {
    Record("QUELM_DialogBox(" + std::to_string(id) + ")");
    current_layer->requests.push_back({true, head, id, parent, procedure, init});
    Window* dialog = current_layer->Build(DialogRequest(current_layer->requests.back()));
    if (dialog == nullptr) return 0;
    if (current_layer->on_modal) current_layer->on_modal(*dialog);
    procedure(dialog, WM_DESTROY, 0, 0);
    return dialog->result;
  }
  static void MakeSetCurParms(float xscale, float yscale, float xoffset, float yoffset, HWND parent,
                              bool flag, bool autosize) {
    Record("QUELM_MakeSetCurParms");
    current_layer->layouts.push_back(
        {xscale, yscale, xoffset, yoffset, parent, flag, autosize, {}});
  }
  static void GenerateDialogFromList(const QuelmControl* rows, int count) {
    Record("QUELM_GenerateDialogFromList");
    if (current_layer->layouts.empty()) {
      ADD_FAILURE() << "controls were generated before their scale was set";
      return;
    }
    Layout& layout = current_layer->layouts.back();
    layout.rows.assign(rows, rows + count);
    if (layout.parent == nullptr) return;
    Window& dialog = WindowOf(layout.parent);
    for (const QuelmControl& row : layout.rows) {
      dialog.controls.push_back(MakeControl(row, &dialog));
    }
  }

  static void InsertColumn(HWND list, int index, const LVCOLUMN* column) {
    Record("ListView_InsertColumn(" + std::to_string(index) + ", " + Quoted(column->text) + ", " +
           std::to_string(column->cx) + ")");
    WindowOf(list).columns.push_back(std::string(column->text) + " " + std::to_string(column->cx));
  }
  static int InsertItem(HWND list, const LVITEM* item) {
    Record("ListView_InsertItem(" + std::to_string(item->item) + ", " + Quoted(item->text) + ")");
    auto& rows = WindowOf(list).rows;
    rows.insert(rows.begin() + item->item, std::vector<std::string>{item->text});
    return item->item;
  }
  static bool SetItemText(HWND list, int row, int column, const char* text) {
    Record("ListView_SetItemText(" + std::to_string(row) + ", " + std::to_string(column) + ", " +
           Quoted(text) + ")");
    auto& rows = WindowOf(list).rows;
    if (row < 0 || static_cast<size_t>(row) >= rows.size()) return false;
    auto& cells = rows[static_cast<size_t>(row)];
    if (cells.size() <= static_cast<size_t>(column)) cells.resize(static_cast<size_t>(column) + 1);
    cells[static_cast<size_t>(column)] = text;
    return true;
  }
  static void SetListStyle(HWND list, int mask, int style) {
    Record("ListView_SetExtendedListViewStyleEx(" + std::to_string(mask) + ", " +
           std::to_string(style) + ")");
    Window& window = WindowOf(list);
    window.list_style = (window.list_style & ~mask) | (style & mask);
  }

  static int GetProfileInt(const char* section, const char* key, int fallback, const char* file) {
    Record("GetPrivateProfileInt(" + Quoted(section) + ", " + Quoted(key) + ", " +
           std::to_string(fallback) + ", " + Quoted(file) + ")");
    const auto found = current_layer->ini.find(std::string(section) + "/" + key);
    return found == current_layer->ini.end() ? fallback : std::atoi(found->second.c_str());
  }
  static BOOL WriteProfileString(const char* section, const char* key, const char* value,
                                 const char* file) {
    Record("WritePrivateProfileString(" + Quoted(section) + ", " + Quoted(key) + ", " +
           Quoted(value) + ", " + Quoted(file) + ")");
    current_layer->ini[std::string(section) + "/" + key] = value;
    return 1;
  }
  static void Pause(int ms) { Record("Sleep(" + std::to_string(ms) + ")"); }

  // Every name the module only fetches.
  static intptr_t NotCalled() {
    ADD_FAILURE() << "the module called a layer function that it only keeps";
    return 0;
  }

  static void* Lookup(const char* name) {
    if (current_layer == nullptr) return nullptr;
    current_layer->lookups.emplace_back(name == nullptr ? "(null)" : name);
    if (name == nullptr) return reinterpret_cast<void*>(current_layer->version);
    if (current_layer->withheld.count(name) != 0) return nullptr;
    const auto found = Table().find(name);
    return found == Table().end() ? As<QuelmAnyFn>(NotCalled) : found->second;
  }

  template <class Wanted>
  static void* As(std::type_identity_t<Wanted> function) {
    return reinterpret_cast<void*>(function);
  }

  static const std::map<std::string, void*>& Table() {
    static const std::map<std::string, void*> table = {
        {"GetDlgItem", As<decltype(::GetDlgItem)>(GetDlgItem)},
        {"SendMessage", As<decltype(::SendMessage)>(SendMessage)},
        {"SetDlgItemInt", As<decltype(::SetDlgItemInt)>(SetDlgItemInt)},
        {"GetDlgItemInt", As<decltype(::GetDlgItemInt)>(GetDlgItemInt)},
        {"CheckDlgButton", As<decltype(::CheckDlgButton)>(CheckDlgButton)},
        {"IsDlgButtonChecked", As<decltype(::IsDlgButtonChecked)>(IsDlgButtonChecked)},
        {"EnableWindow", As<decltype(::EnableWindow)>(EnableWindow)},
        {"GetWindowLong", As<decltype(::GetWindowLong)>(GetWindowLong)},
        {"SetWindowLong", As<decltype(::SetWindowLong)>(SetWindowLong)},
        {"MessageBox", As<decltype(::MessageBox)>(MessageBox)},
        {"EndDialog", As<decltype(::EndDialog)>(EndDialog)},
        {"QUELM_CreateDialog", As<decltype(::QUELM_CreateDialog)>(CreateDialog)},
        {"QUELM_DialogBox", As<decltype(::QUELM_DialogBox)>(DialogBox)},
        {"QUELM_MakeSetCurParms", As<decltype(::QUELM_MakeSetCurParms)>(MakeSetCurParms)},
        {"QUELM_GenerateDialogFromList",
         As<decltype(::QUELM_GenerateDialogFromList)>(GenerateDialogFromList)},
        {"ListView_InsertColumn", As<decltype(::ListView_InsertColumn)>(InsertColumn)},
        {"ListView_InsertItem", As<decltype(::ListView_InsertItem)>(InsertItem)},
        {"ListView_SetItemText", As<decltype(::ListView_SetItemText)>(SetItemText)},
        {"ListView_SetExtendedListViewStyleEx",
         As<decltype(::ListView_SetExtendedListViewStyleEx)>(SetListStyle)},
        {"GetPrivateProfileInt", As<decltype(::GetPrivateProfileInt)>(GetProfileInt)},
        {"WritePrivateProfileString",
         As<decltype(::WritePrivateProfileString)>(WriteProfileString)},
        {"Sleep", As<decltype(::Sleep)>(Pause)},
    };
    return table;
  }
};

WindowingLayer::WindowingLayer() {
  if (current_layer != nullptr) ADD_FAILURE() << "two windowing layers in one process";
  current_layer = this;
}

WindowingLayer::~WindowingLayer() {
  current_layer = nullptr;
}

Window* WindowingLayer::Build(const DialogRequest& request) {
  if (!creates_dialogs) return nullptr;
  for (const QuelmDialogResource* link = request.head; link != nullptr; link = link->next) {
    if (link->id != request.id) continue;
    dialogs.push_back(std::make_unique<Window>());
    Window* dialog = dialogs.back().get();
    dialog->id = static_cast<int>(link->id);
    dialog->caption = link->title;
    dialog->procedure = request.procedure;
    link->create(dialog, link->flags);
    request.procedure(dialog, WM_INITDIALOG, 0, request.init);
    return dialog;
  }
  ADD_FAILURE() << "no dialog " << request.id << " in the module's list";
  return nullptr;
}

LRESULT WindowingLayer::Send(Window& dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  return dialog.procedure(&dialog, message, wparam, lparam);
}

const std::vector<std::string>& WindowingLayer::ImportedNames() {
  static const std::vector<std::string> names = {
#define QUELM_TYPED(name, ...) #name,
#define QUELM_OPAQUE(name) #name,
#include "abi/quelm_functions.inc"
#undef QUELM_TYPED
#undef QUELM_OPAQUE
  };
  return names;
}

}  // namespace fake_host

// What the module asks for while it is being loaded.
extern "C" QuelmLookupFn quelmGetAPPAPIFunc();
extern "C" QuelmLookupFn quelmGetAPPAPIFunc() {
  if (fake_host::current_layer == nullptr) return nullptr;
  ++fake_host::current_layer->provider_calls;
  return fake_host::current_layer->has_lookup ? fake_host::LayerFunctions::Lookup : nullptr;
}
