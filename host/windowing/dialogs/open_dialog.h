// A dialog on the screen, with what a user can see of it and do to it.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "abi/quelm_types.h"
#include "host/windowing/desktop/window.h"

namespace velmor::windowing {

/// What a user tried and cannot do: press a disabled button, pick a row that is not there.
class CannotDo : public std::logic_error {
  using std::logic_error::logic_error;
};

/// Works for modal dialogs and for modeless ones, by their handle. Controls are named by their ids.
/// Every function throws `CannotDo` when there is no such control, when the control is of another
/// kind, and when the dialog is gone; those that change something also when it takes no input.
class OpenDialog {
 public:
  explicit OpenDialog(HWND dialog) : m_dialog(dialog) {}

  HWND handle() const { return m_dialog; }
  /// Neither ended nor destroyed.
  bool isOpen() const;

  // What it shows.
  intptr_t resourceId() const;
  std::string title() const;
  /// All controls in tab order, labels among them; the pointers are good until the next change.
  std::vector<const Window*> controls() const;
  bool has(int id) const;
  /// An edit's or label's text, a button's caption, the text of a combo box's selected row.
  std::string text(int id) const;
  bool isEnabled(int id) const;
  bool isChecked(int id) const;
  std::vector<std::string> rows(int combo_id) const;
  int selectedRow(int combo_id) const;  ///< -1: none
  LPARAM rowData(int combo_id, int row) const;
  std::vector<std::string> listColumns(int list_id) const;
  /// Row by row; each has as many cells as there are columns.
  std::vector<std::vector<std::string>> listRows(int list_id) const;

  // What a user does to it.
  /// Replaces an edit's text.
  void type(int id, std::string_view text);
  /// Picks a row of a drop-down list, also the one already picked.
  void pick(int combo_id, int row);
  /// Presses a push button, check box or radio button.
  void press(int id);
  /// Presses a check box where it stands otherwise.
  void setChecked(int id, bool checked);
  /// Presses the button that has the focus, else the default button.
  void pressEnter();
  void pressEscape();
  void close() { pressEscape(); }

 private:
  std::shared_ptr<Window> dialog() const;
  std::shared_ptr<Window> control(int id) const;
  std::shared_ptr<Window> control(int id, WindowKind kind, std::string_view kind_name) const;
  std::shared_ptr<Window> checkControl(int id) const;
  std::shared_ptr<Window> handOn(const std::shared_ptr<Window>& control) const;
  void requireInput() const;

  HWND m_dialog;
};

}  // namespace velmor::windowing
