#include "host/windowing/dialogs/open_dialog.h"

#include "host/windowing/desktop.h"
#include "host/windowing/messages.h"
#include "host/windowing/win32_numbers.h"

namespace velmor::windowing {
namespace {

std::string control_name(int id) {
  return "control " + std::to_string(id);
}

}  // namespace

bool OpenDialog::is_open() const {
  const auto window = Desktop::the().find(dialog_);
  return window && window->kind == WindowKind::dialog && !window->ended && !window->being_destroyed;
}

std::shared_ptr<Window> OpenDialog::dialog() const {
  if (!is_open()) {
    throw CannotDo("the dialog is not open");
  }
  return Desktop::the().find(dialog_);
}

std::shared_ptr<Window> OpenDialog::control(int id) const {
  const auto window = dialog();
  auto found = Desktop::the().item(dialog_, id);
  if (!found) {
    throw CannotDo("the dialog \"" + window->text + "\" has no " + control_name(id));
  }
  return found;
}

std::shared_ptr<Window> OpenDialog::control(int id, WindowKind kind,
                                            std::string_view kind_name) const {
  auto found = control(id);
  if (found->kind != kind) {
    throw CannotDo(control_name(id) + " is not " + std::string(kind_name));
  }
  return found;
}

std::shared_ptr<Window> OpenDialog::check_control(int id) const {
  auto found = control(id);
  if (found->kind != WindowKind::check_box && found->kind != WindowKind::radio_button) {
    throw CannotDo(control_name(id) + " is not a check box");
  }
  return found;
}

void OpenDialog::require_input() const {
  dialog();
  if (!Desktop::the().takes_input(dialog_)) {
    throw CannotDo("another dialog stands before this one");
  }
}

std::shared_ptr<Window> OpenDialog::hand_on(const std::shared_ptr<Window>& control) const {
  require_input();
  if (!control->enabled || !Desktop::the().is_visible(control->handle)) {
    throw CannotDo(control_name(control->id) + " is " + (control->enabled ? "hidden" : "disabled"));
  }
  Desktop::the().set_focus(control->handle);
  return control;
}

intptr_t OpenDialog::resource_id() const {
  return dialog()->resource_id;
}

std::string OpenDialog::title() const {
  return dialog()->text;
}

std::vector<const Window*> OpenDialog::controls() const {
  std::vector<const Window*> all;
  for (const HWND handle : dialog()->children) {
    const auto child = Desktop::the().find(handle);
    if (child->child) {
      all.push_back(child.get());
    }
  }
  return all;
}

bool OpenDialog::has(int id) const {
  dialog();
  return Desktop::the().item(dialog_, id) != nullptr;
}

std::string OpenDialog::text(int id) const {
  const auto found = control(id);
  const int row = found->combo.selection();
  return row >= 0 ? found->combo.text(row) : found->text;
}

bool OpenDialog::is_enabled(int id) const {
  return control(id)->enabled;
}

bool OpenDialog::is_checked(int id) const {
  return check_control(id)->check_state == BST_CHECKED;
}

std::vector<std::string> OpenDialog::rows(int combo_id) const {
  const auto found = control(combo_id, WindowKind::combo_box, "a drop-down list");
  std::vector<std::string> all;
  all.reserve(static_cast<size_t>(found->combo.count()));
  for (int row = 0; row < found->combo.count(); ++row) {
    all.push_back(found->combo.text(row));
  }
  return all;
}

int OpenDialog::selected_row(int combo_id) const {
  return control(combo_id, WindowKind::combo_box, "a drop-down list")->combo.selection();
}

LPARAM OpenDialog::row_data(int combo_id, int row) const {
  const auto found = control(combo_id, WindowKind::combo_box, "a drop-down list");
  if (!found->combo.has(row)) {
    throw CannotDo(control_name(combo_id) + " has no row " + std::to_string(row));
  }
  return found->combo.data(row);
}

std::vector<std::string> OpenDialog::list_columns(int list_id) const {
  const auto found = control(list_id, WindowKind::list_view, "a list");
  std::vector<std::string> all;
  all.reserve(found->list.columns().size());
  for (const auto& column : found->list.columns()) {
    all.push_back(column.text);
  }
  return all;
}

std::vector<std::vector<std::string>> OpenDialog::list_rows(int list_id) const {
  const auto found = control(list_id, WindowKind::list_view, "a list");
  std::vector<std::vector<std::string>> all;
  for (const auto& row : found->list.rows()) {
    all.push_back(row.cells);
    all.back().resize(found->list.columns().size());
  }
  return all;
}

void OpenDialog::type(int id, std::string_view text) {
  const auto edit = hand_on(control(id, WindowKind::edit, "an edit"));
  if ((edit->style & ES_READONLY) != 0) {
    throw CannotDo(control_name(id) + " is read-only");
  }
  set_edit_text(*edit, std::string(text).c_str());
}

void OpenDialog::pick(int combo_id, int row) {
  const auto found = control(combo_id, WindowKind::combo_box, "a drop-down list");
  if (!found->combo.has(row)) {
    throw CannotDo(control_name(combo_id) + " has no row " + std::to_string(row));
  }
  hand_on(found)->combo.select(row);
  notify_dialog(*found, CBN_SELCHANGE);
}

void OpenDialog::press(int id) {
  const auto found = control(id);
  if (found->kind != WindowKind::push_button) {
    check_control(id);
  }
  click(*hand_on(found));
}

void OpenDialog::set_checked(int id, bool checked) {
  if (is_checked(id) != checked) {
    press(id);
  }
}

void OpenDialog::press_enter() {
  require_input();
  windowing::press_enter(dialog_);
}

void OpenDialog::press_escape() {
  require_input();
  windowing::press_escape(dialog_);
}

}  // namespace velmor::windowing
