#include "host/windowing/lists/list_view.h"

#include <algorithm>

#include "host/windowing/win32/win32_numbers.h"

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

void ListView::setExtendedStyle(int mask, int style) {
  m_extended_style = mask == 0 ? style : ((m_extended_style & ~mask) | (style & mask));
}

int ListView::insertColumn(int index, const LVCOLUMN& column) {
  if (index < 0) {
    return -1;
  }
  index = std::min(index, static_cast<int>(m_columns.size()));
  Column added;
  assign(added, column);
  m_columns.insert(m_columns.begin() + index, added);
  for (Row& row : m_rows) {
    if (static_cast<size_t>(index) < row.cells.size()) {
      row.cells.insert(row.cells.begin() + index, std::string());
    }
  }
  return index;
}

bool ListView::setColumn(int index, const LVCOLUMN& column) {
  if (!hasColumn(index)) {
    return false;
  }
  assign(m_columns[static_cast<size_t>(index)], column);
  return true;
}

bool ListView::removeColumn(int index) {
  if (!hasColumn(index)) {
    return false;
  }
  m_columns.erase(m_columns.begin() + index);
  for (Row& row : m_rows) {
    if (static_cast<size_t>(index) < row.cells.size()) {
      row.cells.erase(row.cells.begin() + index);
    }
  }
  return true;
}

int ListView::insertRow(const LVITEM& item) {
  if (item.item < 0 || item.sub_item != 0) {
    return -1;
  }
  LVITEM placed = item;
  placed.item = std::min(item.item, count());
  m_rows.insert(m_rows.begin() + placed.item, Row{});
  setItem(placed);
  return placed.item;
}

bool ListView::setItem(const LVITEM& item) {
  if (!hasRow(item.item)) {
    return false;
  }
  Row& row = m_rows[static_cast<size_t>(item.item)];
  if ((item.mask & LVIF_PARAM) != 0) {
    row.param = item.param;
  }
  if ((item.mask & LVIF_STATE) != 0) {
    row.state = (row.state & ~item.state_mask) | (item.state & item.state_mask);
  }
  return (item.mask & LVIF_TEXT) == 0 || setText(item.item, item.sub_item, item.text);
}

bool ListView::setText(int row, int column, const char* text) {
  if (!hasRow(row) || (column != 0 && !hasColumn(column))) {
    return false;
  }
  auto& cells = m_rows[static_cast<size_t>(row)].cells;
  if (cells.size() <= static_cast<size_t>(column)) {
    cells.resize(static_cast<size_t>(column) + 1);
  }
  cells[static_cast<size_t>(column)] = text == nullptr ? "" : text;
  return true;
}

bool ListView::removeRow(int row) {
  if (!hasRow(row)) {
    return false;
  }
  m_rows.erase(m_rows.begin() + row);
  return true;
}

const std::string& ListView::text(int row, int column) const {
  static const std::string kNone;
  if (!hasRow(row) || column < 0) {
    return kNone;
  }
  const auto& cells = m_rows[static_cast<size_t>(row)].cells;
  return static_cast<size_t>(column) < cells.size() ? cells[static_cast<size_t>(column)] : kNone;
}

UINT ListView::state(int row, UINT mask) const {
  return hasRow(row) ? (m_rows[static_cast<size_t>(row)].state & mask) : 0;
}

bool ListView::setState(int row, UINT state, UINT mask) {
  if (row == -1) {
    for (Row& each : m_rows) {
      each.state = (each.state & ~mask) | (state & mask);
    }
    return true;
  }
  if (!hasRow(row)) {
    return false;
  }
  UINT& current = m_rows[static_cast<size_t>(row)].state;
  current = (current & ~mask) | (state & mask);
  return true;
}

int ListView::next(int after, UINT state) const {
  for (int row = std::max(after, -1) + 1; row < count(); ++row) {
    if ((m_rows[static_cast<size_t>(row)].state & state) == state) {
      return row;
    }
  }
  return -1;
}

}  // namespace velmor::windowing
