#include <gtest/gtest.h>

#include "host/windowing/win32/win32_numbers.h"
#include "tests/host/windowing/dialog_case.h"

namespace velmor::windowing {
namespace {

using namespace functions;

using DialogCreation = DialogCase;

TEST_F(DialogCreation, TheTemplatesRowsBecomeControlsInTheirOrder) {
  OpenDialog dialog(open(kBurn));
  EXPECT_EQ(dialog.title(), "Burn Audio CD Image");
  EXPECT_EQ(dialog.resourceId(), kBurn);
  const struct {
    WindowKind kind;
    int id;
    const char* text;
  } expected[] = {
      {WindowKind::kPushButton, 1, "Burn CD"},
      {WindowKind::kPushButton, 2, "Close"},
      {WindowKind::kLabel, 0, "Method:"},
      {WindowKind::kComboBox, 1014, ""},
      {WindowKind::kLabel, 0, "Drive:"},
      {WindowKind::kComboBox, 1015, ""},
      {WindowKind::kLabel, 0, "Track list:"},
      {WindowKind::kListView, 1018, "List1"},
      {WindowKind::kCheckBox, 1016, "Eject CD when done"},
      {WindowKind::kCheckBox, 1017, "Delete CD image files on close of this window"},
  };
  const auto controls = dialog.controls();
  ASSERT_EQ(controls.size(), std::size(expected));
  for (size_t i = 0; i < controls.size(); ++i) {
    EXPECT_EQ(controls[i]->kind, expected[i].kind) << i;
    EXPECT_EQ(controls[i]->id, expected[i].id) << i;
    EXPECT_EQ(controls[i]->text, expected[i].text) << i;
    EXPECT_EQ(controls[i]->default_button, i == 0) << i;
    EXPECT_TRUE(controls[i]->enabled) << i;
  }
}

TEST_F(DialogCreation, ControlsLieAtDialogUnitsTimesTheScale) {
  const HWND panel = open(kPanel);
  const Window& combo = *Desktop::the().item(panel, 1014);  // 44, 19, 164, 109
  EXPECT_EQ(combo.place.x, 75);
  EXPECT_EQ(combo.place.y, 32);
  EXPECT_EQ(combo.place.width, 279);
  EXPECT_EQ(combo.place.height, 185);
  RECT rect = {};
  EXPECT_EQ(GetClientRect(panel, &rect), 1);
  EXPECT_EQ(rect.right, 484);
  EXPECT_EQ(rect.bottom, 86);
  EXPECT_EQ(GetWindowLong(combo.handle, GWL_STYLE), 0x210003);
  EXPECT_EQ(GetWindowLong(combo.handle, GWL_ID), 1014);
}

TEST_F(DialogCreation, OnlyATemplateThatAsksForItIsSizedByItsControls) {
  RECT rect = {};
  GetClientRect(open(kAutosized), &rect);  // button to 18 + 50, label to 7 + 172
  EXPECT_EQ(rect.right, 12 + 292);
  EXPECT_EQ(rect.bottom, 500) << "it only grows";
}

TEST_F(DialogCreation, ADialogIsNotSizedByTheDialogsItOwns) {
  const HWND owner = open(kAutosized);
  const QuelmControl none = {};
  ASSERT_NE(open(kBurn, owner), nullptr);
  QUELM_MakeSetCurParms(1, 1, 0, 0, owner, false, true);
  QUELM_GenerateDialogFromList(&none, 0);
  RECT rect = {};
  GetClientRect(owner, &rect);
  EXPECT_EQ(rect.right, 12 + 292);
  DestroyWindow(owner);
}

TEST_F(DialogCreation, AnUnknownTemplateOrParentMakesNoDialog) {
  const HWND nobody = reinterpret_cast<HWND>(0xDEAD);
  EXPECT_EQ(QUELM_CreateDialog(dialogTemplates(), 99, nullptr, &procedure, 0), nullptr);
  EXPECT_EQ(QUELM_CreateDialog(nullptr, kBurn, nullptr, &procedure, 0), nullptr);
  EXPECT_EQ(QUELM_CreateDialog(dialogTemplates(), kBurn, nobody, &procedure, 0), nullptr);
  EXPECT_EQ(QUELM_DialogBox(dialogTemplates(), 99, nullptr, &procedure, 0), -1);
  EXPECT_EQ(QUELM_DialogBox(dialogTemplates(), kBurn, nobody, &procedure, 0), 0);
  EXPECT_TRUE(m_received.empty());
}

TEST_F(DialogCreation, TheProcedureGetsItsParameterOnceTheControlsAreThere) {
  HWND drives = nullptr;
  m_on_message = [&](const Received& each) -> LRESULT {
    drives = GetDlgItem(each.window, 1015);
    return 0;
  };
  const HWND dialog = QUELM_CreateDialog(dialogTemplates(), kBurn, nullptr, &procedure, 42);
  ASSERT_EQ(messages(), std::vector<UINT>{WM_INITDIALOG});
  EXPECT_EQ(m_received[0].window, dialog);
  EXPECT_EQ(m_received[0].lparam, 42);
  EXPECT_EQ(m_received[0].wparam, reinterpret_cast<WPARAM>(GetDlgItem(dialog, IDOK)));
  EXPECT_NE(drives, nullptr);
  EXPECT_EQ(DestroyWindow(dialog), 1);
}

TEST_F(DialogCreation, APanelLiesInItsParentAndGoesWithIt) {
  HWND panel = nullptr;
  {
    const TopWindow main("main");
    panel = QUELM_CreateDialog(dialogTemplates(), kPanel, main.handle(), &procedure, 0);
    const HWND edit = GetDlgItem(panel, 1001);
    EXPECT_EQ(GetParent(panel), main.handle());
    EXPECT_EQ(GetParent(edit), panel);
    EXPECT_EQ(IsChild(main.handle(), panel), 1);
    EXPECT_EQ(IsChild(main.handle(), edit), 1);
    EXPECT_EQ(IsChild(panel, panel), 0);
    EXPECT_EQ(IsChild(edit, panel), 0);
    EXPECT_EQ(IsWindowVisible(edit), 0) << "a modeless dialog is hidden until it is shown";
    ShowWindow(panel, 5);
    EXPECT_EQ(IsWindowVisible(edit), 1);
    ShowWindow(main.handle(), SW_HIDE);
    EXPECT_EQ(IsWindowVisible(edit), 0);
  }
  EXPECT_EQ(IsWindow(panel), 0);
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_INITDIALOG, WM_DESTROY}));
}

