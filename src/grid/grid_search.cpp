#include "grid/grid_search.h"

#include <algorithm>
#include <string>

#include "grid/grid_sort.h"

namespace zol {

namespace {

char Lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string Lowered(std::string_view text) {
  std::string out(text);
  std::transform(out.begin(), out.end(), out.begin(), Lower);
  return out;
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  std::size_t at = 0;
  while (at < text.size()) {
    while (at < text.size() && (text[at] == ' ' || text[at] == '\t')) ++at;
    std::size_t end = at;
    while (end < text.size() && text[end] != ' ' && text[end] != '\t') ++end;
    if (end > at) words.push_back(Lowered(text.substr(at, end - at)));
    at = end;
  }
  return words;
}

}  // namespace

std::vector<int> RowsMatching(const Table& table, std::string_view words) {
  const std::vector<std::string> wanted = Words(words);
  std::vector<int> rows;
  rows.reserve(static_cast<std::size_t>(table.RowCount()));
  std::vector<int> textColumns;
  for (int c = 1; c <= table.ColumnCount(); ++c) {
    if (!IsNumericColumn(table.ColumnAt(c).Header)) textColumns.push_back(c);
  }
  std::string cells;
  std::string scratch;
  for (int r = 1; r <= table.RowCount(); ++r) {
    if (wanted.empty() || table.Key(r) == kTotalKey) {
      rows.push_back(r);
      continue;
    }
    // The searched cells side by side, kept apart so that no word is found
    // across two of them.
    cells.clear();
    for (const int c : textColumns) {
      cells += Lowered(table.TextView(r, c, scratch));
      cells += '\n';
    }
    const bool all = std::all_of(wanted.begin(), wanted.end(), [&](const std::string& w) {
      return cells.find(w) != std::string::npos;
    });
    if (all) rows.push_back(r);
  }
  return rows;
}

}  // namespace zol
