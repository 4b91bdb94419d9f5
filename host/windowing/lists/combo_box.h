// What a drop-down list holds, with the rules of its messages.
#pragma once

#include <cassert>
#include <string>
#include <string_view>
#include <vector>

#include "abi/quelm_types.h"

namespace velmor::windowing {

/// Rows are counted from 0; -1 stands for "none" and for a failure (CB_ERR).
class ComboBox {
 public:
  int count() const { return static_cast<int>(m_rows.size()); }
  int selection() const { return m_selection; }
  /// Whether there is such a row.
  bool has(LPARAM row) const { return row >= 0 && row < count(); }

  /// The new row's index.
  int add(std::string_view text);
  /// Row -1 is the end; -1 is answered when `row` lies past the end. The selected row stays
  /// selected.
  int insert(LPARAM row, std::string_view text);
  /// The number of rows left, or -1. Removing the selected row leaves nothing selected.
  int remove(LPARAM row);
  void clear();

  /// The row now selected; a row there is not selects nothing and answers -1.
  int select(LPARAM row);

  /// The row must exist.
  const std::string& text(LPARAM row) const {
    assert(has(row));
    return m_rows[static_cast<size_t>(row)].text;
  }
  /// -1 when there is no such row.
  LPARAM data(LPARAM row) const;
  /// 0, or -1 when there is no such row.
  int setData(LPARAM row, LPARAM data);

  /// The first row after `after` that begins with `text`, letter case aside, the search going on
  /// from the top; -1 when none does. An `after` of -1 searches from the top.
  int find(LPARAM after, std::string_view text) const;
  /// Likewise for the whole text.
  int findExact(LPARAM after, std::string_view text) const;

 private:
  struct Row {
    std::string text;
    LPARAM data = 0;
  };

  template <typename Matches>
  int search(LPARAM after, Matches matches) const;

  std::vector<Row> m_rows;
  int m_selection = -1;
};

}  // namespace velmor::windowing
