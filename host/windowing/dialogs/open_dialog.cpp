#include "host/windowing/dialogs/open_dialog.h"

#include "disc/text/phrases.h"
#include "host/windowing/desktop/desktop.h"
#include "host/windowing/desktop/messages.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing {
namespace {

std::string controlName(int id) {
  return "control " + std::to_string(id);
}

}  // namespace

bool OpenDialog::isOpen() const {
  const auto window = Desktop::the().find(m_dialog);
  return window && window->kind == WindowKind::kDialog && !window->ended &&
         !window->being_destroyed;
}

std::shared_ptr<Window> OpenDialog::dialog() const {
  if (!isOpen()) {
    throw CannotDo("the dialog is not open");
  }
  return Desktop::the().find(m_dialog);
}

std::shared_ptr<Window> OpenDialog::control(int id) const {
  const auto window = dialog();
  auto found = Desktop::the().item(m_dialog, id);
  if (!found) {
    throw CannotDo("the dialog " + disc::inQuotes(window->text) + " has no " + controlName(id));
  }
  return found;
}

std::shared_ptr<Window> OpenDialog::control(int id, WindowKind kind,
                                            std::string_view kind_name) const {
  auto found = control(id);
  if (found->kind != kind) {
    throw CannotDo(controlName(id) + " is not " + std::string(kind_name));
  }
  return found;
}

std::shared_ptr<Window> OpenDialog::checkControl(int id) const {
  auto found = control(id);
  if (found->kind != WindowKind::kCheckBox && found->kind != WindowKind::kRadioButton) {
    throw CannotDo(controlName(id) + " is not a check box");
  }
  return found;
}

void OpenDialog::requireInput() const {
  dialog();
  if (!Desktop::the().takesInput(m_dialog)) {
    throw CannotDo("another dialog stands before this one");
  }
}

std::shared_ptr<Window> OpenDialog::handOn(const std::shared_ptr<Window>& control) const {
  requireInput();
  if (!control->enabled || !Desktop::the().isVisible(control->handle)) {
    throw CannotDo(controlName(control->id) + " is " + (control->enabled ? "hidden" : "disabled"));
  }
  Desktop::the().setFocus(control->handle);
  return control;
}

intptr_t OpenDialog::resourceId() const {
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
  return Desktop::the().item(m_dialog, id) != nullptr;
}

std::string OpenDialog::text(int id) const {
  const auto found = control(id);
  const int row = found->combo.selection();
  return row >= 0 ? found->combo.text(row) : found->text;
}

bool OpenDialog::isEnabled(int id) const {
  return control(id)->enabled;
}

bool OpenDialog::isChecked(int id) const {
  return checkControl(id)->check_state == BST_CHECKED;
}

std::vector<std::string> OpenDialog::rows(int combo_id) const {
  const auto found = control(combo_id, WindowKind::kComboBox, "a drop-down list");
  std::vector<std::string> all;
  all.reserve(static_cast<size_t>(found->combo.count()));
  for (int row = 0; row < found->combo.count(); ++row) {
    all.push_back(found->combo.text(row));
  }
  return all;
}

int OpenDialog::selectedRow(int combo_id) const {
  return control(combo_id, WindowKind::kComboBox, "a drop-down list")->combo.selection();
}

LPARAM OpenDialog::rowData(int combo_id, int row) const {
  const auto found = control(combo_id, WindowKind::kComboBox, "a drop-down list");
  if (!found->combo.has(row)) {
    throw CannotDo(controlName(combo_id) + " has no row " + std::to_string(row));
  }
  return found->combo.data(row);
}

std::vector<std::string> OpenDialog::listColumns(int list_id) const {
  const auto found = control(list_id, WindowKind::kListView, "a list");
  std::vector<std::string> all;
  all.reserve(found->list.columns().size());
  for (const auto& column : found->list.columns()) {
    all.push_back(column.text);
  }
  return all;
}

std::vector<std::vector<std::string>> OpenDialog::listRows(int list_id) const {
  const auto found = control(list_id, WindowKind::kListView, "a list");
  std::vector<std::vector<std::string>> all;
  for (const auto& row : found->list.rows()) {
    all.push_back(row.cells);
    all.back().resize(found->list.columns().size());
  }
  return all;
}

void OpenDialog::type(int id, std::string_view text) {
  const auto edit = handOn(control(id, WindowKind::kEdit, "an edit"));
  if ((edit->style & ES_READONLY) != 0) {
    throw CannotDo(controlName(id) + " is read-only");
  }
  setEditText(*edit, std::string(text).c_str());
}

void OpenDialog::pick(int combo_id, int row) {
  const auto found = control(combo_id, WindowKind::kComboBox, "a drop-down list");
  if (!found->combo.has(row)) {
    throw CannotDo(controlName(combo_id) + " has no row " + std::to_string(row));
  }
  handOn(found)->combo.select(row);
  notifyDialog(*found, CBN_SELCHANGE);
}

void OpenDialog::press(int id) {
  const auto found = control(id);
  if (found->kind != WindowKind::kPushButton) {
    checkControl(id);
  }
  click(*handOn(found));
}

void OpenDialog::setChecked(int id, bool checked) {
  if (isChecked(id) != checked) {
    press(id);
  }
}

void OpenDialog::pressEnter() {
  requireInput();
  windowing::pressEnter(m_dialog);
}

void OpenDialog::pressEscape() {
  requireInput();
  windowing::pressEscape(m_dialog);
}

}  // namespace velmor::windowing
