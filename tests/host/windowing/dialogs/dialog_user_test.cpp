#include <gtest/gtest.h>

#include "host/windowing/win32/win32_numbers.h"
#include "tests/host/windowing/dialog_case.h"

namespace velmor::windowing {
namespace {

using namespace functions;

using ModalDialog = DialogCase;

TEST_F(ModalDialog, RunsUntilItsProcedureEndsItAndAnswersTheResult) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && commandId(each) == IDCANCEL) {
      EndDialog(each.window, 77);
      EndDialog(each.window, 78);  // the first one counts
    }
    return 0;
  };
  ScriptedUser user({
      [](OpenDialog& dialog) { EXPECT_TRUE(dialog.isOpen()); },
      [](OpenDialog& dialog) {
        dialog.press(IDCANCEL);
        EXPECT_FALSE(dialog.isOpen());
      },
      [](OpenDialog&) { FAIL() << "the dialog has ended"; },
  });
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), 77);
  EXPECT_EQ(user.turnsLeft(), 1U);
  EXPECT_EQ(user.opened, std::vector<intptr_t>{kBurn});
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_INITDIALOG, WM_COMMAND, WM_DESTROY}));
}

TEST_F(ModalDialog, IsCancelledAtOnceWhenNobodyIsThere) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && commandId(each) == IDCANCEL) {
      EndDialog(each.window, 0);
    }
    return 0;
  };
  EXPECT_EQ(run(kBurn), 0) << "its procedure's answer to Cancel";
  m_on_message = nullptr;
  EXPECT_EQ(run(kBurn), IDCANCEL) << "its procedure knows no Cancel";
  EXPECT_EQ(m_received.back().message, WM_DESTROY);
}

TEST_F(ModalDialog, IsCancelledWhenThePersonWalksAway) {
  ScriptedUser user({[](OpenDialog&) {}});
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), IDCANCEL);
  EXPECT_EQ(codesOf(IDCANCEL), std::vector<int>{BN_CLICKED});
}

TEST_F(ModalDialog, ThatEndsItselfAtItsStartIsShownToNobody) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_INITDIALOG) {
      EndDialog(each.window, 5);
    }
    return 0;
  };
  ScriptedUser user;
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), 5);
  EXPECT_TRUE(user.opened.empty());
}

TEST_F(ModalDialog, DestroyedUnderThePersonAnswersZero) {
  ScriptedUser user({[](OpenDialog& dialog) {
    DestroyWindow(dialog.handle());
    EXPECT_FALSE(dialog.isOpen());
    EXPECT_THROW(dialog.press(IDOK), CannotDo);
  }});
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), 0);
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_INITDIALOG, WM_DESTROY}));
}

TEST_F(ModalDialog, KeepsItsOwnerFromInputWhileItIsOpen) {
  endOnButtons();
  const TopWindow main("main");
  const HWND panel = open(kPanel, main.handle());
  SetFocus(GetDlgItem(panel, 1001));
  ScriptedUser user({[&](OpenDialog& dialog) {
    EXPECT_EQ(IsWindowEnabled(main.handle()), 0);
    EXPECT_THROW(OpenDialog(panel).type(1001, "5"), CannotDo);
    EXPECT_EQ(GetParent(dialog.handle()), main.handle());
    EXPECT_EQ(IsChild(main.handle(), dialog.handle()), 0) << "it is owned, not a child";
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog.handle(), IDOK));
    dialog.press(IDOK);
  }});
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn, main.handle()), IDOK);
  EXPECT_EQ(IsWindowEnabled(main.handle()), 1);
  EXPECT_EQ(GetFocus(), GetDlgItem(panel, 1001));
  EnableWindow(main.handle(), 0);
  EXPECT_EQ(run(kBurn, main.handle()), IDCANCEL);
  EXPECT_EQ(IsWindowEnabled(main.handle()), 0) << "an owner disabled before stays so";
  DestroyWindow(panel);
}

