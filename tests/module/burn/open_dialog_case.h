// A finished render whose burn dialog is open, for tests that act in it.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "tests/fake_host/session.h"
#include "tests/module/burn/scripted_recording_service.h"

namespace burn_test {

inline constexpr int kMethod = 1014;
inline constexpr int kDrive = 1015;
inline constexpr int kEject = 1016;
inline constexpr int kDelete = 1017;
inline constexpr int kTracks = 1018;
inline constexpr int kOk = 1;
inline constexpr int kCancel = 2;
inline constexpr int kSelectionChanged = 1;  // CBN_SELCHANGE

inline void press(fake_host::Window& dialog, int id, int code = 0) {
  EXPECT_EQ(fake_host::WindowingLayer::send(dialog, WM_COMMAND, id | code << 16), 0);
}

/// One recorder, "ACME BURNER", and whatever the test adds.
class OpenDialogCase : public fake_host::BoundSession, public testing::Test {
 protected:
  OpenDialogCase() {
    m_recorders.add("ACME", "BURNER");
    host.ini_file = "/home/somebody/velmor.ini";
  }

  /// Renders `seconds` of signal with the marks of `host`, burns after it, and acts in the dialog.
  void renderAnd(double seconds, const std::function<void(fake_host::Window&)>& act,
                 fake_host::Settings settings = {}) {
    settings.burn_after_render = 1;
    fake_host::Sink sink = createSink("disc.cue", settings);
    ASSERT_TRUE(sink);
    sink.writeSignal(static_cast<int64_t>(seconds * 44100.0));
    bool opened = false;
    windowing.on_modal = [&](fake_host::Window& dialog) {
      opened = true;
      act(dialog);
    };
    windowing.calls.clear();
    EXPECT_EQ(sink.finish(parent()), 1);
    EXPECT_TRUE(opened);
  }
  /// The same with three tracks of five seconds.
  void albumAnd(const std::function<void(fake_host::Window&)>& act,
                fake_host::Settings settings = {}) {
    host.marks = {fake_host::marker(0.0, "One"), fake_host::marker(5.0, "Two"),
                  fake_host::marker(10.0, "Three")};
    renderAnd(15.0, act, settings);
  }
  HWND parent() { return &windowing.parent; }
  std::string image() const { return fake_host::readText(file("disc.bin")); }

  /// The calls of the layer that begin with `name`.
  std::vector<std::string> calls(const std::string& name) const {
    std::vector<std::string> found;
    for (const std::string& call : windowing.calls) {
      if (call.rfind(name, 0) == 0) found.push_back(call);
    }
    return found;
  }
  std::string error(const std::string& text) const {
    return "MessageBox(\"" + text + "\", \"CD Burn Error\", 0)";
  }

  ScriptedRecordingService m_recorders;
};

}  // namespace burn_test