TEST_F(DialogCreation, ADialogDestroyedByItsOwnStartIsNotHandedOut) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_INITDIALOG) {
      DestroyWindow(each.window);
    }
    return 0;
  };
  EXPECT_EQ(QUELM_CreateDialog(dialogTemplates(), kBurn, nullptr, &procedure, 0), nullptr);
  EXPECT_EQ(run(kBurn), 0);
}

using DialogDestruction = DialogCase;

TEST_F(DialogDestruction, TheControlsStillAnswerWhileTheDialogIsTold) {
  const HWND dialog = open(kBurn);
  const HWND box = GetDlgItem(dialog, 1016);
  CheckDlgButton(dialog, 1016, 1);
  int checked = -1;
  BOOL again = -1;
  m_on_message = [&](const Received& each) -> LRESULT {
    checked = IsDlgButtonChecked(each.window, 1016);
    again = DestroyWindow(each.window);
    return 0;
  };
  EXPECT_EQ(DestroyWindow(dialog), 1);
  EXPECT_EQ(messages(), std::vector<UINT>{WM_DESTROY});
  EXPECT_EQ(checked, 1);
  EXPECT_EQ(again, 0) << "it is being destroyed already";
  EXPECT_EQ(IsWindow(dialog), 0);
  EXPECT_EQ(IsWindow(box), 0);
}