TEST_F(ModalDialog, OpensAnotherOneInFrontOfItself) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && commandId(each) == IDOK) {
      EXPECT_EQ(QUELM_DialogBox(dialogTemplates(), kProgress, each.window, &procedure, 0), 2);
    } else if (each.message == WM_COMMAND && commandId(each) == IDCANCEL) {
      EndDialog(each.window, 2);
    }
    return 0;
  };
  HWND burn = nullptr;
  ScriptedUser user({
      [&](OpenDialog& dialog) {
        burn = dialog.handle();
        dialog.press(IDOK);
        EXPECT_TRUE(dialog.isOpen());
      },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(dialog.resourceId(), kProgress);
        EXPECT_THROW(OpenDialog(burn).press(IDCANCEL), CannotDo);
        dialog.press(IDCANCEL);
      },
      [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.resourceId(), kBurn);
        dialog.press(IDCANCEL);
      },
  });
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), 2);
  EXPECT_EQ(user.opened, (std::vector<intptr_t>{kBurn, kProgress}));
}

TEST_F(ModalDialog, GetsPostedMessagesBeforeThePersonsNextTurn) {
  endOnButtons();
  ScriptedUser user({
      [&](OpenDialog& dialog) { PostMessage(dialog.handle(), WM_USER, 0, 0); },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(m_received.back().message, WM_USER);
        dialog.press(IDOK);
      },
  });
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), IDOK);
}

struct Unwound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where something is thrown while a modal dialog is open.
enum class Thrower { kStart, kOpened, kTurn, kCommand, kMessageBox };

class ThrowingPerson : public ScriptedUser {
 public:
  explicit ThrowingPerson(Thrower thrower) : m_thrower(thrower) {}
  void dialogOpened(OpenDialog&) override { throwAt(Thrower::kOpened); }
  bool useDialog(OpenDialog& dialog) override {
    throwAt(Thrower::kTurn);
    dialog.press(IDOK);
    return true;
  }
  int readMessage(const ShownMessage&) override { throw Unwound("message box"); }

 private:
  void throwAt(Thrower here) const {
    if (m_thrower == here) {
      throw Unwound("user");
    }
  }
  Thrower m_thrower;
};

class ThrownThrough : public DialogCase, public testing::WithParamInterface<Thrower> {};

TEST_P(ThrownThrough, AModalDialogLeavesNoWindowAndTellsItsProcedure) {
  m_on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_INITDIALOG && GetParam() == Thrower::kStart) {
      throw Unwound("start");
    }
    if (each.message == WM_COMMAND && GetParam() == Thrower::kCommand) {
      throw Unwound("command");
    }
    if (each.message == WM_COMMAND) {
      MessageBox(each.window, "text", "caption", MB_OK);
    }
    if (each.message == WM_DESTROY) {
      throw std::logic_error("dropped: the first one tells what went wrong");
    }
    return 0;
  };
  const TopWindow main("main");
  ThrowingPerson user(GetParam());
  const ScopedDialogUser seat(user);
  EXPECT_THROW(run(kBurn, main.handle()), Unwound);
  EXPECT_EQ(Desktop::the().windowCount(), 1U) << "only the owner is left";
  EXPECT_EQ(IsWindowEnabled(main.handle()), 1);
  EXPECT_EQ(m_received.back().message, WM_DESTROY);
}

INSTANTIATE_TEST_SUITE_P(Everywhere, ThrownThrough,
                         testing::Values(Thrower::kStart, Thrower::kOpened, Thrower::kTurn,
                                         Thrower::kCommand, Thrower::kMessageBox));

using MessageBoxes = DialogCase;

