// All windows of the process, by handle, and who uses them.
//
// This windowing layer behaves: messages are dispatched, controls keep their state, dialogs run
// until they are ended. The one that only records what the module calls is
// tests/fake_host/windowing_layer.h.
//
// One thread by contract. Handles are numbers that are never given out twice: one that is invalid
// or whose window is gone is recognised, never followed.
#pragma once

#include <cstdint>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <string>

#include "host/windowing/dialogs/person.h"
#include "host/windowing/window.h"

namespace velmor::windowing {

class Desktop {
 public:
  struct Message {
    HWND window;
    UINT message;
    WPARAM wparam;
    LPARAM lparam;
  };

  /// The only one.
  static Desktop& the();

  /// A new window, the last child of `parent` where that is not null.
  std::shared_ptr<Window> create(WindowKind kind, HWND parent);
  /// The window of a handle, or null. Kept while held, also when destroyed meanwhile.
  std::shared_ptr<Window> find(HWND handle) const;
  /// The first child control with that id, or null.
  std::shared_ptr<Window> item(HWND dialog, int id) const;
  bool exists(HWND handle) const { return m_windows.contains(handle); }
  size_t windowCount() const { return m_windows.size(); }

  /// Sends WM_DESTROY to the dialogs among the window and what hangs on it, each before its
  /// children; then they are gone. What a dialog procedure throws is thrown on when all are gone.
  /// False when there is no such window or it is being destroyed already.
  bool destroy(HWND handle);

  /// Whether the window and all it lies in are shown.
  bool isVisible(HWND handle) const;
  /// Whether the window and all it lies in take input.
  bool takesInput(HWND handle) const;
  bool isInside(HWND window, HWND ancestor) const;

  HWND focus() const { return exists(m_focus) ? m_focus : nullptr; }
  void setFocus(HWND handle) { m_focus = handle; }

  /// Who uses the dialogs and reads the message boxes; null when nobody does.
  Person* person() const { return m_person; }
  void setPerson(Person* person) { m_person = person; }

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
  Person* m_person = nullptr;
};

/// A window of the host's own, the parent of a module's dialogs; gone with the object, together
/// with everything in it.
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