TEST_F(DialogDestruction, AHandleOfAWindowThatIsGoneDoesNothingAnywhere) {
  const HWND gone = open(kBurn);
  DestroyWindow(gone);
  const HWND wild = reinterpret_cast<HWND>(0x7);
  char text[4] = "x";
  LVITEM item = {};
  for (const HWND each : {gone, wild, HWND{nullptr}}) {
    EXPECT_EQ(SendMessage(each, WM_COMMAND, IDOK, 0), 0);
    EXPECT_EQ(PostMessage(each, WM_COMMAND, IDOK, 0), 0);
    EXPECT_EQ(GetDlgItem(each, IDOK), nullptr);
    EXPECT_EQ(SetDlgItemText(each, IDOK, "x"), 0);
    EXPECT_EQ(GetDlgItemInt(each, IDOK, nullptr, 1), 0);
    EXPECT_EQ(IsDlgButtonChecked(each, 1016), 0);
    EXPECT_EQ(GetWindowLong(each, GWL_USERDATA), 0);
    EXPECT_EQ(SetWindowLong(each, GWL_USERDATA, 5), 0);
    EXPECT_EQ(GetWindowLong(each, GWL_USERDATA), 0);
    EXPECT_EQ(IsWindow(each), 0);
    EXPECT_EQ(IsWindowEnabled(each), 0);
    EXPECT_EQ(DestroyWindow(each), 0);
    EXPECT_EQ(ShowWindow(each, 1), 0);
    EXPECT_EQ(GetParent(each), nullptr);
    EXPECT_EQ(GetClassName(each, text, sizeof text), 0);
    EXPECT_EQ(ListView_InsertItem(each, &item), -1);
    EXPECT_EQ(ListView_GetItemCount(each), 0);
    EnableWindow(each, 1);
    EndDialog(each, 1);
    EXPECT_EQ(GetFocus(), nullptr);
    EXPECT_FALSE(OpenDialog(each).isOpen());
    EXPECT_THROW(OpenDialog(each).title(), CannotDo);
  }
  EXPECT_NE(open(kBurn), gone) << "a handle is never given out twice";
}

TEST_F(DialogDestruction, WhatTheProcedureThrowsIsThrownOnWhenTheWindowsAreGone) {
  const HWND dialog = open(kBurn);
  m_on_message = [](const Received&) -> LRESULT { throw std::runtime_error("on destruction"); };
  EXPECT_THROW(DestroyWindow(dialog), std::runtime_error);
  EXPECT_EQ(IsWindow(dialog), 0);
  EXPECT_EQ(Desktop::the().windowCount(), 0U);
}

using WindowState = DialogCase;

TEST_F(WindowState, UserDataStylesAndPropertiesAreKept) {
  const HWND dialog = open(kBurn);
  EXPECT_EQ(SetWindowLong(dialog, GWL_USERDATA, 0x123456789ALL), 0);
  EXPECT_EQ(SetWindowLong(dialog, GWL_USERDATA, 1), 0x123456789ALL);
  EXPECT_EQ(GetWindowLong(dialog, GWL_USERDATA), 1);
  EXPECT_EQ(GetWindowLong(dialog, 12345), 0);
  int value = 0;
  EXPECT_EQ(GetProp(dialog, "p"), nullptr);
  EXPECT_EQ(SetProp(dialog, "p", &value), 1);
  EXPECT_EQ(GetProp(dialog, "p"), &value);
  EXPECT_EQ(RemoveProp(dialog, "p"), &value);
  EXPECT_EQ(GetProp(dialog, "p"), nullptr);
}

TEST_F(WindowState, ADisabledControlLosesTheFocusAndStaysDisabledUntilEnabled) {
  const HWND edit = GetDlgItem(open(kPanel), 1001);
  SetFocus(edit);
  EXPECT_EQ(GetFocus(), edit);
  EnableWindow(edit, 0);
  EXPECT_EQ(IsWindowEnabled(edit), 0);
  EXPECT_EQ(GetFocus(), nullptr);
  SetFocus(edit);
  EXPECT_EQ(GetFocus(), nullptr);
  EnableWindow(edit, 5);
  EXPECT_EQ(IsWindowEnabled(edit), 1);
}

