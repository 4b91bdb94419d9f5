// All windows of the process, by handle, and who sits before them.
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
  bool exists(HWND handle) const { return windows_.contains(handle); }
  size_t window_count() const { return windows_.size(); }

  /// Sends WM_DESTROY to the dialogs among the window and what hangs on it, each before its
  /// children; then they are gone. What a dialog procedure throws is thrown on when all are gone.
  /// False when there is no such window or it is being destroyed already.
  bool destroy(HWND handle);

  /// Whether the window and all it lies in are shown.
  bool is_visible(HWND handle) const;
  /// Whether the window and all it lies in take input.
  bool takes_input(HWND handle) const;
  bool is_inside(HWND window, HWND ancestor) const;

  HWND focus() const { return exists(focus_) ? focus_ : nullptr; }
  void set_focus(HWND handle) { focus_ = handle; }

  /// Who uses the dialogs and reads the message boxes; null when nobody does.
  Person* person() const { return person_; }
  void set_person(Person* person) { person_ = person; }

  void post(const Message& message) { posted_.push_back({message, ++last_posted_}); }
  /// Delivers what was posted before the call, in order.
  void deliver_posted();
  void forget_posted() { posted_.clear(); }

 private:
  struct Posted {
    Message message;
    uint64_t number;  ///< counts all that were ever posted
  };

  Desktop() = default;
  void destroy_tree(Window& window, std::exception_ptr& failure);

  std::map<HWND, std::shared_ptr<Window>> windows_;
  std::deque<Posted> posted_;
  uint64_t last_posted_ = 0;
  uintptr_t last_handle_ = 0x10000;
  HWND focus_ = nullptr;
  Person* person_ = nullptr;
};

/// A window of the host's own, the parent of a module's dialogs; gone with the object, together
/// with everything in it.
class TopWindow {
 public:
  explicit TopWindow(std::string title);
  ~TopWindow();
  TopWindow(const TopWindow&) = delete;
  TopWindow& operator=(const TopWindow&) = delete;

  HWND handle() const { return handle_; }

 private:
  HWND handle_;
};

}  // namespace velmor::windowing
