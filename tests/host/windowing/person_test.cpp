#include <gtest/gtest.h>

#include "host/windowing/win32_numbers.h"
#include "tests/host/windowing/desk.h"

namespace velmor::windowing {
namespace {

using namespace functions;

using ModalDialog = Desk;

TEST_F(ModalDialog, RunsUntilItsProcedureEndsItAndAnswersTheResult) {
  on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && command_id(each) == IDCANCEL) {
      EndDialog(each.window, 77);
      EndDialog(each.window, 78);  // the first one counts
    }
    return 0;
  };
  ScriptedPerson person({
      [](OpenDialog& dialog) { EXPECT_TRUE(dialog.is_open()); },
      [](OpenDialog& dialog) {
        dialog.press(IDCANCEL);
        EXPECT_FALSE(dialog.is_open());
      },
      [](OpenDialog&) { FAIL() << "the dialog has ended"; },
  });
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), 77);
  EXPECT_EQ(person.turns_left(), 1U);
  EXPECT_EQ(person.opened, std::vector<intptr_t>{kBurn});
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_INITDIALOG, WM_COMMAND, WM_DESTROY}));
}

TEST_F(ModalDialog, IsCancelledAtOnceWhenNobodyIsThere) {
  on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && command_id(each) == IDCANCEL) {
      EndDialog(each.window, 0);
    }
    return 0;
  };
  EXPECT_EQ(run(kBurn), 0) << "its procedure's answer to Cancel";
  on_message = nullptr;
  EXPECT_EQ(run(kBurn), IDCANCEL) << "its procedure knows no Cancel";
  EXPECT_EQ(received.back().message, WM_DESTROY);
}

TEST_F(ModalDialog, IsCancelledWhenThePersonWalksAway) {
  ScriptedPerson person({[](OpenDialog&) {}});
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), IDCANCEL);
  EXPECT_EQ(codes_of(IDCANCEL), std::vector<int>{BN_CLICKED});
}

TEST_F(ModalDialog, ThatEndsItselfAtItsStartIsShownToNobody) {
  on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_INITDIALOG) {
      EndDialog(each.window, 5);
    }
    return 0;
  };
  ScriptedPerson person;
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), 5);
  EXPECT_TRUE(person.opened.empty());
}

TEST_F(ModalDialog, DestroyedUnderThePersonAnswersZero) {
  ScriptedPerson person({[](OpenDialog& dialog) {
    DestroyWindow(dialog.handle());
    EXPECT_FALSE(dialog.is_open());
    EXPECT_THROW(dialog.press(IDOK), CannotDo);
  }});
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), 0);
  EXPECT_EQ(messages(), (std::vector<UINT>{WM_INITDIALOG, WM_DESTROY}));
}

TEST_F(ModalDialog, KeepsItsOwnerFromInputWhileItIsOpen) {
  end_on_buttons();
  const TopWindow main("main");
  const HWND panel = open(kPanel, main.handle());
  SetFocus(GetDlgItem(panel, 1001));
  ScriptedPerson person({[&](OpenDialog& dialog) {
    EXPECT_EQ(IsWindowEnabled(main.handle()), 0);
    EXPECT_THROW(OpenDialog(panel).type(1001, "5"), CannotDo);
    EXPECT_EQ(GetParent(dialog.handle()), main.handle());
    EXPECT_EQ(IsChild(main.handle(), dialog.handle()), 0) << "it is owned, not a child";
    EXPECT_EQ(GetFocus(), GetDlgItem(dialog.handle(), IDOK));
    dialog.press(IDOK);
  }});
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn, main.handle()), IDOK);
  EXPECT_EQ(IsWindowEnabled(main.handle()), 1);
  EXPECT_EQ(GetFocus(), GetDlgItem(panel, 1001));
  EnableWindow(main.handle(), 0);
  EXPECT_EQ(run(kBurn, main.handle()), IDCANCEL);
  EXPECT_EQ(IsWindowEnabled(main.handle()), 0) << "an owner disabled before stays so";
  DestroyWindow(panel);
}

