#include "host/windowing/desktop/messages.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/win32/bounded_text.h"
#include "host/windowing/win32/win32_numbers.h"

namespace velmor::windowing {
namespace {

const char* textOf(LPARAM lparam) {
  return reinterpret_cast<const char*>(lparam);
}

const std::string& shownText(const Window& window) {
  return window.kind == WindowKind::kComboBox && window.combo.selection() >= 0
             ? window.combo.text(window.combo.selection())
             : window.text;
}

/// The answer of a control to a message that its kind has no rule for.
LRESULT answerAny(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_SETTEXT:
      window.text = lparam == 0 ? "" : textOf(lparam);
      return 1;
    case WM_GETTEXT:
      return copyBounded(shownText(window), reinterpret_cast<char*>(lparam), wparam);
    case WM_GETTEXTLENGTH:
      return static_cast<LRESULT>(shownText(window).size());
    default:
      return 0;
  }
}

LRESULT answerComboText(ComboBox& combo, UINT message, WPARAM wparam, const char* text) {
  if (text == nullptr) {
    return CB_ERR;
  }
  switch (message) {
    case CB_ADDSTRING:
      return combo.add(text);
    case CB_INSERTSTRING:
      return combo.insert(wparam, text);
    case CB_FINDSTRING:
      return combo.find(wparam, text);
    case CB_FINDSTRINGEXACT:
      return combo.findExact(wparam, text);
    default: {  // CB_SELECTSTRING: a text that is not found leaves the selection as it was
      const int row = combo.find(wparam, text);
      return row < 0 ? CB_ERR : combo.select(row);
    }
  }
}

LRESULT answerCombo(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
  ComboBox& combo = window.combo;
  switch (message) {
    case CB_ADDSTRING:
    case CB_INSERTSTRING:
    case CB_FINDSTRING:
    case CB_FINDSTRINGEXACT:
    case CB_SELECTSTRING:
      return answerComboText(combo, message, wparam, textOf(lparam));
    case CB_DELETESTRING:
      return combo.remove(wparam);
    case CB_RESETCONTENT:
      combo.clear();
      return 0;
    case CB_GETCOUNT:
      return combo.count();
    case CB_GETCURSEL:
      return combo.selection();
    case CB_SETCURSEL:
      return combo.select(wparam);
    case CB_GETITEMDATA:
      return combo.data(wparam);
    case CB_SETITEMDATA:
      return combo.setData(wparam, lparam);
    case CB_GETLBTEXTLEN:
      return combo.has(wparam) ? static_cast<LRESULT>(combo.text(wparam).size()) : CB_ERR;
    case CB_GETLBTEXT:
      if (!combo.has(wparam) || lparam == 0) {
        return CB_ERR;
      }
      std::strcpy(reinterpret_cast<char*>(lparam), combo.text(wparam).c_str());
      return static_cast<LRESULT>(combo.text(wparam).size());
    case WM_SETTEXT:
      if ((window.style & CBS_DROPDOWNLIST) == CBS_DROPDOWNLIST) {
        return CB_ERR;
      }
      return answerAny(window, message, wparam, lparam);
    default:
      return answerAny(window, message, wparam, lparam);
  }
}

int highestCheckState(const Window& button) {
  if (button.kind != WindowKind::kCheckBox && button.kind != WindowKind::kRadioButton) {
    return BST_UNCHECKED;
  }
  const int type = button.style & kButtonTypeMask;
  return type == BS_3STATE || type == BS_AUTO3STATE ? BST_INDETERMINATE : BST_CHECKED;
}

LRESULT answerButton(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case BM_GETCHECK:
      return window.check_state;
    case BM_SETCHECK: {
      // Like Win32, which takes the state as unsigned: a state beyond the button's is its highest.
      const auto highest = static_cast<size_t>(highestCheckState(window));
      window.check_state = static_cast<int>(std::min(static_cast<size_t>(wparam), highest));
      return 0;
    }
    case BM_CLICK:
      if (Desktop::the().takesInput(window.handle)) {
        click(window);
      }
      return 0;
    default:
      return answerAny(window, message, wparam, lparam);
  }
}

LRESULT answerEdit(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (message == WM_SETTEXT) {
    setEditText(window, textOf(lparam));
    return 1;
  }
  return answerAny(window, message, wparam, lparam);
}

