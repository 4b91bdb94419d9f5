#include "host/windowing/lists/list_view.h"

#include <algorithm>

#include "host/windowing/win32_numbers.h"

namespace velmor::windowing {
namespace {

void assign(ListView::Column& column, const LVCOLUMN& from) {
  if ((from.mask & LVCF_TEXT) != 0 && from.text != nullptr) {
    column.text = from.text;
  }
  if ((from.mask & LVCF_WIDTH) != 0) {
    column.width = from.cx;
  }
  if ((from.mask & LVCF_FMT) != 0) {
    column.format = from.fmt;
  }
}

}  // namespace

void ListView::set_extended_style(int mask, int style) {
  extended_style_ = mask == 0 ? style : ((extended_style_ & ~mask) | (style & mask));
}

int ListView::insert_column(int index, const LVCOLUMN& column) {
  if (index < 0) {
    return -1;
  }
  index = std::min(index, static_cast<int>(columns_.size()));
  Column added;
  assign(added, column);
  columns_.insert(columns_.begin() + index, added);
  for (Row& row : rows_) {
    if (static_cast<size_t>(index) < row.cells.size()) {
      row.cells.insert(row.cells.begin() + index, std::string());
    }
  }
  return index;
}

bool ListView::set_column(int index, const LVCOLUMN& column) {
  if (!has_column(index)) {
    return false;
  }
  assign(columns_[static_cast<size_t>(index)], column);
  return true;
}

bool ListView::remove_column(int index) {
  if (!has_column(index)) {
    return false;
  }
  columns_.erase(columns_.begin() + index);
  for (Row& row : rows_) {
    if (static_cast<size_t>(index) < row.cells.size()) {
      row.cells.erase(row.cells.begin() + index);
    }
  }
  return true;
}

int ListView::insert_row(const LVITEM& item) {
  if (item.item < 0 || item.sub_item != 0) {
    return -1;
  }
  LVITEM placed = item;
  placed.item = std::min(item.item, count());
  rows_.insert(rows_.begin() + placed.item, Row{});
  set_item(placed);
  return placed.item;
}

bool ListView::set_item(const LVITEM& item) {
  if (!has_row(item.item)) {
    return false;
  }
  Row& row = rows_[static_cast<size_t>(item.item)];
  if ((item.mask & LVIF_PARAM) != 0) {
    row.param = item.param;
  }
  if ((item.mask & LVIF_STATE) != 0) {
    row.state = (row.state & ~item.state_mask) | (item.state & item.state_mask);
  }
  return (item.mask & LVIF_TEXT) == 0 || set_text(item.item, item.sub_item, item.text);
}

bool ListView::set_text(int row, int column, const char* text) {
  if (!has_row(row) || (column != 0 && !has_column(column))) {
    return false;
  }
  auto& cells = rows_[static_cast<size_t>(row)].cells;
  if (cells.size() <= static_cast<size_t>(column)) {
    cells.resize(static_cast<size_t>(column) + 1);
  }
  cells[static_cast<size_t>(column)] = text == nullptr ? "" : text;
  return true;
}

bool ListView::remove_row(int row) {
  if (!has_row(row)) {
    return false;
  }
  rows_.erase(rows_.begin() + row);
  return true;
}

const std::string& ListView::text(int row, int column) const {
  static const std::string kNone;
  if (!has_row(row) || column < 0) {
    return kNone;
  }
  const auto& cells = rows_[static_cast<size_t>(row)].cells;
  return static_cast<size_t>(column) < cells.size() ? cells[static_cast<size_t>(column)] : kNone;
}

UINT ListView::state(int row, UINT mask) const {
  return has_row(row) ? (rows_[static_cast<size_t>(row)].state & mask) : 0;
}

bool ListView::set_state(int row, UINT state, UINT mask) {
  if (row == -1) {
    for (Row& each : rows_) {
      each.state = (each.state & ~mask) | (state & mask);
    }
    return true;
  }
  if (!has_row(row)) {
    return false;
  }
  UINT& current = rows_[static_cast<size_t>(row)].state;
  current = (current & ~mask) | (state & mask);
  return true;
}

int ListView::next(int after, UINT state) const {
  for (int row = std::max(after, -1) + 1; row < count(); ++row) {
    if ((rows_[static_cast<size_t>(row)].state & state) == state) {
      return row;
    }
  }
  return -1;
}

}  // namespace velmor::windowing
