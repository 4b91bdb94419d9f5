#include "tests/fake_host/windowing_layer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <type_traits>

#include "abi/quelm_functions.h"

namespace fake_host {

namespace {

WindowingLayer* g_current_layer = nullptr;

std::string hex(UINT number) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%X", number);
  return text;
}

std::string quoted(const char* text) {
  return text == nullptr ? "null" : "\"" + std::string(text) + "\"";
}

Window& windowOf(HWND handle) {
  static Window nowhere;
  if (handle != nullptr) return *static_cast<Window*>(handle);
  ADD_FAILURE() << "a null window was used";
  nowhere = Window();
  return nowhere;
}

Window& controlOf(HWND dialog, int id) {
  return windowOf(windowOf(dialog).control(id));
}

void record(const std::string& call) {
  g_current_layer->calls.push_back(call);
}

std::unique_ptr<Window> makeControl(const QuelmControl& row, Window* dialog) {
  auto control = std::make_unique<Window>();
  const std::string first = row.first_text;
  const bool layer_classed = first.rfind("__QUELM_", 0) == 0;
  control->kind = layer_classed ? row.first_text : row.second_text;
  control->caption = layer_classed ? row.second_text : row.first_text;
  control->id = layer_classed ? row.second_value : row.first_value;
  control->dialog = dialog;
  return control;
}

LRESULT sendToCombo(Window& combo, UINT message, WPARAM wparam, LPARAM lparam) {
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

Window* Window::control(int control_id) {
  for (const auto& control : controls) {
    if (control->id == control_id) return control.get();
  }
  return nullptr;
}

struct LayerFunctions {
  static HWND getDlgItem(HWND dialog, int id) {
    record("GetDlgItem(" + std::to_string(id) + ")");
    return windowOf(dialog).control(id);
  }
  static LRESULT sendMessage(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
    Window& window = windowOf(handle);
    const std::string target = window.dialog == nullptr ? "dialog" : std::to_string(window.id);
    const std::string last = message == CB_ADDSTRING ? quoted(reinterpret_cast<const char*>(lparam))
                                                     : std::to_string(lparam);
    record("SendMessage(" + target + ", " + hex(message) + ", " + std::to_string(wparam) + ", " +
           last + ")");
    if (window.dialog != nullptr) return sendToCombo(window, message, wparam, lparam);
    return window.procedure == nullptr ? 0 : window.procedure(&window, message, wparam, lparam);
  }
  static void setDlgItemInt(HWND dialog, int id, int value, int is_signed) {
    record("SetDlgItemInt(" + std::to_string(id) + ", " + std::to_string(value) +
           (is_signed != 0 ? ", signed)" : ", unsigned)"));
    controlOf(dialog, id).value = value;
  }
  static int getDlgItemInt(HWND dialog, int id, BOOL* translated, int is_signed) {
    record("GetDlgItemInt(" + std::to_string(id) +
           (translated != nullptr ? ", success asked for" : "") +
           (is_signed != 0 ? ", signed)" : ", unsigned)"));
    if (translated != nullptr) *translated = 1;
    return controlOf(dialog, id).value;
  }
  static void checkDlgButton(HWND dialog, int id, int state) {
    record("CheckDlgButton(" + std::to_string(id) + ", " + std::to_string(state) + ")");
    controlOf(dialog, id).checked = state;
  }
  static int isDlgButtonChecked(HWND dialog, int id) {
    record("IsDlgButtonChecked(" + std::to_string(id) + ")");
    return controlOf(dialog, id).checked;
  }
  static void enableWindow(HWND handle, int enable) {
    Window& window = windowOf(handle);
    record("EnableWindow(" + std::to_string(window.id) + ", " + std::to_string(enable) + ")");
    window.enabled = enable != 0;
  }
  static intptr_t getWindowLong(HWND handle, int index) {
    record("GetWindowLong(" + std::to_string(index) + ")");
    return windowOf(handle).user_data;
  }
  static intptr_t setWindowLong(HWND handle, int index, intptr_t value) {
    record("SetWindowLong(" + std::to_string(index) + ")");
    return std::exchange(windowOf(handle).user_data, value);
  }
  static int messageBox(HWND, const char* text, const char* caption, int type) {
    record("MessageBox(" + quoted(text) + ", " + quoted(caption) + ", " + std::to_string(type) +
           ")");
    return g_current_layer->message_box_answer;
  }
  static void endDialog(HWND dialog, int result) {
    record("EndDialog(" + std::to_string(result) + ")");
    windowOf(dialog).ended = true;
    windowOf(dialog).result = result;
  }

  static HWND createDialog(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                           LPARAM init) {
    record("QUELM_CreateDialog(" + std::to_string(id) + ")");
    g_current_layer->requests.push_back({false, head, id, parent, procedure, init});
    return g_current_layer->build(DialogRequest(g_current_layer->requests.back()));
  }
  static int dialogBox(QuelmDialogResource* head, intptr_t id, HWND parent, DLGPROC procedure,
                       LPARAM init) {
    record("QUELM_DialogBox(" + std::to_string(id) + ")");
    g_current_layer->requests.push_back({true, head, id, parent, procedure, init});
    Window* dialog = g_current_layer->build(DialogRequest(g_current_layer->requests.back()));
    if (dialog == nullptr) return 0;
    if (g_current_layer->on_modal) g_current_layer->on_modal(*dialog);
    procedure(dialog, WM_DESTROY, 0, 0);
    return dialog->result;
  }
  static void makeSetCurParms(float xscale, float yscale, float xoffset, float yoffset, HWND parent,
                              bool flag, bool autosize) {
    record("QUELM_MakeSetCurParms");
    g_current_layer->layouts.push_back(
        {xscale, yscale, xoffset, yoffset, parent, flag, autosize, {}});
  }
  static void generateDialogFromList(const QuelmControl* rows, int count) {
    record("QUELM_GenerateDialogFromList");
    if (g_current_layer->layouts.empty()) {
      ADD_FAILURE() << "controls were generated before their scale was set";
      return;
    }
    Layout& layout = g_current_layer->layouts.back();
    layout.rows.assign(rows, rows + count);
    if (layout.parent == nullptr) return;
    Window& dialog = windowOf(layout.parent);
    for (const QuelmControl& row : layout.rows) {
      dialog.controls.push_back(makeControl(row, &dialog));
    }
  }

  static void insertColumn(HWND list, int index, const LVCOLUMN* column) {
    record("ListView_InsertColumn(" + std::to_string(index) + ", " + quoted(column->text) + ", " +
           std::to_string(column->cx) + ")");
    windowOf(list).columns.push_back(std::string(column->text) + " " + std::to_string(column->cx));
  }
  static int insertItem(HWND list, const LVITEM* item) {
    record("ListView_InsertItem(" + std::to_string(item->item) + ", " + quoted(item->text) + ")");
    auto& rows = windowOf(list).rows;
    rows.insert(rows.begin() + item->item, std::vector<std::string>{item->text});
    return item->item;
  }
  static bool setItemText(HWND list, int row, int column, const char* text) {
    record("ListView_SetItemText(" + std::to_string(row) + ", " + std::to_string(column) + ", " +
           quoted(text) + ")");
    auto& rows = windowOf(list).rows;
    if (row < 0 || static_cast<size_t>(row) >= rows.size()) return false;
    auto& cells = rows[static_cast<size_t>(row)];
    if (cells.size() <= static_cast<size_t>(column)) cells.resize(static_cast<size_t>(column) + 1);
    cells[static_cast<size_t>(column)] = text;
    return true;
  }
  static void setListStyle(HWND list, int mask, int style) {
    record("ListView_SetExtendedListViewStyleEx(" + std::to_string(mask) + ", " +
           std::to_string(style) + ")");
    Window& window = windowOf(list);
    window.list_style = (window.list_style & ~mask) | (style & mask);
  }

  static int getProfileInt(const char* section, const char* key, int fallback, const char* file) {
    record("GetPrivateProfileInt(" + quoted(section) + ", " + quoted(key) + ", " +
           std::to_string(fallback) + ", " + quoted(file) + ")");
    const auto found = g_current_layer->ini.find(std::string(section) + "/" + key);
    return found == g_current_layer->ini.end() ? fallback : std::atoi(found->second.c_str());
  }
  static BOOL writeProfileString(const char* section, const char* key, const char* value,
                                 const char* file) {
    record("WritePrivateProfileString(" + quoted(section) + ", " + quoted(key) + ", " +
           quoted(value) + ", " + quoted(file) + ")");
    g_current_layer->ini[std::string(section) + "/" + key] = value;
    return 1;
  }
  static void pause(int ms) { record("Sleep(" + std::to_string(ms) + ")"); }

  // Every name the module only fetches.
  static intptr_t notCalled() {
    ADD_FAILURE() << "the module called a layer function that it only keeps";
    return 0;
  }

  static void* lookup(const char* name) {
    if (g_current_layer == nullptr) return nullptr;
    g_current_layer->lookups.emplace_back(name == nullptr ? "(null)" : name);
    if (name == nullptr) return reinterpret_cast<void*>(g_current_layer->version);
    if (g_current_layer->withheld.count(name) != 0) return nullptr;
    const auto found = table().find(name);
    return found == table().end() ? as<QuelmAnyFn>(notCalled) : found->second;
  }

  template <class Wanted>
  static void* as(std::type_identity_t<Wanted> function) {
    return reinterpret_cast<void*>(function);
  }

  static const std::map<std::string, void*>& table() {
    static const std::map<std::string, void*> table = {
        {"GetDlgItem", as<decltype(::GetDlgItem)>(getDlgItem)},
        {"SendMessage", as<decltype(::SendMessage)>(sendMessage)},
        {"SetDlgItemInt", as<decltype(::SetDlgItemInt)>(setDlgItemInt)},
        {"GetDlgItemInt", as<decltype(::GetDlgItemInt)>(getDlgItemInt)},
        {"CheckDlgButton", as<decltype(::CheckDlgButton)>(checkDlgButton)},
        {"IsDlgButtonChecked", as<decltype(::IsDlgButtonChecked)>(isDlgButtonChecked)},
        {"EnableWindow", as<decltype(::EnableWindow)>(enableWindow)},
        {"GetWindowLong", as<decltype(::GetWindowLong)>(getWindowLong)},
        {"SetWindowLong", as<decltype(::SetWindowLong)>(setWindowLong)},
        {"MessageBox", as<decltype(::MessageBox)>(messageBox)},
        {"EndDialog", as<decltype(::EndDialog)>(endDialog)},
        {"QUELM_CreateDialog", as<decltype(::QUELM_CreateDialog)>(createDialog)},
        {"QUELM_DialogBox", as<decltype(::QUELM_DialogBox)>(dialogBox)},
        {"QUELM_MakeSetCurParms", as<decltype(::QUELM_MakeSetCurParms)>(makeSetCurParms)},
        {"QUELM_GenerateDialogFromList",
         as<decltype(::QUELM_GenerateDialogFromList)>(generateDialogFromList)},
        {"ListView_InsertColumn", as<decltype(::ListView_InsertColumn)>(insertColumn)},
        {"ListView_InsertItem", as<decltype(::ListView_InsertItem)>(insertItem)},
        {"ListView_SetItemText", as<decltype(::ListView_SetItemText)>(setItemText)},
        {"ListView_SetExtendedListViewStyleEx",
         as<decltype(::ListView_SetExtendedListViewStyleEx)>(setListStyle)},
        {"GetPrivateProfileInt", as<decltype(::GetPrivateProfileInt)>(getProfileInt)},
        {"WritePrivateProfileString",
         as<decltype(::WritePrivateProfileString)>(writeProfileString)},
        {"Sleep", as<decltype(::Sleep)>(pause)},
    };
    return table;
  }
};

WindowingLayer::WindowingLayer() {
  if (g_current_layer != nullptr) ADD_FAILURE() << "two windowing layers in one process";
  g_current_layer = this;
}

WindowingLayer::~WindowingLayer() {
  g_current_layer = nullptr;
}

Window* WindowingLayer::build(const DialogRequest& request) {
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

LRESULT WindowingLayer::send(Window& dialog, UINT message, WPARAM wparam, LPARAM lparam) {
  return dialog.procedure(&dialog, message, wparam, lparam);
}

}  // namespace fake_host

// What the module asks for while it is being loaded.
extern "C" QuelmLookupFn quelmGetAPPAPIFunc();
extern "C" QuelmLookupFn quelmGetAPPAPIFunc() {
  if (fake_host::g_current_layer == nullptr) return nullptr;
  ++fake_host::g_current_layer->provider_calls;
  return fake_host::g_current_layer->has_lookup ? fake_host::LayerFunctions::lookup : nullptr;
}
