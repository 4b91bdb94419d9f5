#include "host/windowing/desktop/desktop.h"
#include "host/windowing/desktop/messages.h"
#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/win32/bounded_text.h"

namespace velmor::windowing::functions {

LRESULT SendMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  return sendMessage(window, message, wparam, lparam);
}

BOOL PostMessage(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  if (!Desktop::the().exists(window)) {
    return 0;
  }
  Desktop::the().post({window, message, wparam, lparam});
  return 1;
}

void QUELM_MessageQueue_Flush() {
  Desktop::the().deliverPosted();
}

void QUELM_MessageQueue_Clear() {
  Desktop::the().forgetPosted();
}

LRESULT DefWindowProc(HWND /*window*/, UINT /*message*/, WPARAM /*wparam*/, LPARAM /*lparam*/) {
  return 0;
}

BOOL IsWindow(HWND window) {
  return Desktop::the().exists(window) ? 1 : 0;
}

BOOL DestroyWindow(HWND window) {
  return Desktop::the().destroy(window) ? 1 : 0;
}

BOOL ShowWindow(HWND handle, int command) {
  const auto window = Desktop::the().find(handle);
  if (!window) {
    return 0;
  }
  const bool before = window->visible;
  window->visible = command != SW_HIDE;
  return before ? 1 : 0;
}

BOOL IsWindowVisible(HWND window) {
  return Desktop::the().isVisible(window) ? 1 : 0;
}

void EnableWindow(HWND handle, int enable) {
  if (const auto window = Desktop::the().find(handle)) {
    window->enabled = enable != 0;
    if (!window->enabled && Desktop::the().focus() == handle) {
      Desktop::the().setFocus(nullptr);
    }
  }
}

BOOL IsWindowEnabled(HWND handle) {
  const auto window = Desktop::the().find(handle);
  return window && window->enabled ? 1 : 0;
}

HWND SetFocus(HWND handle) {
  const HWND before = GetFocus();
  if (handle == nullptr || Desktop::the().takesInput(handle)) {
    Desktop::the().setFocus(handle);
  }
  return before;
}

HWND GetFocus() {
  return Desktop::the().focus();
}

HWND GetParent(HWND handle) {
  const auto window = Desktop::the().find(handle);
  return window ? window->parent : nullptr;
}

BOOL IsChild(HWND ancestor, HWND window) {
  return ancestor != nullptr && Desktop::the().isInside(window, ancestor) ? 1 : 0;
}

BOOL EnumChildWindows(HWND handle, BOOL (*visit)(HWND, LPARAM), LPARAM param) {
  const auto window = Desktop::the().find(handle);
  if (!window || visit == nullptr) {
    return 0;
  }
  const std::vector<HWND> children = window->children;  // the visitor may destroy some
  for (const HWND each : children) {
    const auto child = Desktop::the().find(each);
    if (child && child->child &&
        (visit(each, param) == 0 ||
         (Desktop::the().exists(each) && EnumChildWindows(each, visit, param) == 0))) {
      return 0;
    }
  }
  return 1;
}

int GetWindowTextLength(HWND window) {
  return static_cast<int>(sendMessage(window, WM_GETTEXTLENGTH, 0, 0));
}

int GetClassName(HWND handle, char* buffer, int size) {
  const auto window = Desktop::the().find(handle);
  return window ? static_cast<int>(copyBounded(window->class_name, buffer, size)) : 0;
}

namespace {

template <typename Value>
intptr_t exchange(Value& kept, intptr_t value) {
  const intptr_t before = kept;
  kept = static_cast<Value>(value);
  return before;
}

}  // namespace

intptr_t GetWindowLong(HWND handle, int index) {
  const auto window = Desktop::the().find(handle);
  if (!window) {
    return 0;
  }
  switch (index) {
    case GWL_USERDATA:
      return window->user_data;
    case GWL_STYLE:
      return window->style;
    case GWL_EXSTYLE:
      return window->extended_style;
    case GWL_ID:
      return window->id;
    default:
      return 0;
  }
}

intptr_t SetWindowLong(HWND handle, int index, intptr_t value) {
  const auto window = Desktop::the().find(handle);
  if (!window) {
    return 0;
  }
  switch (index) {
    case GWL_USERDATA:
      return exchange(window->user_data, value);
    case GWL_STYLE:
      return exchange(window->style, value);
    case GWL_EXSTYLE:
      return exchange(window->extended_style, value);
    case GWL_ID:
      return exchange(window->id, value);
    default:
      return 0;
  }
}

void* GetProp(HWND handle, const char* name) {
  const auto window = Desktop::the().find(handle);
  if (!window || name == nullptr) {
    return nullptr;
  }
  const auto found = window->properties.find(name);
  return found == window->properties.end() ? nullptr : found->second;
}

BOOL SetProp(HWND handle, const char* name, void* value) {
  const auto window = Desktop::the().find(handle);
  if (!window || name == nullptr) {
    return 0;
  }
  window->properties[name] = value;
  return 1;
}

void* RemoveProp(HWND handle, const char* name) {
  void* const value = GetProp(handle, name);
  const auto window = Desktop::the().find(handle);
  if (window && name != nullptr) {
    window->properties.erase(name);
  }
  return value;
}

BOOL GetWindowRect(HWND handle, RECT* rect) {
  auto window = Desktop::the().find(handle);
  if (!window || rect == nullptr) {
    return 0;
  }
  *rect = {0, 0, window->place.width, window->place.height};
  for (; window; window = window->child ? Desktop::the().find(window->parent) : nullptr) {
    rect->left += window->place.x;
    rect->right += window->place.x;
    rect->top += window->place.y;
    rect->bottom += window->place.y;
  }
  return 1;
}

BOOL GetClientRect(HWND handle, RECT* rect) {
  const auto window = Desktop::the().find(handle);
  if (!window || rect == nullptr) {
    return 0;
  }
  *rect = {0, 0, window->place.width, window->place.height};
  return 1;
}

BOOL SetWindowPos(HWND handle, HWND /*after*/, int x, int y, int width, int height, UINT flags) {
  const auto window = Desktop::the().find(handle);
  if (!window) {
    return 0;
  }
  if ((flags & SWP_NOMOVE) == 0) {
    window->place.x = x;
    window->place.y = y;
  }
  if ((flags & SWP_NOSIZE) == 0) {
    window->place.width = width;
    window->place.height = height;
  }
  return 1;
}

}  // namespace velmor::windowing::functions
