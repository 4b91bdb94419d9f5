#include "host/windowing/lists/combo_box.h"

#include "host/windowing/win32/letter_case.h"

namespace velmor::windowing {

int ComboBox::add(std::string_view text) {
  return insert(-1, text);
}

int ComboBox::insert(LPARAM row, std::string_view text) {
  if (row == -1) {
    row = count();
  }
  if (row < 0 || row > count()) {
    return -1;
  }
  m_rows.insert(m_rows.begin() + row, Row{std::string(text), 0});
  if (m_selection >= row) {
    ++m_selection;
  }
  return static_cast<int>(row);
}

int ComboBox::remove(LPARAM row) {
  if (!has(row)) {
    return -1;
  }
  m_rows.erase(m_rows.begin() + row);
  if (m_selection == row) {
    m_selection = -1;
  } else if (m_selection > row) {
    --m_selection;
  }
  return count();
}

void ComboBox::clear() {
  m_rows.clear();
  m_selection = -1;
}

int ComboBox::select(LPARAM row) {
  m_selection = has(row) ? static_cast<int>(row) : -1;
  return m_selection;
}

LPARAM ComboBox::data(LPARAM row) const {
  return has(row) ? m_rows[static_cast<size_t>(row)].data : -1;
}

int ComboBox::setData(LPARAM row, LPARAM data) {
  if (!has(row)) {
    return -1;
  }
  m_rows[static_cast<size_t>(row)].data = data;
  return 0;
}

template <typename Matches>
int ComboBox::search(LPARAM after, Matches matches) const {
  const LPARAM first = has(after) ? after + 1 : 0;
  for (LPARAM step = 0; step < count(); ++step) {
    const LPARAM row = (first + step) % count();
    if (matches(text(row))) {
      return static_cast<int>(row);
    }
  }
  return -1;
}

int ComboBox::find(LPARAM after, std::string_view text) const {
  return search(after, [text](std::string_view row) {
    return sameLetters(row.substr(0, text.size()), text);
  });
}

int ComboBox::findExact(LPARAM after, std::string_view text) const {
  return search(after, [text](std::string_view row) { return sameLetters(row, text); });
}

}  // namespace velmor::windowing