TEST_F(MessageBoxes, ShowWhatTheyAreGivenAndAnswerThePersonsButton) {
  const HWND dialog = open(kBurn);
  ScriptedUser user;
  const ScopedDialogUser seat(user);
  EXPECT_EQ(MessageBox(dialog, "Select a recorder", "CD Burn Error", MB_OK), IDOK);
  user.answer = kIdno;
  EXPECT_EQ(MessageBox(nullptr, nullptr, nullptr, MB_YESNO), kIdno);
  ASSERT_EQ(user.messages.size(), 2U);
  EXPECT_EQ(user.messages[0].owner, dialog);
  EXPECT_EQ(user.messages[0].text, "Select a recorder");
  EXPECT_EQ(user.messages[0].caption, "CD Burn Error");
  EXPECT_EQ(user.messages[0].type, MB_OK);
  EXPECT_EQ(user.messages[1].text, "");
  EXPECT_EQ(user.messages[1].caption, "Error");
}

TEST_F(MessageBoxes, HaveOnlyTheButtonsOfTheirType) {
  ScriptedUser user;
  const ScopedDialogUser seat(user);
  user.answer = kIdyes;
  EXPECT_THROW(MessageBox(nullptr, "", "", MB_OK), CannotDo);
  EXPECT_EQ(MessageBox(nullptr, "", "", MB_YESNOCANCEL | 0x30), kIdyes) << "icons change nothing";
}

/// The numbers of the types and the buttons are those of Win32.
TEST_F(MessageBoxes, OfferTheButtonsOfTheirType) {
  const std::vector<std::vector<int>> buttons = {{1}, {1, 2}, {3, 4, 5}, {6, 7, 2}, {6, 7}, {4, 2}};
  for (size_t type = 0; type < buttons.size(); ++type)
    EXPECT_EQ(messageBoxButtons(static_cast<int>(type)), buttons[type]) << type;
}

TEST_F(MessageBoxes, AreNotAgreedToByNobody) {
  const struct {
    int type, answer;
  } cases[] = {{MB_OK, IDOK},
               {MB_OKCANCEL, IDCANCEL},
               {MB_ABORTRETRYIGNORE, kIdabort},
               {MB_YESNOCANCEL, IDCANCEL},
               {MB_YESNO, kIdno},
               {MB_RETRYCANCEL, IDCANCEL}};
  for (const auto& each : cases) {
    EXPECT_EQ(MessageBox(nullptr, "text", "caption", each.type), each.answer) << each.type;
  }
}

class Keys : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_dialog = open(kBurn);
  }
  HWND m_dialog = nullptr;
};

TEST_F(Keys, EnterPressesTheDefaultButton) {
  SetFocus(GetDlgItem(m_dialog, 1015));
  OpenDialog(m_dialog).pressEnter();
  EXPECT_EQ(codesOf(IDOK), std::vector<int>{BN_CLICKED});
  EXPECT_EQ(m_received.back().lparam, reinterpret_cast<LPARAM>(GetDlgItem(m_dialog, IDOK)));
}

TEST_F(Keys, EnterPressesThePushButtonThatHasTheFocus) {
  SetFocus(GetDlgItem(m_dialog, IDCANCEL));
  OpenDialog(m_dialog).pressEnter();
  EXPECT_EQ(codesOf(IDCANCEL), std::vector<int>{BN_CLICKED});
  EXPECT_TRUE(codesOf(IDOK).empty());
}

TEST_F(Keys, EnterOnADisabledDefaultButtonDoesNothing) {
  EnableWindow(GetDlgItem(m_dialog, IDOK), 0);
  OpenDialog(m_dialog).pressEnter();
  EXPECT_TRUE(m_received.empty());
}

TEST_F(Keys, EnterWithoutADefaultButtonIsOk) {
  const HWND progress = QUELM_CreateDialog(dialogTemplates(), kProgress, m_dialog, &procedure, 0);
  OpenDialog(progress).pressEnter();
  EXPECT_EQ(codesOf(IDOK), std::vector<int>{0});
  EXPECT_EQ(m_received.back().lparam, 0);
}

