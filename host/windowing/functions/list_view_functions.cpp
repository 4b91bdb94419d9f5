#include <algorithm>

#include "host/windowing/desktop/desktop.h"
#include "host/windowing/functions/layer_functions.h"
#include "host/windowing/win32/bounded_text.h"

namespace velmor::windowing::functions {
namespace {

/// The list of a list view's handle. For another handle an empty one, so that callers need no case
/// of their own for it; what is done to that one has no effect.
std::shared_ptr<ListView> findList(HWND handle) {
  const auto window = Desktop::the().find(handle);
  if (!window || window->kind != WindowKind::kListView) {
    return std::make_shared<ListView>();
  }
  return {window, &window->list};
}

bool isList(HWND handle) {
  const auto window = Desktop::the().find(handle);
  return window && window->kind == WindowKind::kListView;
}

}  // namespace

void ListView_SetExtendedListViewStyleEx(HWND list, int mask, int style) {
  findList(list)->setExtendedStyle(mask, style);
}

void ListView_InsertColumn(HWND list, int index, const LVCOLUMN* column) {
  if (column != nullptr) {
    findList(list)->insertColumn(index, *column);
  }
}

BOOL ListView_DeleteColumn(HWND list, int index) {
  return findList(list)->removeColumn(index) ? 1 : 0;
}

BOOL ListView_SetColumn(HWND list, int index, const LVCOLUMN* column) {
  return column != nullptr && findList(list)->setColumn(index, *column) ? 1 : 0;
}

BOOL ListView_GetColumn(HWND list, int index, LVCOLUMN* column) {
  const auto view = findList(list);
  if (column == nullptr || !view->hasColumn(index)) {
    return 0;
  }
  const ListView::Column& from = view->columns()[static_cast<size_t>(index)];
  if ((column->mask & LVCF_TEXT) != 0) {
    copyBounded(from.text, column->text, column->text_max);
  }
  if ((column->mask & LVCF_WIDTH) != 0) {
    column->cx = from.width;
  }
  if ((column->mask & LVCF_FMT) != 0) {
    column->fmt = from.format;
  }
  return 1;
}

int ListView_GetColumnWidth(HWND list, int index) {
  const auto view = findList(list);
  return view->hasColumn(index) ? view->columns()[static_cast<size_t>(index)].width : 0;
}

BOOL ListView_SetColumnWidth(HWND list, int index, int width) {
  LVCOLUMN column = {};
  column.mask = LVCF_WIDTH;
  column.cx = width;
  return ListView_SetColumn(list, index, &column);
}

int ListView_InsertItem(HWND list, const LVITEM* item) {
  return item != nullptr && isList(list) ? findList(list)->insertRow(*item) : -1;
}

bool ListView_SetItemText(HWND list, int row, int column, const char* text) {
  return findList(list)->setText(row, column, text);
}

void ListView_GetItemText(HWND list, int row, int column, char* buffer, int size) {
  copyBounded(findList(list)->text(row, column), buffer, size);
}

BOOL ListView_SetItem(HWND list, const LVITEM* item) {
  return item != nullptr && findList(list)->setItem(*item) ? 1 : 0;
}

BOOL ListView_GetItem(HWND list, LVITEM* item) {
  const auto view = findList(list);
  if (item == nullptr || !view->hasRow(item->item)) {
    return 0;
  }
  if ((item->mask & LVIF_TEXT) != 0) {
    copyBounded(view->text(item->item, item->sub_item), item->text, item->text_max);
  }
  if ((item->mask & LVIF_PARAM) != 0) {
    item->param = view->rows()[static_cast<size_t>(item->item)].param;
  }
  if ((item->mask & LVIF_STATE) != 0) {
    item->state = view->state(item->item, item->state_mask);
  }
  return 1;
}

BOOL ListView_DeleteItem(HWND list, int row) {
  return findList(list)->removeRow(row) ? 1 : 0;
}

BOOL ListView_DeleteAllItems(HWND list) {
  findList(list)->clear();
  return isList(list) ? 1 : 0;
}

int ListView_GetItemCount(HWND list) {
  return findList(list)->count();
}

int ListView_GetNextItem(HWND list, int after, int flags) {
  UINT state = 0;
  state |= (flags & LVNI_FOCUSED) != 0 ? LVIS_FOCUSED : 0;
  state |= (flags & LVNI_SELECTED) != 0 ? LVIS_SELECTED : 0;
  return findList(list)->next(after, state);
}

int ListView_GetSelectedCount(HWND list) {
  return static_cast<int>(std::ranges::count_if(
      findList(list)->rows(),
      [](const ListView::Row& row) { return (row.state & LVIS_SELECTED) != 0; }));
}

int ListView_GetSelectionMark(HWND list) {
  return ListView_GetNextItem(list, -1, LVNI_SELECTED);
}

UINT ListView_GetItemState(HWND list, int row, UINT mask) {
  return findList(list)->state(row, mask);
}

BOOL ListView_SetItemState(HWND list, int row, UINT state, UINT mask) {
  return isList(list) && findList(list)->setState(row, state, mask) ? 1 : 0;
}

}  // namespace velmor::windowing::functions
