#include "grid/grid_sort.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/cp1252.h"
#include "base/text.h"
#include "grid/grid_frame.h"

namespace zol {

namespace {

// The text of a dead row's value cells.
constexpr std::string_view kDeadCell = "  ";

// The number of a cell; a percentage or a ratio ("2.00x") counts by its number.
std::optional<double> CellNumber(std::string_view text) {
  if (!text.empty() && (text.back() == '%' || text.back() == 'x')) text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  return ParseCellNumber(text);
}

enum class Place : std::uint8_t { Normal = 0, Dead = 1, Total = 2 };

// Among normal cells: texts that come before "0", numbers, texts after.
enum class Kind : std::uint8_t { TextBefore = 0, Number = 1, TextAfter = 2 };

struct SortEntry {
  Place place = Place::Normal;
  Kind kind = Kind::TextBefore;
  double number = 0;
  std::string_view text;
  std::uint32_t row = 0;
};

int CompareNoCase(std::string_view a, std::string_view b) {
  // Long equal stretches (source lines, names with a common start) are
  // skipped at memory speed; case is looked at from the first difference on.
  if (a == b) return 0;
  const std::size_t n = std::min(a.size(), b.size());
  std::size_t i = static_cast<std::size_t>(
      std::mismatch(a.begin(), a.begin() + n, b.begin()).first - a.begin());
  for (; i < n; ++i) {
    const auto ca = static_cast<unsigned char>(LowerCase1252(a[i]));
    const auto cb = static_cast<unsigned char>(LowerCase1252(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

// The order of two normal entries, ascending.
int CompareNormal(const SortEntry& a, const SortEntry& b) {
  if (a.kind != b.kind) return a.kind < b.kind ? -1 : 1;
  if (a.kind == Kind::Number) return a.number < b.number ? -1 : (b.number < a.number ? 1 : 0);
  return CompareNoCase(a.text, b.text);
}

SortEntry EntryOf(const Row& row, std::uint32_t index, int column, bool numeric) {
  SortEntry e;
  e.row = index;
  e.text = row.Text(column);
  if (row.Bold()) {
    e.place = Place::Total;
  } else if (numeric && e.text == kDeadCell) {
    e.place = Place::Dead;
  } else if (const auto number = numeric ? CellNumber(e.text) : std::nullopt) {
    e.kind = Kind::Number;
    e.number = *number;
  } else {
    e.kind = CompareNoCase(e.text, "0") < 0 ? Kind::TextBefore : Kind::TextAfter;
  }
  return e;
}

void Recolor(Table& table, int lastColumn, int column) {
  const bool resetLast = lastColumn >= 1 && lastColumn <= table.ColumnCount();
  for (Row& row : table.Rows()) {
    if (row.Bold()) continue;
    if (resetLast) {
      Cell& previous = row.At(lastColumn);
      if (previous.Color != kColorGrey) previous.Color = kColorStandard;
    }
    Cell& sorted = row.At(column);
    if (sorted.Color != kColorGrey) sorted.Color = kColorDarkBlue;
  }
}

void OrderRows(Table& table, int column, std::int32_t order) {
  const bool numeric = IsNumericColumn(table.ColumnAt(column).Header);
  std::vector<Row>& rows = table.Rows();
  std::vector<SortEntry> entries;
  entries.reserve(rows.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    entries.push_back(EntryOf(rows[i], static_cast<std::uint32_t>(i), column, numeric));
  }
  std::stable_sort(entries.begin(), entries.end(), [&](const SortEntry& a, const SortEntry& b) {
    if (a.place != b.place) return a.place < b.place;
    if (a.place != Place::Normal) return false;
    const int c = CompareNormal(a, b);
    return order == kSortAscending ? c < 0 : c > 0;
  });

  const int selectedBefore = table.SelectedRow;
  std::vector<Row> sorted;
  sorted.reserve(rows.size());
  for (std::size_t k = 0; k < entries.size(); ++k) {
    if (static_cast<int>(entries[k].row) + 1 == selectedBefore) {
      table.SelectedRow = static_cast<int>(k) + 1;
    }
    sorted.push_back(std::move(rows[entries[k].row]));
  }
  rows = std::move(sorted);
}

}  // namespace

bool IsNumericColumn(const std::string& header) {
  return header != "Line" && header != "Procedure" && header != "Module" && header != "Project";
}

std::int32_t SortTable(Table& table, SortMemory& memory, std::int32_t columnIndex,
                       std::int32_t SortOrder, bool comparedTable) {
  if (table.RowCount() == 0) return -1;
  if (columnIndex < 1 || columnIndex > table.ColumnCount()) return -1;
  if (SortOrder == kSortToggle) {
    if (!table.Sorted) {
      SortOrder = kSortDescending;
    } else if (columnIndex == memory.LastColumn) {
      SortOrder = 1 - memory.LastSortOrder;
    } else {
      SortOrder =
          table.ColumnAt(columnIndex).Header == "Line ID" ? kSortAscending : memory.LastSortOrder;
    }
  }
  if (!comparedTable) Recolor(table, memory.LastColumn, columnIndex);
  OrderRows(table, columnIndex, SortOrder);
  table.Sorted = true;
  memory.LastSortOrder = SortOrder;
  memory.LastColumn = columnIndex;
  return SortOrder;
}

}  // namespace zol