TEST_F(Keys, EnterInAnEditWithoutADefaultButtonIsOk) {
  const HWND panel = QUELM_CreateDialog(dialogTemplates(), kPanel, m_dialog, &procedure, 0);
  SetFocus(GetDlgItem(panel, 1002));
  m_received.clear();
  OpenDialog(panel).pressEnter();
  ASSERT_EQ(m_received.size(), 1U);
  EXPECT_EQ(codesOf(IDOK), std::vector<int>{0});
}

TEST_F(Keys, EscapeIsCancelUnlessItsButtonIsDisabled) {
  OpenDialog(m_dialog).pressEscape();
  EXPECT_EQ(codesOf(IDCANCEL), std::vector<int>{BN_CLICKED});
  EnableWindow(GetDlgItem(m_dialog, IDCANCEL), 0);
  OpenDialog(m_dialog).pressEscape();
  EXPECT_EQ(codesOf(IDCANCEL).size(), 1U);
  const HWND panel = QUELM_CreateDialog(dialogTemplates(), kPanel, m_dialog, &procedure, 0);
  OpenDialog(panel).pressEscape();
  EXPECT_EQ(codesOf(IDCANCEL).size(), 2U) << "a dialog without such a button is told just so";
}

class APersonCannot : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_dialog = OpenDialog(open(kBurn));
    SendMessage(GetDlgItem(m_dialog.handle(), 1015), CB_ADDSTRING, 0, textParam("drive"));
    m_received.clear();
  }
  void TearDown() override {
    EXPECT_TRUE(m_received.empty()) << "nothing must have happened";
    DialogCase::TearDown();
  }
  OpenDialog m_dialog{nullptr};
};

TEST_F(APersonCannot, UseWhatIsNotThereOrOfAnotherKind) {
  EXPECT_THROW(m_dialog.press(4711), CannotDo);
  EXPECT_THROW(m_dialog.text(4711), CannotDo);
  EXPECT_THROW(m_dialog.press(0), CannotDo);
  EXPECT_THROW(m_dialog.press(1015), CannotDo);
  EXPECT_THROW(m_dialog.pick(1016, 0), CannotDo);
  EXPECT_THROW(m_dialog.type(IDOK, "x"), CannotDo);
  EXPECT_THROW(m_dialog.isChecked(IDOK), CannotDo);
  EXPECT_THROW(m_dialog.rows(1018), CannotDo);
  EXPECT_THROW(m_dialog.listRows(1015), CannotDo);
  EXPECT_TRUE(m_dialog.has(1015));
  EXPECT_FALSE(m_dialog.has(4711));
}

TEST_F(APersonCannot, PickARowThatIsNotThere) {
  EXPECT_THROW(m_dialog.pick(1015, 1), CannotDo);
  EXPECT_THROW(m_dialog.pick(1015, -1), CannotDo);
  EXPECT_THROW(m_dialog.rowData(1015, 1), CannotDo);
  EXPECT_EQ(m_dialog.selectedRow(1015), -1);
}

TEST_F(APersonCannot, PressWhatIsDisabledOrHidden) {
  EnableWindow(GetDlgItem(m_dialog.handle(), IDOK), 0);
  EXPECT_FALSE(m_dialog.isEnabled(IDOK));
  EXPECT_THROW(m_dialog.press(IDOK), CannotDo);
  ShowWindow(GetDlgItem(m_dialog.handle(), 1016), SW_HIDE);
  EXPECT_THROW(m_dialog.press(1016), CannotDo);
  EXPECT_THROW(m_dialog.setChecked(1016, true), CannotDo);
}

TEST_F(APersonCannot, UseADialogThatAnotherOneStandsBefore) {
  EnableWindow(m_dialog.handle(), 0);  // as its modal dialog does
  EXPECT_THROW(m_dialog.press(IDOK), CannotDo);
  EXPECT_THROW(m_dialog.pressEnter(), CannotDo);
  EXPECT_THROW(m_dialog.pressEscape(), CannotDo);
}

