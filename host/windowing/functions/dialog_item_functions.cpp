#include <climits>
#include <string>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/desktop/messages.h"
#include "host/windowing/functions/layer_functions.h"

namespace velmor::windowing::functions {
namespace {

LRESULT sendToItem(HWND dialog, int id, UINT message, WPARAM wparam, LPARAM lparam) {
  const auto item = Desktop::the().item(dialog, id);
  return item ? sendMessage(item->handle, message, wparam, lparam) : 0;
}

struct Number {
  bool valid = false;
  long long value = 0;
};

Number readNumber(const std::string& text, bool is_signed) {
  size_t at = text.find_first_not_of(" \t\r\n\v\f");
  if (at == std::string::npos) {
    return {};
  }
  const bool negative = is_signed && text[at] == '-';
  at += negative ? 1 : 0;
  const long long highest = is_signed ? static_cast<long long>(INT_MAX) + (negative ? 1 : 0)
                                      : static_cast<long long>(UINT_MAX);
  Number number;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    number.value = number.value * 10 + (text[at] - '0');
    if (number.value > highest) {
      return {};
    }
    number.valid = true;
  }
  number.value = negative ? -number.value : number.value;
  return number;
}

}  // namespace

HWND GetDlgItem(HWND dialog, int id) {
  const auto item = Desktop::the().item(dialog, id);
  return item ? item->handle : nullptr;
}

BOOL SetDlgItemText(HWND dialog, int id, const char* text) {
  return sendToItem(dialog, id, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text)) > 0;
}

int GetDlgItemText(HWND dialog, int id, char* buffer, int size) {
  if (buffer != nullptr && size > 0) {
    buffer[0] = '\0';
  }
  return static_cast<int>(
      sendToItem(dialog, id, WM_GETTEXT, size, reinterpret_cast<LPARAM>(buffer)));
}

void SetDlgItemInt(HWND dialog, int id, int value, int is_signed) {
  const std::string text =
      is_signed != 0 ? std::to_string(value) : std::to_string(static_cast<UINT>(value));
  SetDlgItemText(dialog, id, text.c_str());
}

int GetDlgItemInt(HWND dialog, int id, BOOL* translated, int is_signed) {
  std::string text(static_cast<size_t>(sendToItem(dialog, id, WM_GETTEXTLENGTH, 0, 0)) + 1, '\0');
  text.resize(
      static_cast<size_t>(GetDlgItemText(dialog, id, text.data(), static_cast<int>(text.size()))));
  const Number number = readNumber(text, is_signed != 0);
  if (translated != nullptr) {
    *translated = number.valid ? 1 : 0;
  }
  return number.valid ? static_cast<int>(number.value) : 0;
}

void CheckDlgButton(HWND dialog, int id, int state) {
  sendToItem(dialog, id, BM_SETCHECK, state, 0);
}

int IsDlgButtonChecked(HWND dialog, int id) {
  return static_cast<int>(sendToItem(dialog, id, BM_GETCHECK, 0, 0));
}

}  // namespace velmor::windowing::functions