TEST_F(ModalDialog, OpensAnotherOneInFrontOfItself) {
  on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_COMMAND && command_id(each) == IDOK) {
      EXPECT_EQ(QUELM_DialogBox(dialog_templates(), kProgress, each.window, &procedure, 0), 2);
    } else if (each.message == WM_COMMAND && command_id(each) == IDCANCEL) {
      EndDialog(each.window, 2);
    }
    return 0;
  };
  HWND burn = nullptr;
  ScriptedPerson person({
      [&](OpenDialog& dialog) {
        burn = dialog.handle();
        dialog.press(IDOK);
        EXPECT_TRUE(dialog.is_open());
      },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(dialog.resource_id(), kProgress);
        EXPECT_THROW(OpenDialog(burn).press(IDCANCEL), CannotDo);
        dialog.press(IDCANCEL);
      },
      [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.resource_id(), kBurn);
        dialog.press(IDCANCEL);
      },
  });
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), 2);
  EXPECT_EQ(person.opened, (std::vector<intptr_t>{kBurn, kProgress}));
}

TEST_F(ModalDialog, GetsPostedMessagesBeforeThePersonsNextTurn) {
  end_on_buttons();
  ScriptedPerson person({
      [&](OpenDialog& dialog) { PostMessage(dialog.handle(), WM_USER, 0, 0); },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(received.back().message, WM_USER);
        dialog.press(IDOK);
      },
  });
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), IDOK);
}

struct Unwound : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Where something is thrown while a modal dialog is open.
enum class Thrower { start, opened, turn, command, message_box };

class ThrowingPerson : public ScriptedPerson {
 public:
  explicit ThrowingPerson(Thrower thrower) : thrower_(thrower) {}
  void dialog_opened(OpenDialog&) override { throw_at(Thrower::opened); }
  bool use_dialog(OpenDialog& dialog) override {
    throw_at(Thrower::turn);
    dialog.press(IDOK);
    return true;
  }
  int read_message(const ShownMessage&) override { throw Unwound("message box"); }

 private:
  void throw_at(Thrower here) const {
    if (thrower_ == here) {
      throw Unwound("person");
    }
  }
  Thrower thrower_;
};

class ThrownThrough : public Desk, public testing::WithParamInterface<Thrower> {};