TEST_F(WindowState, PositionsAddUpFromTheOutermostWindow) {
  const HWND dialog = open(kPanel);
  SetWindowPos(dialog, nullptr, 100, 50, 0, 0, SWP_NOSIZE);
  RECT rect = {};
  GetWindowRect(GetDlgItem(dialog, 1001), &rect);  // 234, 2, 35, 14
  EXPECT_EQ(rect.left, 100 + 398);
  EXPECT_EQ(rect.top, 50 + 3);
  EXPECT_EQ(rect.right - rect.left, 60);
  EXPECT_EQ(rect.bottom - rect.top, 24);
  SetWindowPos(dialog, nullptr, 0, 0, 7, 8, SWP_NOMOVE);
  GetWindowRect(dialog, &rect);
  EXPECT_EQ(rect.left, 100);
  EXPECT_EQ(rect.right, 107);
}

TEST_F(WindowState, ChildrenAreVisitedUntilTheVisitorHasEnough) {
  const HWND dialog = open(kProgress);
  const auto count = [](HWND, LPARAM param) -> BOOL {
    auto& left = *reinterpret_cast<int*>(param);
    return --left > 0 ? 1 : 0;
  };
  int left = 10;
  EXPECT_EQ(EnumChildWindows(dialog, count, reinterpret_cast<LPARAM>(&left)), 1);
  EXPECT_EQ(left, 8);
  left = 1;
  EXPECT_EQ(EnumChildWindows(dialog, count, reinterpret_cast<LPARAM>(&left)), 0);
}

using Messages = DialogCase;

TEST_F(Messages, OtherMessagesReachTheDialogProcedureAndItsAnswerComesBack) {
  const HWND dialog = open(kPanel);
  m_on_message = [](const Received& each) { return each.wparam + each.lparam; };
  EXPECT_EQ(SendMessage(dialog, WM_USER + 1024, 3, 4), 7);
  EXPECT_EQ(m_received.back().message, WM_USER + 1024);
  m_on_message = nullptr;
}

TEST_F(Messages, ClosingADialogPressesItsCancelButton) {
  const HWND dialog = open(kBurn);
  SendMessage(dialog, WM_CLOSE, 0, 0);
  EXPECT_EQ(codesOf(IDCANCEL), std::vector<int>{BN_CLICKED});
  m_on_message = [](const Received& each) -> LRESULT { return each.message == WM_CLOSE ? 1 : 0; };
  SendMessage(dialog, WM_CLOSE, 0, 0);
  EXPECT_EQ(codesOf(IDCANCEL).size(), 1U) << "the procedure has seen to it";
}

TEST_F(Messages, PostedMessagesWaitAndThoseToAWindowThatIsGoneGetLost) {
  const HWND dialog = open(kBurn);
  EXPECT_EQ(PostMessage(dialog, WM_USER, 1, 0), 1);
  EXPECT_TRUE(m_received.empty());
  QUELM_MessageQueue_Flush();
  EXPECT_EQ(messages(), std::vector<UINT>{WM_USER});
  PostMessage(dialog, WM_USER, 2, 0);
  QUELM_MessageQueue_Clear();
  QUELM_MessageQueue_Flush();
  EXPECT_EQ(m_received.size(), 1U);
  PostMessage(dialog, WM_USER, 3, 0);
  DestroyWindow(dialog);
  QUELM_MessageQueue_Flush();
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_USER, WM_DESTROY}));
}

TEST_F(Messages, AMessagePostedDuringDeliveryWaitsForTheNextOne) {
  const HWND dialog = open(kBurn);
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_USER) {
      PostMessage(each.window, WM_USER, 0, 0);
    }
    return 0;
  };
  PostMessage(dialog, WM_USER, 0, 0);
  QUELM_MessageQueue_Flush();
  EXPECT_EQ(m_received.size(), 1U);
  QUELM_MessageQueue_Clear();
}

TEST_F(Messages, AMessagePostedAfterAnInnerDeliveryWaitsForTheNextOne) {
  const HWND dialog = open(kBurn);
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.wparam == 1) {
      QUELM_MessageQueue_Flush();
      PostMessage(each.window, WM_USER, 3, 0);
    }
    return 0;
  };
  PostMessage(dialog, WM_USER, 1, 0);
  PostMessage(dialog, WM_USER, 2, 0);
  QUELM_MessageQueue_Flush();
  ASSERT_EQ(m_received.size(), 2U);
  EXPECT_EQ(m_received.back().wparam, 2);
  QUELM_MessageQueue_Clear();
}

}  // namespace
}  // namespace velmor::windowing
