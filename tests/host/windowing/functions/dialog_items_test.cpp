#include <gtest/gtest.h>

#include <algorithm>

#include "host/windowing/win32/win32_numbers.h"
#include "tests/host/windowing/dialog_case.h"

namespace velmor::windowing {
namespace {

using namespace functions;

class DialogItems : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_panel = open(kPanel);
  }
  HWND m_panel = nullptr;
};

TEST_F(DialogItems, NumbersAreReadByTheRulesOfGetDlgItemInt) {
  const struct {
    const char* text;
    int is_signed;
    int value;
    BOOL translated;
  } cases[] = {
      {"0", 1, 0, 1},
      {"250", 1, 250, 1},
      {"-250", 1, -250, 1},
      {" \t 42", 1, 42, 1},
      {"  -7", 1, -7, 1},
      {"12 ms", 1, 12, 1},
      {"12abc", 0, 12, 1},
      {"0000000000000000000000000000000000000000000009", 1, 9, 1},
      {"2147483647", 1, 2147483647, 1},
      {"-2147483648", 1, -2147483647 - 1, 1},
      {"4294967295", 0, -1, 1},
      {"", 1, 0, 0},
      {"   ", 1, 0, 0},
      {"ms", 1, 0, 0},
      {"-", 1, 0, 0},
      {"--1", 1, 0, 0},
      {"- 1", 1, 0, 0},
      {"+1", 1, 0, 0},
      {"-250", 0, 0, 0},
      {"2147483648", 1, 0, 0},
      {"-2147483649", 1, 0, 0},
      {"4294967296", 0, 0, 0},
      {"99999999999999999999999999999999999999", 1, 0, 0},
  };
  for (const auto& each : cases) {
    SetDlgItemText(m_panel, 1001, each.text);
    BOOL translated = 7;
    EXPECT_EQ(GetDlgItemInt(m_panel, 1001, &translated, each.is_signed), each.value) << each.text;
    EXPECT_EQ(translated, each.translated) << each.text;
    EXPECT_EQ(GetDlgItemInt(m_panel, 1001, nullptr, each.is_signed), each.value) << each.text;
  }
}

TEST_F(DialogItems, NumbersAreShownWithOrWithoutSign) {
  SetDlgItemInt(m_panel, 1001, -250, 1);
  EXPECT_EQ(OpenDialog(m_panel).text(1001), "-250");
  SetDlgItemInt(m_panel, 1001, -1, 0);
  EXPECT_EQ(OpenDialog(m_panel).text(1001), "4294967295");
}

TEST_F(DialogItems, ANumberOfAControlThatThereIsNotIsUntranslated) {
  BOOL translated = 7;
  EXPECT_EQ(GetDlgItemInt(m_panel, 4711, &translated, 1), 0);
  EXPECT_EQ(translated, 0);
}

TEST_F(DialogItems, ATextIsCutToTheBufferAndNeverInsideACharacter) {
  SetDlgItemText(m_panel, 1001,
                 "a\xC3\xA4"
                 "b");
  char text[8];
  const struct {
    int size, length;
    const char* text;
  } cases[] = {{8, 4,
                "a\xC3\xA4"
                "b"},
               {5, 4,
                "a\xC3\xA4"
                "b"},
               {4, 3, "a\xC3\xA4"},
               {3, 1, "a"},
               {2, 1, "a"},
               {1, 0, ""}};
  for (const auto& each : cases) {
    EXPECT_EQ(GetDlgItemText(m_panel, 1001, text, each.size), each.length) << each.size;
    EXPECT_STREQ(text, each.text) << each.size;
  }
  EXPECT_EQ(GetDlgItemText(m_panel, 1001, text, 0), 0);
  EXPECT_EQ(GetDlgItemText(m_panel, 1001, nullptr, 8), 0);
  std::fill(std::begin(text), std::end(text), 'x');
  EXPECT_EQ(GetDlgItemText(m_panel, 4711, text, sizeof text), 0) << "no such item";
  EXPECT_STREQ(text, "");
  text[0] = 'x';
  EXPECT_EQ(GetDlgItemText(m_panel, 4711, text, 0), 0);
  EXPECT_EQ(text[0], 'x') << "no room";
}

TEST_F(DialogItems, AnEditTellsOfEveryChangeOfItsText) {
  SetDlgItemText(m_panel, 1002, "5");
  OpenDialog(m_panel).type(1002, "6");
  EXPECT_EQ(codesOf(1002), (std::vector<int>{EN_UPDATE, EN_CHANGE, EN_UPDATE, EN_CHANGE}));
  EXPECT_EQ(GetWindowTextLength(GetDlgItem(m_panel, 1002)), 1);
  SetDlgItemText(m_panel, 1002, nullptr);
  EXPECT_EQ(OpenDialog(m_panel).text(1002), "");
}

