// A dialog whose procedure is the test's, and a user who follows a script.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <utility>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/dialogs/dialog_user.h"
#include "host/windowing/functions/layer_functions.h"
#include "tests/host/windowing/dialog_templates.h"

namespace velmor::windowing {

/// A message as a dialog procedure gets it.
struct Received {
  HWND window;
  UINT message;
  WPARAM wparam;
  LPARAM lparam;
};

inline int commandId(const Received& each) {
  return static_cast<int>(each.wparam & 0xFFFF);
}
inline int commandCode(const Received& each) {
  return static_cast<int>(each.wparam >> 16);
}

/// One turn at a time; whoever has no turn left walks away.
class ScriptedUser : public DialogUser {
 public:
  using Turn = std::function<void(OpenDialog&)>;

  explicit ScriptedUser(std::deque<Turn> turns = {}) : m_turns(std::move(turns)) {}

  void dialogOpened(OpenDialog& dialog) override { opened.push_back(dialog.resourceId()); }
  bool useDialog(OpenDialog& dialog) override {
    if (m_turns.empty()) {
      return false;
    }
    const Turn turn = m_turns.front();
    m_turns.pop_front();
    turn(dialog);
    return true;
  }
  int readMessage(const ShownMessage& message) override {
    messages.push_back(message);
    return answer;
  }

  size_t turnsLeft() const { return m_turns.size(); }

  std::vector<intptr_t> opened;
  std::vector<ShownMessage> messages;
  int answer = IDOK;

 private:
  std::deque<Turn> m_turns;
};

/// A test with dialogs: it starts and ends without a window and without anybody to use one.
class DialogCase : public testing::Test {
 protected:
  using Procedure = std::function<LRESULT(const Received&)>;

  void SetUp() override {
    ASSERT_EQ(Desktop::the().windowCount(), 0U);
    g_current = this;
  }
  void TearDown() override {
    m_on_message = nullptr;  // what it refers to in the test's body is gone
    if (m_modeless != nullptr) {
      Desktop::the().destroy(m_modeless);
    }
    EXPECT_EQ(Desktop::the().windowCount(), 0U) << "windows were left over";
    EXPECT_EQ(Desktop::the().user(), nullptr);
    g_current = nullptr;
  }

  static LRESULT procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const Received each = {window, message, wparam, lparam};
    g_current->m_received.push_back(each);
    return g_current->m_on_message ? g_current->m_on_message(each) : 0;
  }

  /// A modeless dialog that the test's end destroys.
  HWND open(intptr_t id, HWND parent = nullptr) {
    m_modeless = functions::QUELM_CreateDialog(dialogTemplates(), id, parent, &procedure, 42);
    functions::ShowWindow(m_modeless, 5);
    m_received.clear();
    return m_modeless;
  }
  int run(intptr_t id, HWND parent = nullptr) {
    return functions::QUELM_DialogBox(dialogTemplates(), id, parent, &procedure, 42);
  }
  /// Like most dialogs: OK and Cancel end it with their ids.
  void endOnButtons() {
    m_on_message = [](const Received& each) -> LRESULT {
      if (each.message == WM_COMMAND && commandId(each) <= IDCANCEL) {
        functions::EndDialog(each.window, commandId(each));
      }
      return 0;
    };
  }
  std::vector<UINT> messages() const {
    std::vector<UINT> all;
    for (const Received& each : m_received) {
      all.push_back(each.message);
    }
    return all;
  }
  /// The commands of a control, as notification codes.
  std::vector<int> codesOf(int id) const {
    std::vector<int> all;
    for (const Received& each : m_received) {
      if (each.message == WM_COMMAND && commandId(each) == id) {
        all.push_back(commandCode(each));
      }
    }
    return all;
  }

  std::vector<Received> m_received;
  Procedure m_on_message;

 private:
  static inline DialogCase* g_current = nullptr;
  HWND m_modeless = nullptr;
};

inline LPARAM textParam(const char* text) {
  return reinterpret_cast<LPARAM>(text);
}

}  // namespace velmor::windowing
