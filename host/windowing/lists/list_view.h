// What a list view in report style holds: columns, rows and cells.
#pragma once

#include <string>
#include <vector>

#include "abi/quelm_types.h"

namespace velmor::windowing {

/// Rows and columns are counted from 0; -1 stands for "none" and for a failure.
class ListView {
 public:
  struct Column {
    std::string text;
    int width = 0;  ///< pixels
    int format = 0;
  };
  struct Row {
    std::vector<std::string> cells;  ///< as many as have been set
    UINT state = 0;
    LPARAM param = 0;
  };

  const std::vector<Column>& columns() const { return m_columns; }
  const std::vector<Row>& rows() const { return m_rows; }
  int count() const { return static_cast<int>(m_rows.size()); }
  bool hasRow(int row) const { return row >= 0 && row < count(); }
  bool hasColumn(int column) const {
    return column >= 0 && column < static_cast<int>(m_columns.size());
  }
  int extendedStyle() const { return m_extended_style; }

  /// Changes the bits of `mask`, or all of them when it is 0.
  void setExtendedStyle(int mask, int style);

  /// An index past the end appends. The new column's index, -1 for a negative one.
  int insertColumn(int index, const LVCOLUMN& column);
  bool setColumn(int index, const LVCOLUMN& column);
  bool removeColumn(int index);

  /// An index past the end appends. The new row's index, -1 for a negative one or for a cell that
  /// is not the row's first.
  int insertRow(const LVITEM& item);
  /// Text, state and parameter as far as the mask names them.
  bool setItem(const LVITEM& item);
  bool setText(int row, int column, const char* text);
  bool removeRow(int row);
  void clear() { m_rows.clear(); }

  /// Empty for a cell that there is not.
  const std::string& text(int row, int column) const;
  UINT state(int row, UINT mask) const;
  /// Row -1 is every row.
  bool setState(int row, UINT state, UINT mask);
  /// The first row after `after` whose state has all bits of `state`, or -1.
  int next(int after, UINT state) const;

 private:
  std::vector<Column> m_columns;
  std::vector<Row> m_rows;
  int m_extended_style = 0;
};

}  // namespace velmor::windowing
