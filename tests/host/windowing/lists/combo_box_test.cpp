#include <gtest/gtest.h>

#include "host/windowing/win32/win32_numbers.h"
#include "tests/host/windowing/dialog_case.h"

namespace velmor::windowing {
namespace {

using functions::SendMessage;

class ComboBoxTest : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_dialog = open(kBurn);
    m_combo = functions::GetDlgItem(m_dialog, 1015);
    ASSERT_NE(m_combo, nullptr);
  }
  void fill(std::initializer_list<const char*> texts) {
    for (const char* text : texts) {
      SendMessage(m_combo, CB_ADDSTRING, 0, textParam(text));
    }
  }
  LRESULT send(UINT message, WPARAM wparam = 0, LPARAM lparam = 0) {
    return SendMessage(m_combo, message, wparam, lparam);
  }
  std::string row(WPARAM index) {
    std::string text(static_cast<size_t>(send(CB_GETLBTEXTLEN, index)) + 1, '?');
    send(CB_GETLBTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    text.pop_back();
    return text;
  }

  HWND m_dialog = nullptr;
  HWND m_combo = nullptr;
};

TEST_F(ComboBoxTest, StartsEmptyWithNothingSelected) {
  EXPECT_EQ(send(CB_GETCOUNT), 0);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
  EXPECT_EQ(send(CB_GETITEMDATA, 0), -1);
}

TEST_F(ComboBoxTest, AddedRowsAreNumberedAndNoneBecomesSelected) {
  EXPECT_EQ(send(CB_ADDSTRING, 0, textParam("first")), 0);
  EXPECT_EQ(send(CB_ADDSTRING, 0, textParam("second")), 1);
  EXPECT_EQ(send(CB_ADDSTRING, 0, 0), CB_ERR);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
  EXPECT_EQ(row(0), "first");
  EXPECT_EQ(row(1), "second");
}

TEST_F(ComboBoxTest, SelectingPastTheEndSelectsNothing) {
  fill({"a", "b"});
  EXPECT_EQ(send(CB_SETCURSEL, 1), 1);
  EXPECT_EQ(send(CB_SETCURSEL, 2), CB_ERR);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
  EXPECT_EQ(send(CB_SETCURSEL, 0), 0);
  EXPECT_EQ(send(CB_SETCURSEL, -1), CB_ERR);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
  EXPECT_EQ(send(CB_SETCURSEL, WPARAM{1} << 32), CB_ERR) << "no index is cut to 32 bits";
}

TEST_F(ComboBoxTest, ARowKeepsAPointerWideValue) {
  fill({"a"});
  EXPECT_EQ(send(CB_GETITEMDATA, 0), 0);
  EXPECT_EQ(send(CB_SETITEMDATA, 0, 0x123456789ABCLL), 0);
  EXPECT_EQ(send(CB_GETITEMDATA, 0), 0x123456789ABCLL);
  for (const WPARAM bad : {1, -1}) {
    EXPECT_EQ(send(CB_SETITEMDATA, bad, 1), CB_ERR);
    EXPECT_EQ(send(CB_GETITEMDATA, bad), CB_ERR);
  }
}

TEST_F(ComboBoxTest, EmptyingForgetsRowsAndSelection) {
  fill({"a", "b"});
  send(CB_SETCURSEL, 1);
  EXPECT_EQ(send(CB_RESETCONTENT), 0);
  EXPECT_EQ(send(CB_GETCOUNT), 0);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
}

TEST_F(ComboBoxTest, TheSelectedRowStaysSelectedWhenRowsComeAndGoBeforeIt) {
  fill({"a", "b", "c"});
  send(CB_SETCURSEL, 1);
  EXPECT_EQ(send(CB_INSERTSTRING, 0, textParam("new")), 0);
  EXPECT_EQ(send(CB_GETCURSEL), 2);
  EXPECT_EQ(send(CB_DELETESTRING, 0), 3);
  EXPECT_EQ(send(CB_GETCURSEL), 1);
  EXPECT_EQ(send(CB_DELETESTRING, 2), 2);
  EXPECT_EQ(send(CB_GETCURSEL), 1);
  EXPECT_EQ(send(CB_DELETESTRING, 1), 1);
  EXPECT_EQ(send(CB_GETCURSEL), -1);
  EXPECT_EQ(send(CB_DELETESTRING, 1), CB_ERR);
}

TEST_F(ComboBoxTest, InsertsAtTheEndForMinusOneAndNeverPastIt) {
  fill({"a"});
  EXPECT_EQ(send(CB_INSERTSTRING, -1, textParam("z")), 1);
  EXPECT_EQ(send(CB_INSERTSTRING, 2, textParam("zz")), 2);
  EXPECT_EQ(send(CB_INSERTSTRING, 4, textParam("x")), CB_ERR);
  EXPECT_EQ(send(CB_INSERTSTRING, -2, textParam("x")), CB_ERR);
  EXPECT_EQ(send(CB_GETCOUNT), 3);
}

TEST_F(ComboBoxTest, FindsRowsByTheirBeginningFromARowOnAndFromTheTopAgain) {
  fill({"Drive A", "drive B", "Other"});
  const struct {
    UINT message;
    WPARAM after;
    const char* text;
    LRESULT row;
  } cases[] = {
      {CB_FINDSTRING, -1, "DRIVE", 0},       {CB_FINDSTRING, 0, "DRIVE", 1},
      {CB_FINDSTRING, 1, "DRIVE", 0},        {CB_FINDSTRING, 2, "other", 2},
      {CB_FINDSTRING, -1, "Drive C", -1},    {CB_FINDSTRING, 99, "d", 0},
      {CB_FINDSTRINGEXACT, -1, "drive", -1}, {CB_FINDSTRINGEXACT, -1, "DRIVE b", 1},
  };
  for (const auto& each : cases) {
    EXPECT_EQ(send(each.message, each.after, textParam(each.text)), each.row)
        << each.text << " after " << each.after;
  }
  EXPECT_EQ(send(CB_SELECTSTRING, -1, textParam("oth")), 2);
  EXPECT_EQ(send(CB_SELECTSTRING, -1, textParam("none")), CB_ERR);
  EXPECT_EQ(send(CB_GETCURSEL), 2);
}

TEST_F(ComboBoxTest, ItsTextIsThatOfTheSelectedRowAndCannotBeTyped) {
  fill({"a", "b"});
  char text[8] = "?";
  EXPECT_EQ(functions::GetDlgItemText(m_dialog, 1015, text, sizeof text), 0);
  EXPECT_STREQ(text, "");
  send(CB_SETCURSEL, 1);
  EXPECT_EQ(functions::GetDlgItemText(m_dialog, 1015, text, sizeof text), 1);
  EXPECT_STREQ(text, "b");
  EXPECT_EQ(send(WM_SETTEXT, 0, textParam("a")), CB_ERR);
  EXPECT_EQ(functions::SetDlgItemText(m_dialog, 1015, "a"), 0);
  EXPECT_EQ(send(CB_GETCURSEL), 1);
}

TEST_F(ComboBoxTest, TellsTheDialogOnlyOfWhatAPersonPicks) {
  fill({"a", "b"});
  m_received.clear();
  send(CB_SETCURSEL, 1);
  send(CB_RESETCONTENT);
  fill({"a", "b"});
  EXPECT_TRUE(m_received.empty());
  OpenDialog(m_dialog).pick(1015, 1);
  ASSERT_EQ(m_received.size(), 1U);
  EXPECT_EQ(m_received[0].message, WM_COMMAND);
  EXPECT_EQ(commandId(m_received[0]), 1015);
  EXPECT_EQ(commandCode(m_received[0]), CBN_SELCHANGE);
  EXPECT_EQ(m_received[0].lparam, reinterpret_cast<LPARAM>(m_combo));
  OpenDialog(m_dialog).pick(1015, 1);
  EXPECT_EQ(m_received.size(), 2U) << "the row already picked can be picked again";
}

TEST_F(ComboBoxTest, AnswersTheSameToTheFunctionsThatNameItByItsId) {
  using namespace functions;
  EXPECT_EQ(QUELM_CB_AddString(m_dialog, 1015, "b"), 0);
  EXPECT_EQ(QUELM_CB_InsertString(m_dialog, 1015, 0, "a"), 0);
  EXPECT_EQ(QUELM_CB_GetNumItems(m_dialog, 1015), 2);
  EXPECT_EQ(QUELM_CB_GetCurSel(m_dialog, 1015), -1);
  QUELM_CB_SetCurSel(m_dialog, 1015, 1);
  EXPECT_EQ(send(CB_GETCURSEL), 1);
  QUELM_CB_SetItemData(m_dialog, 1015, 1, 77);
  EXPECT_EQ(QUELM_CB_GetItemData(m_dialog, 1015, 1), 77);
  EXPECT_EQ(QUELM_CB_GetItemData(m_dialog, 1015, 2), -1);
  char text[2] = "";
  EXPECT_EQ(QUELM_CB_GetItemText(m_dialog, 1015, 1, text, sizeof text), 1);
  EXPECT_STREQ(text, "b");
  EXPECT_EQ(QUELM_CB_GetItemText(m_dialog, 1015, 2, text, sizeof text), -1);
  EXPECT_EQ(QUELM_CB_FindString(m_dialog, 1015, -1, "B"), 1);
  EXPECT_EQ(QUELM_CB_DeleteString(m_dialog, 1015, 0), 1);
  QUELM_CB_Empty(m_dialog, 1015);
  EXPECT_EQ(QUELM_CB_GetNumItems(m_dialog, 1015), 0);
  EXPECT_EQ(QUELM_CB_GetNumItems(m_dialog, 9999), -1);
  EXPECT_EQ(QUELM_CB_AddString(m_dialog, 1018, "x"), -1) << "a list view is no combo box";
}

}  // namespace
}  // namespace velmor::windowing