TEST_P(ThrownThrough, AModalDialogLeavesNoWindowAndTellsItsProcedure) {
  on_message = [](const Received& each) -> LRESULT {
    if (each.message == WM_INITDIALOG && GetParam() == Thrower::start) {
      throw Unwound("start");
    }
    if (each.message == WM_COMMAND && GetParam() == Thrower::command) {
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
  ThrowingPerson person(GetParam());
  const PersonAtDesk seat(person);
  EXPECT_THROW(run(kBurn, main.handle()), Unwound);
  EXPECT_EQ(Desktop::the().window_count(), 1U) << "only the owner is left";
  EXPECT_EQ(IsWindowEnabled(main.handle()), 1);
  EXPECT_EQ(received.back().message, WM_DESTROY);
}

INSTANTIATE_TEST_SUITE_P(Everywhere, ThrownThrough,
                         testing::Values(Thrower::start, Thrower::opened, Thrower::turn,
                                         Thrower::command, Thrower::message_box));

using MessageBoxes = Desk;

TEST_F(MessageBoxes, ShowWhatTheyAreGivenAndAnswerThePersonsButton) {
  const HWND dialog = open(kBurn);
  ScriptedPerson person;
  const PersonAtDesk seat(person);
  EXPECT_EQ(MessageBox(dialog, "Select a recorder", "CD Burn Error", MB_OK), IDOK);
  person.answer = IDNO;
  EXPECT_EQ(MessageBox(nullptr, nullptr, nullptr, MB_YESNO), IDNO);
  ASSERT_EQ(person.messages.size(), 2U);
  EXPECT_EQ(person.messages[0].owner, dialog);
  EXPECT_EQ(person.messages[0].text, "Select a recorder");
  EXPECT_EQ(person.messages[0].caption, "CD Burn Error");
  EXPECT_EQ(person.messages[0].type, MB_OK);
  EXPECT_EQ(person.messages[1].text, "");
  EXPECT_EQ(person.messages[1].caption, "Error");
}

TEST_F(MessageBoxes, HaveOnlyTheButtonsOfTheirType) {
  ScriptedPerson person;
  const PersonAtDesk seat(person);
  person.answer = IDYES;
  EXPECT_THROW(MessageBox(nullptr, "", "", MB_OK), CannotDo);
  EXPECT_EQ(MessageBox(nullptr, "", "", MB_YESNOCANCEL | 0x30), IDYES) << "icons change nothing";
}

TEST_F(MessageBoxes, AreNotAgreedToByNobody) {
  const struct {
    int type, answer;
  } cases[] = {{MB_OK, IDOK},
               {MB_OKCANCEL, IDCANCEL},
               {MB_ABORTRETRYIGNORE, IDABORT},
               {MB_YESNOCANCEL, IDCANCEL},
               {MB_YESNO, IDNO},
               {MB_RETRYCANCEL, IDCANCEL}};
  for (const auto& each : cases) {
    EXPECT_EQ(MessageBox(nullptr, "text", "caption", each.type), each.answer) << each.type;
  }
}

class Keys : public Desk {
 protected:
  void SetUp() override {
    Desk::SetUp();
    dialog = open(kBurn);
  }
  HWND dialog = nullptr;
};

TEST_F(Keys, EnterPressesTheDefaultButton) {
  SetFocus(GetDlgItem(dialog, 1015));
  OpenDialog(dialog).press_enter();
  EXPECT_EQ(codes_of(IDOK), std::vector<int>{BN_CLICKED});
  EXPECT_EQ(received.back().lparam, reinterpret_cast<LPARAM>(GetDlgItem(dialog, IDOK)));
}

TEST_F(Keys, EnterPressesThePushButtonThatHasTheFocus) {
  SetFocus(GetDlgItem(dialog, IDCANCEL));
  OpenDialog(dialog).press_enter();
  EXPECT_EQ(codes_of(IDCANCEL), std::vector<int>{BN_CLICKED});
  EXPECT_TRUE(codes_of(IDOK).empty());
}

TEST_F(Keys, EnterOnADisabledDefaultButtonDoesNothing) {
  EnableWindow(GetDlgItem(dialog, IDOK), 0);
  OpenDialog(dialog).press_enter();
  EXPECT_TRUE(received.empty());
}

TEST_F(Keys, EnterWithoutADefaultButtonIsOk) {
  const HWND progress = QUELM_CreateDialog(dialog_templates(), kProgress, dialog, &procedure, 0);
  OpenDialog(progress).press_enter();
  EXPECT_EQ(codes_of(IDOK), std::vector<int>{0});
  EXPECT_EQ(received.back().lparam, 0);
}

TEST_F(Keys, EscapeIsCancelUnlessItsButtonIsDisabled) {
  OpenDialog(dialog).press_escape();
  EXPECT_EQ(codes_of(IDCANCEL), std::vector<int>{BN_CLICKED});
  EnableWindow(GetDlgItem(dialog, IDCANCEL), 0);
  OpenDialog(dialog).press_escape();
  EXPECT_EQ(codes_of(IDCANCEL).size(), 1U);
  const HWND panel = QUELM_CreateDialog(dialog_templates(), kPanel, dialog, &procedure, 0);
  OpenDialog(panel).press_escape();
  EXPECT_EQ(codes_of(IDCANCEL).size(), 2U) << "a dialog without such a button is told just so";
}

class APersonCannot : public Desk {
 protected:
  void SetUp() override {
    Desk::SetUp();
    dialog = OpenDialog(open(kBurn));
    SendMessage(GetDlgItem(dialog.handle(), 1015), CB_ADDSTRING, 0, text_param("drive"));
    received.clear();
  }
  void TearDown() override {
    EXPECT_TRUE(received.empty()) << "nothing must have happened";
    Desk::TearDown();
  }
  OpenDialog dialog{nullptr};
};

TEST_F(APersonCannot, UseWhatIsNotThereOrOfAnotherKind) {
  EXPECT_THROW(dialog.press(4711), CannotDo);
  EXPECT_THROW(dialog.text(4711), CannotDo);
  EXPECT_THROW(dialog.press(0), CannotDo);
  EXPECT_THROW(dialog.press(1015), CannotDo);
  EXPECT_THROW(dialog.pick(1016, 0), CannotDo);
  EXPECT_THROW(dialog.type(IDOK, "x"), CannotDo);
  EXPECT_THROW(dialog.is_checked(IDOK), CannotDo);
  EXPECT_THROW(dialog.rows(1018), CannotDo);
  EXPECT_THROW(dialog.list_rows(1015), CannotDo);
  EXPECT_TRUE(dialog.has(1015));
  EXPECT_FALSE(dialog.has(4711));
}

TEST_F(APersonCannot, PickARowThatIsNotThere) {
  EXPECT_THROW(dialog.pick(1015, 1), CannotDo);
  EXPECT_THROW(dialog.pick(1015, -1), CannotDo);
  EXPECT_THROW(dialog.row_data(1015, 1), CannotDo);
  EXPECT_EQ(dialog.selected_row(1015), -1);
}

TEST_F(APersonCannot, PressWhatIsDisabledOrHidden) {
  EnableWindow(GetDlgItem(dialog.handle(), IDOK), 0);
  EXPECT_FALSE(dialog.is_enabled(IDOK));
  EXPECT_THROW(dialog.press(IDOK), CannotDo);
  ShowWindow(GetDlgItem(dialog.handle(), 1016), SW_HIDE);
  EXPECT_THROW(dialog.press(1016), CannotDo);
  EXPECT_THROW(dialog.set_checked(1016, true), CannotDo);
}

TEST_F(APersonCannot, TypeIntoAReadOnlyEdit) {
  const QuelmControl row = {kQuelmEdit, 0, "", 5, 0, 0, 1, 1, ES_READONLY};
  QUELM_MakeSetCurParms(1, 1, 0, 0, dialog.handle(), false, false);
  QUELM_GenerateDialogFromList(&row, 1);
  EXPECT_THROW(dialog.type(5, "x"), CannotDo);
}

using Seats = Desk;

TEST_F(Seats, ARelievedPersonComesBack) {
  ScriptedPerson first;
  ScriptedPerson second;
  const PersonAtDesk seat(first);
  {
    const PersonAtDesk relief(second);
    MessageBox(nullptr, "a", "", MB_OK);
  }
  MessageBox(nullptr, "b", "", MB_OK);
  ASSERT_EQ(first.messages.size(), 1U);
  EXPECT_EQ(first.messages[0].text, "b");
  EXPECT_EQ(second.messages.size(), 1U);
}

/// A dialog that burns, as a module writes one: errors in message boxes, settings on destruction.
class BurnDialog : public Desk {
 protected:
  void SetUp() override {
    Desk::SetUp();
    on_message = [this](const Received& each) { return answer(each); };
  }

  LRESULT answer(const Received& each) {
    const HWND drives = GetDlgItem(each.window, 1015);
    if (each.message == WM_INITDIALOG) {
      CheckDlgButton(each.window, 1016, 1);
      for (LPARAM drive = 0; drive < 3; ++drive) {
        const std::string name = "Maker Drive " + std::to_string(drive);
        SendMessage(drives, CB_ADDSTRING, 0, text_param(name.c_str()));
        SendMessage(drives, CB_SETITEMDATA, drive, 1000 + drive);
      }
      SendMessage(drives, CB_SETCURSEL, 9, 0);
    } else if (each.message == WM_COMMAND && command_id(each) == IDOK) {
      const LRESULT row = SendMessage(drives, CB_GETCURSEL, 0, 0);
      if (row < 0) {
        MessageBox(each.window, "Select a recorder", "CD Burn Error", MB_OK);
      } else {
        burnt.push_back(SendMessage(drives, CB_GETITEMDATA, row, 0));
        ejected = IsDlgButtonChecked(each.window, 1016) != 0;
      }
    } else if (each.message == WM_COMMAND && command_id(each) == IDCANCEL) {
      EndDialog(each.window, 0);
    } else if (each.message == WM_DESTROY) {
      deleted = IsDlgButtonChecked(each.window, 1017) != 0;
    }
    return 0;
  }

  std::vector<LPARAM> burnt;
  bool ejected = false;
  bool deleted = false;
};

TEST_F(BurnDialog, IsUsedAsAPersonWouldUseIt) {
  ScriptedPerson person({
      [&](OpenDialog& dialog) {
        EXPECT_EQ(dialog.rows(1015),
                  (std::vector<std::string>{"Maker Drive 0", "Maker Drive 1", "Maker Drive 2"}));
        EXPECT_EQ(dialog.selected_row(1015), -1);
        dialog.press(IDOK);
      },
      [&](OpenDialog& dialog) {
        EXPECT_EQ(person.messages.size(), 1U);
        dialog.pick(1015, 1);
        EXPECT_EQ(dialog.text(1015), "Maker Drive 1");
        EXPECT_EQ(dialog.row_data(1015, 1), 1001);
        dialog.set_checked(1016, false);
        dialog.press(IDOK);
      },
      [&](OpenDialog& dialog) {
        dialog.set_checked(1017, true);
        dialog.close();
      },
  });
  const PersonAtDesk seat(person);
  EXPECT_EQ(run(kBurn), 0);
  EXPECT_EQ(burnt, std::vector<LPARAM>{1001});
  EXPECT_FALSE(ejected);
  EXPECT_TRUE(deleted);
  ASSERT_EQ(person.messages.size(), 1U);
  EXPECT_EQ(person.messages[0].text, "Select a recorder");
}

}  // namespace
}  // namespace velmor::windowing
