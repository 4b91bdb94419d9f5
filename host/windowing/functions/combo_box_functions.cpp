#include "host/windowing/desktop/desktop.h"
#include "host/windowing/desktop/messages.h"
#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/win32/bounded_text.h"

namespace velmor::windowing::functions {
namespace {

std::shared_ptr<Window> findCombo(HWND dialog, int id) {
  auto item = Desktop::the().item(dialog, id);
  return item && item->kind == WindowKind::kComboBox ? item : nullptr;
}

LRESULT sendToCombo(HWND dialog, int id, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto combo = findCombo(dialog, id);
  return combo ? sendMessage(combo->handle, message, wparam, lparam) : CB_ERR;
}

}  // namespace

int QUELM_CB_AddString(HWND dialog, int id, const char* text) {
  return static_cast<int>(sendToCombo(dialog, id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text)));
}

int QUELM_CB_InsertString(HWND dialog, int id, int row, const char* text) {
  return static_cast<int>(
      sendToCombo(dialog, id, CB_INSERTSTRING, row, reinterpret_cast<LPARAM>(text)));
}

int QUELM_CB_DeleteString(HWND dialog, int id, int row) {
  return static_cast<int>(sendToCombo(dialog, id, CB_DELETESTRING, row, 0));
}

void QUELM_CB_Empty(HWND dialog, int id) {
  sendToCombo(dialog, id, CB_RESETCONTENT, 0, 0);
}

int QUELM_CB_GetNumItems(HWND dialog, int id) {
  return static_cast<int>(sendToCombo(dialog, id, CB_GETCOUNT, 0, 0));
}

int QUELM_CB_GetCurSel(HWND dialog, int id) {
  return static_cast<int>(sendToCombo(dialog, id, CB_GETCURSEL, 0, 0));
}

void QUELM_CB_SetCurSel(HWND dialog, int id, int row) {
  sendToCombo(dialog, id, CB_SETCURSEL, row, 0);
}

intptr_t QUELM_CB_GetItemData(HWND dialog, int id, int row) {
  return sendToCombo(dialog, id, CB_GETITEMDATA, row, 0);
}

void QUELM_CB_SetItemData(HWND dialog, int id, int row, intptr_t data) {
  sendToCombo(dialog, id, CB_SETITEMDATA, row, data);
}

int QUELM_CB_GetItemText(HWND dialog, int id, int row, char* buffer, int size) {
  const auto combo = findCombo(dialog, id);
  if (!combo || !combo->combo.has(row)) {
    return CB_ERR;
  }
  return static_cast<int>(copyBounded(combo->combo.text(row), buffer, size));
}

int QUELM_CB_FindString(HWND dialog, int id, int after, const char* text) {
  return static_cast<int>(
      sendToCombo(dialog, id, CB_FINDSTRING, after, reinterpret_cast<LPARAM>(text)));
}

}  // namespace velmor::windowing::functions
