// All windows of the process, by handle, and the user of their dialogs.
//
// This windowing layer behaves: messages are dispatched, controls keep their state, dialogs run
// until they are ended. The one that only records what the module calls is
// tests/fake_host/windowing_layer.h.
//
// Used by one thread only. Handles are numbers that are never given out twice, so a handle that is
// invalid, or whose window is gone, is recognised and never followed.
#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <string>

#include "host/windowing/desktop/window.h"

namespace velmor::windowing {

class DialogUser;

class Desktop {
 public:
  struct Message {
    HWND window;
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
  };

  /// The only desktop there is; it lives until the process ends.
  static Desktop& the();

  /// A new window, the last child of `parent` where that is not null.
  std::shared_ptr<Window> create(WindowKind kind, HWND parent);
  /// The window of a handle, or null. The pointer stays good when the window is destroyed
  /// meanwhile.
  std::shared_ptr<Window> find(HWND handle) const;
  /// The first child control with that id, or null.
  std::shared_ptr<Window> item(HWND dialog, int id) const;
  bool exists(HWND handle) const { return m_windows.contains(handle); }
  size_t windowCount() const { return m_windows.size(); }

  /// Destroys a window with its children and the dialogs that it owns. Each dialog gets WM_DESTROY
  /// before its children do; what its procedure throws is thrown on when all are gone. False when
  /// there is no such window or it is being destroyed already.
  bool destroy(HWND handle);

  /// Whether the window and all it lies in are shown.
  bool isVisible(HWND handle) const;
  /// Whether the window and all it lies in take input.
  bool takesInput(HWND handle) const;
  bool isInside(HWND window, HWND ancestor) const;

  HWND focus() const { return exists(m_focus) ? m_focus : nullptr; }
  void setFocus(HWND handle) { m_focus = handle; }

  /// Whoever uses the dialogs and answers the message boxes; null when there is nobody. Not owned.
  DialogUser* user() const { return m_user; }
  void setUser(DialogUser* user) { m_user = user; }

  void post(const Message& message) { m_posted.push_back({message, ++m_last_posted}); }
  /// Delivers what was posted before the call, in order.
  void deliverPosted();
  void forgetPosted() { m_posted.clear(); }

 private:
  struct Posted {
    Message message;
    uint64_t number;  ///< counts all that were ever posted
  };

  Desktop() = default;
  void destroyTree(Window& window, std::exception_ptr& failure);

  std::map<HWND, std::shared_ptr<Window>> m_windows;
  std::deque<Posted> m_posted;
  uint64_t m_last_posted = 0;
  uintptr_t m_last_handle = 0x10000;
  HWND m_focus = nullptr;
  DialogUser* m_user = nullptr;
};

/// A window of the host's own, the parent of a module's dialogs. The object's end destroys it with
/// everything in it.
class TopWindow {
 public:
  explicit TopWindow(std::string title);
  ~TopWindow();
  TopWindow(const TopWindow&) = delete;
  TopWindow& operator=(const TopWindow&) = delete;

  HWND handle() const { return m_handle; }

 private:
  HWND m_handle;
};

}  // namespace velmor::windowing
