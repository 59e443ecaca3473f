#include "grid/grid_sort.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

#include "base/cp1252.h"
#include "base/text.h"

namespace zol {

namespace {

// The text of a dead row's value cells.
constexpr std::string_view kDeadCell = "  ";

enum class Place { Normal = 0, Dead = 1, Total = 2 };

struct SortKey {
  Place place = Place::Normal;
  std::optional<double> number;
  std::string_view text;
};

std::optional<double> CellNumber(std::string_view text) {
  if (!text.empty() && text.back() == '%') text.remove_suffix(1);
  if (text.empty()) return std::nullopt;
  return ParseNumberText(text);
}

int CompareNoCase(std::string_view a, std::string_view b) {
  const std::size_t n = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < n; ++i) {
    const auto ca = static_cast<unsigned char>(LowerCase1252(a[i]));
    const auto cb = static_cast<unsigned char>(LowerCase1252(b[i]));
    if (ca != cb) return ca < cb ? -1 : 1;
  }
  return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

// Order of two normal keys, ascending: numbers by value, texts by text, and
// a text against a number as it stands against the digit "0".
int CompareNormal(const SortKey& a, const SortKey& b) {
  if (a.number && b.number) return *a.number < *b.number ? -1 : (*b.number < *a.number ? 1 : 0);
  if (!a.number && !b.number) return CompareNoCase(a.text, b.text);
  if (a.number) return CompareNoCase(b.text, "0") < 0 ? 1 : -1;
  return CompareNoCase(a.text, "0") < 0 ? -1 : 1;
}

SortKey KeyOf(const Row& row, int column, bool numeric) {
  SortKey key;
  key.text = row.Text(column);
  if (row.Bold()) {
    key.place = Place::Total;
  } else if (numeric) {
    if (key.text == kDeadCell) {
      key.place = Place::Dead;
    } else {
      key.number = CellNumber(key.text);
    }
  }
  return key;
}

void Recolor(Table& table, int lastColumn, int column) {
  for (Row& row : table.Rows()) {
    if (row.Bold()) continue;
    if (lastColumn >= 1 && lastColumn <= table.ColumnCount()) {
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
  std::vector<SortKey> keys;
  keys.reserve(rows.size());
  for (const Row& row : rows) keys.push_back(KeyOf(row, column, numeric));

  std::vector<std::size_t> index(rows.size());
  std::iota(index.begin(), index.end(), 0);
  std::stable_sort(index.begin(), index.end(), [&](std::size_t i, std::size_t j) {
    const SortKey& a = keys[i];
    const SortKey& b = keys[j];
    if (a.place != b.place) return a.place < b.place;
    if (a.place != Place::Normal) return false;
    const int c = CompareNormal(a, b);
    return order == kSortAscending ? c < 0 : c > 0;
  });

  const int selectedBefore = table.SelectedRow;
  std::vector<Row> sorted;
  sorted.reserve(rows.size());
  for (std::size_t k = 0; k < index.size(); ++k) {
    if (static_cast<int>(index[k]) + 1 == selectedBefore)
      table.SelectedRow = static_cast<int>(k) + 1;
    sorted.push_back(std::move(rows[index[k]]));
  }
  rows = std::move(sorted);
}

}  // namespace

bool IsNumericColumn(const std::string& header) {
  return header != "Line" && header != "Procedure" && header != "Module" && header != "Project";
}

std::int32_t lvValues_Sort(Table& table, SortMemory& memory, std::int32_t tColumnIndex,
                           std::int32_t SortOrder, bool comparedTable) {
  if (table.RowCount() == 0) return -1;
  if (tColumnIndex < 1 || tColumnIndex > table.ColumnCount()) return -1;
  if (SortOrder == kSortToggle) {
    if (!table.Sorted) {
      SortOrder = kSortDescending;
    } else if (tColumnIndex == memory.LastColumn) {
      SortOrder = 1 - memory.LastSortOrder;
    } else {
      SortOrder =
          table.ColumnAt(tColumnIndex).Header == "Line ID" ? kSortAscending : memory.LastSortOrder;
    }
  }
  if (!comparedTable) Recolor(table, memory.LastColumn, tColumnIndex);
  OrderRows(table, tColumnIndex, SortOrder);
  table.Sorted = true;
  memory.LastSortOrder = SortOrder;
  memory.LastColumn = tColumnIndex;
  return SortOrder;
}

}  // namespace zol
