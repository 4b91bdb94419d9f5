#include "host/windowing/desktop/desktop.h"

#include <utility>

#include "host/windowing/desktop/messages.h"

namespace velmor::windowing {

Desktop& Desktop::the() {
  static Desktop desktop;
  return desktop;
}

std::shared_ptr<Window> Desktop::create(WindowKind kind, HWND parent) {
  constexpr uintptr_t kHandleStep = 4;
  auto window = std::make_shared<Window>();
  m_last_handle += kHandleStep;
  window->handle = reinterpret_cast<HWND>(m_last_handle);
  window->kind = kind;
  window->parent = parent;
  m_windows.emplace(window->handle, window);
  if (const auto above = find(parent)) {
    above->children.push_back(window->handle);
  }
  return window;
}

std::shared_ptr<Window> Desktop::find(HWND handle) const {
  const auto found = m_windows.find(handle);
  return found == m_windows.end() ? nullptr : found->second;
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
  destroyTree(*window, failure);
  if (const auto above = find(window->parent)) {
    std::erase(above->children, handle);
  }
  if (failure) {
    std::rethrow_exception(failure);
  }
  return true;
}

void Desktop::destroyTree(Window& window, std::exception_ptr& failure) {
  window.being_destroyed = true;
  try {
    sendMessage(window.handle, WM_DESTROY, 0, 0);
  } catch (...) {
    if (!failure) {
      failure = std::current_exception();
    }
  }
  while (!window.children.empty()) {
    const HWND handle = window.children.front();
    window.children.erase(window.children.begin());
    if (const auto child = find(handle); child && !child->being_destroyed) {
      destroyTree(*child, failure);
    }
  }
  m_windows.erase(window.handle);
}

bool Desktop::isVisible(HWND handle) const {
  auto window = find(handle);
  while (window && window->visible && window->child) {
    window = find(window->parent);
  }
  return window && window->visible;
}

bool Desktop::takesInput(HWND handle) const {
  auto window = find(handle);
  while (window && window->enabled && window->child) {
    window = find(window->parent);
  }
  return window && window->enabled;
}

bool Desktop::isInside(HWND window, HWND ancestor) const {
  for (auto each = find(window); each && each->child; each = find(each->parent)) {
    if (each->parent == ancestor) {
      return true;
    }
  }
  return false;
}

void Desktop::deliverPosted() {
  // By number, not by count: what a message calls may deliver, or post, on its own.
  const uint64_t last = m_last_posted;
  while (!m_posted.empty() && m_posted.front().number <= last) {
    const Message message = m_posted.front().message;
    m_posted.pop_front();
    sendMessage(message.window, message.message, message.wparam, message.lparam);
  }
}

TopWindow::TopWindow(std::string title) {
  const auto window = Desktop::the().create(WindowKind::kTop, nullptr);
  window->text = std::move(title);
  m_handle = window->handle;
}

TopWindow::~TopWindow() {
  try {
    Desktop::the().destroy(m_handle);
  } catch (
      ...) {  // NOLINT(bugprone-empty-catch): the window is gone, and a destructor throws nothing
  }
}

}  // namespace velmor::windowing
