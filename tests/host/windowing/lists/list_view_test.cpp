#include <gtest/gtest.h>

#include "host/windowing/win32/win32_numbers.h"
#include "tests/host/windowing/dialog_case.h"

namespace velmor::windowing {
namespace {

using namespace functions;

class ListViewTest : public DialogCase {
 protected:
  void SetUp() override {
    DialogCase::SetUp();
    m_dialog = open(kBurn);
    m_list = GetDlgItem(m_dialog, 1018);
    column(0, "Track #", 60);
    column(1, "Name", 180);
    column(2, "Duration", 90);
  }
  void column(int index, std::string text, int width) {
    LVCOLUMN added = {};
    added.mask = LVCF_TEXT | LVCF_WIDTH;
    added.text = text.data();
    added.cx = width;
    ListView_InsertColumn(m_list, index, &added);
  }
  int row(int index, std::string text) {
    LVITEM added = {};
    added.mask = LVIF_TEXT;
    added.item = index;
    added.text = text.data();
    return ListView_InsertItem(m_list, &added);
  }
  std::vector<std::vector<std::string>> rows() const { return OpenDialog(m_dialog).listRows(1018); }

  HWND m_dialog = nullptr;
  HWND m_list = nullptr;
};

using Rows = std::vector<std::vector<std::string>>;

TEST_F(ListViewTest, ShowsATrackListAsItWasFilled) {
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(row(i, std::to_string(i + 1)), i);
    EXPECT_TRUE(ListView_SetItemText(m_list, i, 2, "3:25"));
  }
  EXPECT_TRUE(ListView_SetItemText(m_list, 1, 1, "Nocturne"));
  EXPECT_EQ(OpenDialog(m_dialog).listColumns(1018),
            (std::vector<std::string>{"Track #", "Name", "Duration"}));
  EXPECT_EQ(rows(), (Rows{{"1", "", "3:25"}, {"2", "Nocturne", "3:25"}}));
  EXPECT_EQ(ListView_GetItemCount(m_list), 2);
  char text[4];
  ListView_GetItemText(m_list, 1, 1, text, sizeof text);
  EXPECT_STREQ(text, "Noc");
  ListView_GetItemText(m_list, 9, 9, text, sizeof text);
  EXPECT_STREQ(text, "");
}

TEST_F(ListViewTest, RowsPastTheEndAreAppendedAndNegativeOnesRefused) {
  EXPECT_EQ(row(5, "a"), 0);
  EXPECT_EQ(row(0, "b"), 0);
  EXPECT_EQ(row(-1, "c"), -1);
  LVITEM cell = {};
  cell.sub_item = 1;
  EXPECT_EQ(ListView_InsertItem(m_list, &cell), -1);
  EXPECT_EQ(ListView_InsertItem(m_list, nullptr), -1);
  EXPECT_EQ(rows(), (Rows{{"b", "", ""}, {"a", "", ""}}));
}

TEST_F(ListViewTest, ACellThatThereIsNotTakesNoText) {
  row(0, "1");
  for (const auto& [r, c] : {std::pair{1, 0}, {-1, 0}, {0, 3}, {0, -1}, {0, 2000000000}}) {
    EXPECT_FALSE(ListView_SetItemText(m_list, r, c, "x")) << r << ',' << c;
  }
  EXPECT_TRUE(ListView_SetItemText(m_list, 0, 0, nullptr));
  EXPECT_EQ(rows(), (Rows{{"", "", ""}}));
}

TEST_F(ListViewTest, ColumnsKeepWidthAndTextAndMoveTheirCells) {
  row(0, "1");
  ListView_SetItemText(m_list, 0, 1, "name");
  column(1, "new", 10);
  EXPECT_EQ(rows(), (Rows{{"1", "", "name", ""}}));
  EXPECT_EQ(ListView_GetColumnWidth(m_list, 2), 180);
  EXPECT_EQ(ListView_SetColumnWidth(m_list, 2, 5), 1);
  char text[8];
  LVCOLUMN asked = {};
  asked.mask = LVCF_TEXT | LVCF_WIDTH;
  asked.text = text;
  asked.text_max = sizeof text;
  EXPECT_EQ(ListView_GetColumn(m_list, 2, &asked), 1);
  EXPECT_STREQ(text, "Name");
  EXPECT_EQ(asked.cx, 5);
  EXPECT_EQ(ListView_DeleteColumn(m_list, 1), 1);
  EXPECT_EQ(ListView_DeleteColumn(m_list, 3), 0);
  EXPECT_EQ(rows(), (Rows{{"1", "name", ""}}));
}

TEST_F(ListViewTest, TheExtendedStyleChangesOnlyTheBitsOfTheMask) {
  const auto style = [&] { return Desktop::the().find(m_list)->list.extendedStyle(); };
  ListView_SetExtendedListViewStyleEx(m_list, 0, 0x25);
  EXPECT_EQ(style(), 0x25);
  ListView_SetExtendedListViewStyleEx(m_list, 0x21, LVS_EX_FULLROWSELECT);
  EXPECT_EQ(style(), 0x24);
  ListView_SetExtendedListViewStyleEx(m_list, 0, LVS_EX_FULLROWSELECT);
  EXPECT_EQ(style(), 0x20);
}

TEST_F(ListViewTest, SelectedRowsAreFoundInOrder) {
  for (int i = 0; i < 4; ++i) {
    row(i, "x");
  }
  EXPECT_EQ(ListView_GetSelectionMark(m_list), -1);
  EXPECT_EQ(ListView_SetItemState(m_list, 1, LVIS_SELECTED, LVIS_SELECTED), 1);
  EXPECT_EQ(ListView_SetItemState(m_list, 3, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED), 1);
  EXPECT_EQ(ListView_SetItemState(m_list, 4, LVIS_SELECTED, LVIS_SELECTED), 0);
  EXPECT_EQ(ListView_GetSelectedCount(m_list), 2);
  EXPECT_EQ(ListView_GetNextItem(m_list, -1, LVNI_SELECTED), 1);
  EXPECT_EQ(ListView_GetNextItem(m_list, 1, LVNI_SELECTED), 3);
  EXPECT_EQ(ListView_GetNextItem(m_list, 3, LVNI_SELECTED), -1);
  EXPECT_EQ(ListView_GetItemState(m_list, 3, LVIS_FOCUSED), 0U);
  EXPECT_EQ(ListView_SetItemState(m_list, -1, 0, LVIS_SELECTED), 1);
  EXPECT_EQ(ListView_GetSelectedCount(m_list), 0);
}

TEST_F(ListViewTest, ItemsKeepWhatTheirMaskNames) {
  row(0, "1");
  LVITEM item = {};
  item.mask = LVIF_PARAM | LVIF_STATE;
  item.param = 99;
  item.state = LVIS_SELECTED;
  item.state_mask = LVIS_SELECTED;
  EXPECT_EQ(ListView_SetItem(m_list, &item), 1);
  item.mask = 0;
  item.param = 98;
  item.state = 0;
  EXPECT_EQ(ListView_SetItem(m_list, &item), 1) << "changes nothing";
  char text[4] = "?";
  LVITEM asked = {};
  asked.mask = LVIF_TEXT | LVIF_PARAM | LVIF_STATE;
  asked.state_mask = LVIS_SELECTED;
  asked.text = text;
  asked.text_max = sizeof text;
  EXPECT_EQ(ListView_GetItem(m_list, &asked), 1);
  EXPECT_STREQ(text, "1");
  EXPECT_EQ(asked.param, 99);
  EXPECT_EQ(asked.state, LVIS_SELECTED);
  asked.item = 1;
  EXPECT_EQ(ListView_GetItem(m_list, &asked), 0);
  EXPECT_EQ(ListView_DeleteItem(m_list, 0), 1);
  EXPECT_EQ(ListView_DeleteItem(m_list, 0), 0);
  row(0, "a");
  EXPECT_EQ(ListView_DeleteAllItems(m_list), 1);
  EXPECT_EQ(ListView_GetItemCount(m_list), 0);
}

TEST_F(ListViewTest, OtherControlsAreNoLists) {
  const HWND combo = GetDlgItem(m_dialog, 1015);
  LVITEM item = {};
  EXPECT_EQ(ListView_InsertItem(combo, &item), -1);
  EXPECT_FALSE(ListView_SetItemText(combo, 0, 0, "x"));
  EXPECT_EQ(ListView_SetItemState(combo, -1, 0, 0), 0);
  EXPECT_EQ(ListView_DeleteAllItems(combo), 0);
}

}  // namespace
}  // namespace velmor::windowing