LRESULT answerDialog(Window& window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (window.procedure != nullptr) {
    const LRESULT answer = window.procedure(window.handle, message, wparam, lparam);
    if (answer != 0) {
      return answer;
    }
  }
  if (message == WM_CLOSE) {
    pressEscape(window.handle);
    return 0;
  }
  return answerAny(window, message, wparam, lparam);
}

/// A click on an automatic radio button unchecks the others of its group: its neighbours up to
/// the controls that begin a group.
void checkAloneInGroup(Window& button) {
  const Desktop& desktop = Desktop::the();
  const auto dialog = desktop.find(button.parent);
  if (dialog) {
    bool own_group = false;
    std::vector<std::shared_ptr<Window>> group;
    for (const HWND handle : dialog->children) {
      const auto control = desktop.find(handle);
      if ((control->style & WS_GROUP) != 0) {
        if (own_group) {
          break;
        }
        group.clear();
      }
      own_group = own_group || control->handle == button.handle;
      if (control->kind == WindowKind::kRadioButton) {
        group.push_back(control);
      }
    }
    for (const auto& each : group) {
      each->check_state = BST_UNCHECKED;
    }
  }
  button.check_state = BST_CHECKED;
}

}  // namespace

LRESULT sendMessage(HWND handle, UINT message, WPARAM wparam, LPARAM lparam) {
  // The pointer keeps the window while it answers: the procedure that it calls may destroy it.
  const std::shared_ptr<Window> window = Desktop::the().find(handle);
  if (!window) {
    return 0;
  }
  switch (window->kind) {
    case WindowKind::kDialog:
      return answerDialog(*window, message, wparam, lparam);
    case WindowKind::kComboBox:
      return answerCombo(*window, message, wparam, lparam);
    case WindowKind::kEdit:
      return answerEdit(*window, message, wparam, lparam);
    case WindowKind::kPushButton:
    case WindowKind::kCheckBox:
    case WindowKind::kRadioButton:
      return answerButton(*window, message, wparam, lparam);
    default:
      return answerAny(*window, message, wparam, lparam);
  }
}

void notifyDialog(const Window& control, int code) {
  const WPARAM wparam = (control.id & 0xFFFF) | (static_cast<WPARAM>(code) << 16);
  sendMessage(control.parent, WM_COMMAND, wparam, reinterpret_cast<LPARAM>(control.handle));
}

void setEditText(Window& edit, const char* text) {
  edit.text = text == nullptr ? "" : text;
  notifyDialog(edit, EN_UPDATE);
  notifyDialog(edit, EN_CHANGE);
}

void click(Window& button) {
  switch (button.kind) {
    case WindowKind::kCheckBox:
      if ((button.style & kButtonTypeMask) == BS_AUTOCHECKBOX) {
        button.check_state = button.check_state == BST_UNCHECKED ? BST_CHECKED : BST_UNCHECKED;
      } else if ((button.style & kButtonTypeMask) == BS_AUTO3STATE) {
        button.check_state = (button.check_state + 1) % (BST_INDETERMINATE + 1);
      }
      break;
    case WindowKind::kRadioButton:
      if ((button.style & kButtonTypeMask) == BS_AUTORADIOBUTTON) {
        checkAloneInGroup(button);
      }
      break;
    default:
      break;
  }
  notifyDialog(button, BN_CLICKED);
}

void pressEnter(HWND dialog) {
  const Desktop& desktop = Desktop::the();
  auto pressed = desktop.find(desktop.focus());
  const auto window = desktop.find(dialog);
  if (!window) {
    return;
  }
  if (!pressed || pressed->kind != WindowKind::kPushButton || pressed->parent != dialog) {
    pressed = nullptr;
    for (const HWND handle : window->children) {
      const auto control = desktop.find(handle);
      if (control->default_button) {
        pressed = control;
        break;
      }
    }
  }
  if (!pressed) {
    sendMessage(dialog, WM_COMMAND, IDOK, 0);
  } else if (pressed->enabled) {
    notifyDialog(*pressed, BN_CLICKED);
  }
}

void pressEscape(HWND dialog) {
  const auto cancel = Desktop::the().item(dialog, IDCANCEL);
  if (!cancel) {
    sendMessage(dialog, WM_COMMAND, IDCANCEL, 0);
  } else if (cancel->enabled) {
    notifyDialog(*cancel, BN_CLICKED);
  }
}

}  // namespace velmor::windowing
