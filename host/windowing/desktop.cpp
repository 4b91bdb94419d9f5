#include "host/windowing/desktop.h"

#include <utility>

#include "host/windowing/messages.h"

namespace velmor::windowing {

Desktop& Desktop::the() {
  static Desktop desktop;
  return desktop;
}

std::shared_ptr<Window> Desktop::create(WindowKind kind, HWND parent) {
  constexpr uintptr_t kHandleStep = 4;
  auto window = std::make_shared<Window>();
  last_handle_ += kHandleStep;
  window->handle = reinterpret_cast<HWND>(last_handle_);
  window->kind = kind;
  window->parent = parent;
  windows_.emplace(window->handle, window);
  if (const auto above = find(parent)) {
    above->children.push_back(window->handle);
  }
  return window;
}

std::shared_ptr<Window> Desktop::find(HWND handle) const {
  const auto found = windows_.find(handle);
  return found == windows_.end() ? nullptr : found->second;
}

std::shared_ptr<Window> Desktop::item(HWND dialog, int id) const {
  if (const auto window = find(dialog)) {
    for (const HWND handle : window->children) {
      auto child = find(handle);
      if (child && child->child && child->id == id) {
        return child;
      }
    }
  }
  return nullptr;
}

bool Desktop::destroy(HWND handle) {
  const auto window = find(handle);
  if (!window || window->being_destroyed) {
    return false;
  }
  std::exception_ptr failure;
  destroy_tree(*window, failure);
  if (const auto above = find(window->parent)) {
    std::erase(above->children, handle);
  }
  if (failure) {
    std::rethrow_exception(failure);
  }
  return true;
}

void Desktop::destroy_tree(Window& window, std::exception_ptr& failure) {
  window.being_destroyed = true;
  try {
    send_message(window.handle, WM_DESTROY, 0, 0);
  } catch (...) {
    if (!failure) {
      failure = std::current_exception();
    }
  }
  while (!window.children.empty()) {
    const HWND handle = window.children.front();
    window.children.erase(window.children.begin());
    if (const auto child = find(handle); child && !child->being_destroyed) {
      destroy_tree(*child, failure);
    }
  }
  windows_.erase(window.handle);
}

bool Desktop::is_visible(HWND handle) const {
  auto window = find(handle);
  while (window && window->visible && window->child) {
    window = find(window->parent);
  }
  return window && window->visible;
}

bool Desktop::takes_input(HWND handle) const {
  auto window = find(handle);
  while (window && window->enabled && window->child) {
    window = find(window->parent);
  }
  return window && window->enabled;
}

bool Desktop::is_inside(HWND window, HWND ancestor) const {
  for (auto each = find(window); each && each->child; each = find(each->parent)) {
    if (each->parent == ancestor) {
      return true;
    }
  }
  return false;
}

void Desktop::deliver_posted() {
  // By number, not by count: what a message calls may deliver, or post, on its own.
  const uint64_t last = last_posted_;
  while (!posted_.empty() && posted_.front().number <= last) {
    const Message message = posted_.front().message;
    posted_.pop_front();
    send_message(message.window, message.message, message.wparam, message.lparam);
  }
}

TopWindow::TopWindow(std::string title) {
  const auto window = Desktop::the().create(WindowKind::top, nullptr);
  window->text = std::move(title);
  handle_ = window->handle;
}

TopWindow::~TopWindow() {
  try {
    Desktop::the().destroy(handle_);
  } catch (
      ...) {  // NOLINT(bugprone-empty-catch): the window is gone, and a destructor throws nothing
  }
}

PersonAtDesk::PersonAtDesk(Person& person) : before_(Desktop::the().person()) {
  Desktop::the().set_person(&person);
}

PersonAtDesk::~PersonAtDesk() {
  Desktop::the().set_person(before_);
}

}  // namespace velmor::windowing