TEST_F(DialogItems, ACheckBoxOfTwoStatesHasNoThird) {
  const struct {
    int set, shown;
  } cases[] = {{1, 1}, {0, 0}, {2, 1}, {0, 0}, {-1, 1}, {0, 0}, {7, 1}};
  for (const auto& each : cases) {
    CheckDlgButton(m_panel, 1016, each.set);
    EXPECT_EQ(IsDlgButtonChecked(m_panel, 1016), each.shown) << each.set;
  }
  CheckDlgButton(m_panel, 1001, 1);
  EXPECT_EQ(IsDlgButtonChecked(m_panel, 1001), 0) << "an edit has no check";
  EXPECT_EQ(IsDlgButtonChecked(m_panel, 4711), 0);
  EXPECT_TRUE(codesOf(1016).empty()) << "a program's check is no click";
}

TEST_F(DialogItems, AClickTogglesAnAutomaticCheckBoxAndTellsTheDialogAfterwards) {
  int seen = -1;
  m_on_message = [&](const Received& each) -> LRESULT {
    seen = IsDlgButtonChecked(each.window, 1017);
    return 0;
  };
  OpenDialog(m_panel).press(1017);
  EXPECT_EQ(seen, 1);
  OpenDialog(m_panel).press(1017);
  EXPECT_EQ(seen, 0);
  SendMessage(GetDlgItem(m_panel, 1017), BM_CLICK, 0, 0);
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(codesOf(1017), (std::vector<int>{BN_CLICKED, BN_CLICKED, BN_CLICKED}));
  OpenDialog(m_panel).setChecked(1017, true);
  EXPECT_EQ(codesOf(1017).size(), 3U) << "nobody presses a box that stands right";
  EnableWindow(GetDlgItem(m_panel, 1017), 0);
  SendMessage(GetDlgItem(m_panel, 1017), BM_CLICK, 0, 0);
  EXPECT_EQ(IsDlgButtonChecked(m_panel, 1017), 1) << "a disabled box is not clicked";
}

TEST_F(DialogItems, LabelsShareAnIdAndTheFirstAnswersToIt) {
  EXPECT_EQ(OpenDialog(m_panel).text(0), "Lead-in silence for tracks:");
  EXPECT_EQ(GetDlgItem(m_panel, 4711), nullptr);
  EXPECT_EQ(GetDlgItem(nullptr, 1001), nullptr);
}

QuelmControl generic(const char* caption, int id, const char* class_name, int style) {
  return {caption, id, class_name, style, 0, 0, 10, 10, 0};
}

TEST_F(DialogItems, ButtonsOfEachStyleClickInTheirOwnWay) {
  QUELM_MakeSetCurParms(1, 1, 0, 0, m_panel, false, false);
  const QuelmControl rows[] = {
      generic("by hand", 1, "BUTTON", BS_CHECKBOX),
      generic("three states", 2, "Button", BS_AUTO3STATE),
      generic("left", 3, "Button", BS_AUTORADIOBUTTON | WS_GROUP),
      generic("right", 4, "Button", BS_AUTORADIOBUTTON),
      generic("other group", 5, "Button", BS_AUTORADIOBUTTON | WS_GROUP),
      generic("frame", 6, "Button", BS_GROUPBOX),
      generic("go", 7, "button", BS_PUSHBUTTON),
  };
  QUELM_GenerateDialogFromList(rows, static_cast<int>(std::size(rows)));
  OpenDialog dialog(m_panel);
  dialog.press(1);
  EXPECT_EQ(IsDlgButtonChecked(m_panel, 1), 0) << "its dialog checks it, not the click";
  std::vector<int> states;
  for (int i = 0; i < 3; ++i) {
    dialog.press(2);
    states.push_back(IsDlgButtonChecked(m_panel, 2));
  }
  EXPECT_EQ(states, (std::vector<int>{BST_CHECKED, BST_INDETERMINATE, BST_UNCHECKED}));
  dialog.press(5);
  dialog.press(3);
  dialog.press(4);
  EXPECT_FALSE(dialog.isChecked(3));
  EXPECT_TRUE(dialog.isChecked(4));
  EXPECT_TRUE(dialog.isChecked(5));
  EXPECT_THROW(dialog.press(6), CannotDo);
  CheckDlgButton(m_panel, 7, 1);
  EXPECT_EQ(IsDlgButtonChecked(m_panel, 7), 0) << "a push button has no check";
}

}  // namespace
}  // namespace velmor::windowing