TEST_F(APersonCannot, TypeIntoAReadOnlyEdit) {
  const QuelmControl row = {kQuelmEdit, 0, "", 5, 0, 0, 1, 1, ES_READONLY};
  QUELM_MakeSetCurParms(1, 1, 0, 0, m_dialog.handle(), false, false);
  QUELM_GenerateDialogFromList(&row, 1);
  EXPECT_THROW(m_dialog.type(5, "x"), CannotDo);
}

using ScopedUser = DialogCase;

TEST_F(ScopedUser, GivesWayToTheUserBeforeItWhenItEnds) {
  ScriptedUser first;
  ScriptedUser second;
  const ScopedDialogUser seat(first);
  {
    const ScopedDialogUser relief(second);
    MessageBox(nullptr, "a", "", MB_OK);
  }
  MessageBox(nullptr, "b", "", MB_OK);
  ASSERT_EQ(first.messages.size(), 1U);
  EXPECT_EQ(first.messages[0].text, "b");
  EXPECT_EQ(second.messages.size(), 1U);
}

/// A dialog that burns, as a module writes one: errors in message boxes, settings on destruction.
class BurnDialog : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_on_message = [this](const Received& each) { return answer(each); };
  }

  LRESULT answer(const Received& each) {
    const HWND drives = GetDlgItem(each.window, 1015);
    if (each.message == WM_INITDIALOG) {
      CheckDlgButton(each.window, 1016, 1);
      for (LPARAM drive = 0; drive < 3; ++drive) {
        const std::string name = "Maker Drive " + std::to_string(drive);
        SendMessage(drives, CB_ADDSTRING, 0, textParam(name.c_str()));
        SendMessage(drives, CB_SETITEMDATA, drive, 1000 + drive);
      }
      SendMessage(drives, CB_SETCURSEL, 9, 0);
    } else if (each.message == WM_COMMAND && commandId(each) == IDOK) {
      const LRESULT row = SendMessage(drives, CB_GETCURSEL, 0, 0);
      if (row < 0) {
        MessageBox(each.window, "Select a recorder", "CD Burn Error", MB_OK);
      } else {
        m_burnt.push_back(SendMessage(drives, CB_GETITEMDATA, row, 0));
        m_ejected = IsDlgButtonChecked(each.window, 1016) != 0;
      }
    } else if (each.message == WM_COMMAND && commandId(each) == IDCANCEL) {
      EndDialog(each.window, 0);
    } else if (each.message == WM_DESTROY) {
      m_deleted = IsDlgButtonChecked(each.window, 1017) != 0;
    }
    return 0;
  }

  std::vector<LPARAM> m_burnt;
  bool m_ejected = false;
  bool m_deleted = false;
};

TEST_F(BurnDialog, IsUsedAsAPersonWouldUseIt) {
  ScriptedUser user({
      [&](OpenDialog& dialog) {
        EXPECT_EQ(dialog.rows(1015),
                  (std::vector<std::string>{"Maker Drive 0", "Maker Drive 1", "Maker Drive 2"}));
        EXPECT_EQ(dialog.selectedRow(1015), -1);
        dialog.press(IDOK);
      },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(user.messages.size(), 1U);
        dialog.pick(1015, 1);
        EXPECT_EQ(dialog.text(1015), "Maker Drive 1");
        EXPECT_EQ(dialog.rowData(1015, 1), 1001);
        dialog.setChecked(1016, false);
        dialog.press(IDOK);
      },
      [&](OpenDialog& dialog) {
        dialog.setChecked(1017, true);
        dialog.close();
      },
  });
  const ScopedDialogUser seat(user);
  EXPECT_EQ(run(kBurn), 0);
  EXPECT_EQ(m_burnt, std::vector<LPARAM>{1001});
  EXPECT_FALSE(m_ejected);
  EXPECT_TRUE(m_deleted);
  ASSERT_EQ(user.messages.size(), 1U);
  EXPECT_EQ(user.messages[0].text, "Select a recorder");
}

}  // namespace
}  // namespace velmor::windowing
