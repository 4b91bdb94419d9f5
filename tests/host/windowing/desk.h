// A dialog whose procedure is the test's, and a person who follows a script.
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <utility>

#include "host/windowing/desktop.h"
#include "host/windowing/dialogs/person.h"
#include "host/windowing/layer_functions.h"
#include "tests/host/windowing/dialog_templates.h"

namespace velmor::windowing {

/// A message as a dialog procedure gets it.
struct Received {
  HWND window;
  UINT message;
  WPARAM wparam;
  LPARAM lparam;
};

inline int command_id(const Received& each) {
  return static_cast<int>(each.wparam & 0xFFFF);
}
inline int command_code(const Received& each) {
  return static_cast<int>(each.wparam >> 16);
}

/// One turn at a time; whoever has no turn left walks away.
class ScriptedPerson : public Person {
 public:
  using Turn = std::function<void(OpenDialog&)>;

  explicit ScriptedPerson(std::deque<Turn> turns = {}) : turns_(std::move(turns)) {}

  void dialog_opened(OpenDialog& dialog) override { opened.push_back(dialog.resource_id()); }
  bool use_dialog(OpenDialog& dialog) override {
    if (turns_.empty()) {
      return false;
    }
    const Turn turn = turns_.front();
    turns_.pop_front();
    turn(dialog);
    return true;
  }
  int read_message(const ShownMessage& message) override {
    messages.push_back(message);
    return answer;
  }

  size_t turns_left() const { return turns_.size(); }

  std::vector<intptr_t> opened;
  std::vector<ShownMessage> messages;
  int answer = IDOK;

 private:
  std::deque<Turn> turns_;
};

/// Every test starts and ends with an empty desktop and nobody before it.
class Desk : public testing::Test {
 protected:
  using Procedure = std::function<LRESULT(const Received&)>;

  void SetUp() override {
    ASSERT_EQ(Desktop::the().window_count(), 0U);
    current = this;
  }
  void TearDown() override {
    on_message = nullptr;  // what it refers to in the test's body is gone
    if (modeless != nullptr) {
      Desktop::the().destroy(modeless);
    }
    EXPECT_EQ(Desktop::the().window_count(), 0U) << "windows were left over";
    EXPECT_EQ(Desktop::the().person(), nullptr);
    current = nullptr;
  }

  static LRESULT procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    const Received each = {window, message, wparam, lparam};
    current->received.push_back(each);
    return current->on_message ? current->on_message(each) : 0;
  }

  /// A modeless dialog that the test's end destroys.
  HWND open(intptr_t id, HWND parent = nullptr) {
    modeless = functions::QUELM_CreateDialog(dialog_templates(), id, parent, &procedure, 42);
    functions::ShowWindow(modeless, 5);
    received.clear();
    return modeless;
  }
  int run(intptr_t id, HWND parent = nullptr) {
    return functions::QUELM_DialogBox(dialog_templates(), id, parent, &procedure, 42);
  }
  /// Like most dialogs: OK and Cancel end it with their ids.
  void end_on_buttons() {
    on_message = [](const Received& each) -> LRESULT {
      if (each.message == WM_COMMAND && command_id(each) <= IDCANCEL) {
        functions::EndDialog(each.window, command_id(each));
      }
      return 0;
    };
  }
  std::vector<UINT> messages() const {
    std::vector<UINT> all;
    for (const Received& each : received) {
      all.push_back(each.message);
    }
    return all;
  }
  /// The commands of a control, as notification codes.
  std::vector<int> codes_of(int id) const {
    std::vector<int> all;
    for (const Received& each : received) {
      if (each.message == WM_COMMAND && command_id(each) == id) {
        all.push_back(command_code(each));
      }
    }
    return all;
  }

  std::vector<Received> received;
  Procedure on_message;

 private:
  static inline Desk* current = nullptr;
  HWND modeless = nullptr;
};

inline LPARAM text_param(const char* text) {
  return reinterpret_cast<LPARAM>(text);
}

}  // namespace velmor::windowing
