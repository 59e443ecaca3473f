#pragma once

// Reading a built table in tests: rows as the user sees them.

#include <string>
#include <vector>

#include "grid/table.h"

namespace zol::testing {

// The texts of a row in display order.
inline std::vector<std::string> Shown(const Table& t, const Row& row) {
  std::vector<std::string> texts;
  for (const int c : t.GetHeadersPositions()) texts.push_back(row.Text(c));
  return texts;
}

inline std::vector<std::string> ShownHeaders(const Table& t) {
  std::vector<std::string> texts;
  for (const int c : t.GetHeadersPositions()) texts.push_back(t.ColumnAt(c).Header);
  return texts;
}

// The texts of one column, top to bottom.
inline std::vector<std::string> ColumnTexts(const Table& t, int column) {
  std::vector<std::string> texts;
  for (int r = 1; r <= t.RowCount(); ++r) texts.push_back(t.Text(r, column));
  return texts;
}

// The first row whose column `column` reads `text`.
inline Row RowWith(const Table& t, int column, const std::string& text) {
  for (int r = 1; r <= t.RowCount(); ++r) {
    if (t.Text(r, column) == text) return t.RowAt(r);
  }
  throw std::runtime_error("no row with \"" + text + "\"");
}

}  // namespace zol::testing
