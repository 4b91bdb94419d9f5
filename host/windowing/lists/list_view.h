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

  const std::vector<Column>& columns() const { return columns_; }
  const std::vector<Row>& rows() const { return rows_; }
  int count() const { return static_cast<int>(rows_.size()); }
  bool has_row(int row) const { return row >= 0 && row < count(); }
  bool has_column(int column) const {
    return column >= 0 && column < static_cast<int>(columns_.size());
  }
  int extended_style() const { return extended_style_; }

  /// Changes the bits of `mask`, or all of them when it is 0.
  void set_extended_style(int mask, int style);

  /// An index past the end appends. The new column's index, -1 for a negative one.
  int insert_column(int index, const LVCOLUMN& column);
  bool set_column(int index, const LVCOLUMN& column);
  bool remove_column(int index);

  /// An index past the end appends. The new row's index, -1 for a negative one or for a cell that
  /// is not the row's first.
  int insert_row(const LVITEM& item);
  /// Text, state and parameter as far as the mask names them.
  bool set_item(const LVITEM& item);
  bool set_text(int row, int column, const char* text);
  bool remove_row(int row);
  void clear() { rows_.clear(); }

  /// Empty for a cell that there is not.
  const std::string& text(int row, int column) const;
  UINT state(int row, UINT mask) const;
  /// Row -1 is every row.
  bool set_state(int row, UINT state, UINT mask);
  /// The first row after `after` whose state has all bits of `state`, or -1.
  int next(int after, UINT state) const;

 private:
  std::vector<Column> columns_;
  std::vector<Row> rows_;
  int extended_style_ = 0;
};

}  // namespace velmor::windowing
