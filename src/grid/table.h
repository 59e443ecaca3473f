#pragma once

// The grid as a model: what a table builder produces, what the sort orders,
// what the export and the console print, and what the GUI shows through a
// model of its own.
//
// A table of a large session has a million rows, and only the few dozen on
// screen are ever read by the user. So a cell keeps what its text is made
// of (a count, a time, a share, a bar length, or text kept once in the
// table's own pool) and the text is made when asked. Every reader (the view,
// the export, the console, the sort, the search) goes through the same
// cells, so they all see the same text: CellText makes exactly the text the
// builders used to write (TimeText, PercentText, BarText of cell_text.h and
// bars.h).
//
// Rows are stored in the order they were added; the order shown is a list of
// indices into them, which is all a sort moves. Rows are numbered from 1 in
// the order shown.
//
// Columns are numbered from 1 in creation order; the cells of column 1 are the
// row's own text, so a row's text, bold flag and colour are those of its
// first cell. A column's display position (Position) can differ from its
// creation index, the way a report-style list lets a column be moved.

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/large_block_allocator.h"

namespace zol {

// Colours as the program stores them: red + 256 * green + 65536 * blue, so
// blue stands in the high byte. kColorStandard is the system's window-text
// colour (a system colour reference, high bit set), whatever the theme.
using VbColor = std::uint32_t;
inline constexpr VbColor kColorStandard = 0x80000008;
inline constexpr VbColor kColorGrey = 0x808080;
inline constexpr VbColor kColorBlue = 0xFF0000;
inline constexpr VbColor kColorDarkBlue = 0xA50000;
inline constexpr VbColor kColorGreen = 0x008000;
inline constexpr VbColor kColorDarkRed = 0x000080;

enum class Alignment { Left, Right, Center };

// Which row icons a table uses: none, the module type icons ("5TYPE",
// "SESSION"), or whatever the grid had before (the project tables of timing).
enum class ImageListKind { Nothing, ModuleIcons, Unchanged };

struct Column {
  std::string Header;
  Alignment Align = Alignment::Left;
  // 150 at creation; FitColumnWidths replaces it by the widest text of
  // the column, in characters.
  std::int32_t Width = 150;
};

// A stretch of a table's text pool.
struct TextRef {
  std::uint32_t Offset = 0;
  std::uint32_t Length = 0;
};

// What a cell's text is made of.
enum class CellKind : std::uint8_t {
  Empty,    // ""
  Text,     // text of the table's pool
  Literal,  // a text of static storage ("-", "  ", "100%")
  Count,    // a whole number in decimal
  Time,     // seconds, TimeText
  Percent,  // a fraction, PercentText
  Bar,      // a bar of that many letters "l", BarText
};

// A stored cell: sixteen bytes, no text of its own.
struct CellData {
  union Value {
    double Number;         // Time, Percent
    std::int64_t Integer;  // Count, Bar
    TextRef Text;          // Text
    const char* Literal;   // Literal
  };
  Value V{.Integer = 0};
  CellKind Kind = CellKind::Empty;
  bool Bold = false;
  VbColor Color = kColorStandard;
};

// A cell as read: its text, bold flag and colour.
struct Cell {
  std::string Text;
  bool Bold = false;
  VbColor Color = kColorStandard;

  friend bool operator==(const Cell&, const Cell&) = default;
};

// A row as read, all texts made: for the few places that want a whole row
// (the tests, the difference columns of a compared table).
struct Row {
  std::string Key;  // only the total row has one ("TOTAL")
  std::int32_t Tag = 0;
  std::string Icon;         // small icon key, empty for none
  std::vector<Cell> Cells;  // Cells[0] is column 1, the row's own text

  // The text of column `column` (from 1); empty for a column out of range.
  const std::string& Text(int column) const;
  const std::string& RowText() const { return Text(1); }
  bool Bold() const { return !Cells.empty() && Cells[0].Bold; }
  VbColor Color() const { return Cells.empty() ? kColorStandard : Cells[0].Color; }
};

class Table;

// A row being filled or changed: the table and the row's place in its store.
// It stays valid while rows are added.
class RowRef {
 public:
  RowRef(Table& table, std::uint32_t stored) : table_(&table), stored_(stored) {}

  void SetText(int column, std::string_view text);
  void SetText(int column, TextRef text);
  // `text` must have static storage: a string literal or a constant.
  void SetLiteral(int column, const char* text);
  void SetCount(int column, std::int64_t n);
  void SetTime(int column, double seconds);
  void SetPercent(int column, double fraction);
  void SetBar(int column, std::int32_t length);
  // The whole cell, as another one of the same table holds it.
  void SetCell(int column, const CellData& cell);
  void SetBold(int column, bool bold);
  void SetColor(int column, VbColor color);
  void SetTag(std::int32_t tag);

  const CellData& CellAt(int column) const;
  std::string Text(int column) const;
  std::int32_t Tag() const;

  // The bold flag and colour of the row, which are those of its first cell.
  void SetRowBold(bool bold) { SetBold(1, bold); }
  void SetRowColor(VbColor color) { SetColor(1, color); }

 private:
  CellData& Mutable(int column);
  Table* table_;
  std::uint32_t stored_;
};

class Table {
 public:
  // Removes all rows, or all columns and rows.
  void ClearRows();
  void Clear();

  // Appends a column and returns its index, from 1. It is displayed last.
  int AddColumn(std::string header, Alignment align = Alignment::Left, std::int32_t width = 150);
  int ColumnCount() const { return static_cast<int>(columns_.size()); }
  Column& ColumnAt(int column);
  const Column& ColumnAt(int column) const;
  // The first column with this header (exact text), 0 if none.
  int FindColumn(std::string_view header) const;

  // Moves `column` to display position `position` (from 1): the columns in
  // between shift by one, as when a list's column is dragged there.
  void SetPosition(int column, int position);
  int Position(int column) const;
  // The column indices in display order.
  const std::vector<int>& GetHeadersPositions() const { return positions_; }

  // Appends a row with its text in column 1; it is shown last.
  RowRef AddRow(std::string_view key, std::string_view text, std::string_view icon = {});
  int RowCount() const { return static_cast<int>(order_.size()); }
  // Room for `rows` rows of the present columns, and `textBytes` of their
  // texts, so that a long table is filled in place.
  void Reserve(std::size_t rows, std::size_t textBytes = 0);
  // Row `row` (from 1, in the order shown) for changes.
  RowRef EditRow(int row);

  // Text kept once for many cells (a module's name on each of its lines).
  TextRef AddText(std::string_view text);

  // Reading row `row` (from 1, in the order shown), column `column` (from 1).
  const CellData& CellAt(int row, int column) const;
  std::string Text(int row, int column) const;
  // The text without a copy where the cell holds text; otherwise it is made
  // into `scratch`.
  std::string_view TextView(int row, int column, std::string& scratch) const;
  bool Bold(int row, int column) const { return CellAt(row, column).Bold; }
  VbColor Color(int row, int column) const { return CellAt(row, column).Color; }
  bool RowBold(int row) const { return Bold(row, 1); }
  std::int32_t Tag(int row) const;
  std::string_view Key(int row) const;
  std::string_view Icon(int row) const;
  // The row whose key is `key`, from 1; 0 if none.
  int FindRow(std::string_view key) const;

  // The texts the cells hold, shared: they stay as they are for as long as
  // they are held, whatever is later added to the table (which then writes
  // to a copy of its own).
  std::shared_ptr<const std::string> Texts() const { return pool_; }

  // The text of a cell of this table, and the text it holds without a copy
  // (empty for a cell whose text is made: count, time, share, bar).
  std::string CellText(const CellData& cell) const;
  std::string_view StoredText(const CellData& cell) const;

  // Row `row` with all its texts made.
  Row RowAt(int row) const;
  // Every row so, in the order shown: for small tables and tests.
  std::vector<Row> Rows() const;

  // The place in the store of row `row` (from 1, in the order shown), and
  // the cells of a stored row.
  std::uint32_t StoredRow(int row) const;
  const CellData& StoredCell(std::uint32_t stored, int column) const;
  // The cells of column `column` (from 1), in the order the rows are stored.
  std::span<const CellData> StoredColumn(int column) const;
  // Shows the stored rows in the order `stored` (a permutation of the
  // shown order's entries).
  void SetOrder(std::vector<std::uint32_t> stored);
  const std::vector<std::uint32_t>& Order() const { return order_; }

  // The list's own sort state: whether it has been sorted once.
  bool Sorted = false;
  // The selected row (from 1), 0 for none.
  int SelectedRow = 0;
  ImageListKind ImageList = ImageListKind::Nothing;

 private:
  friend class RowRef;
  struct StoredRowData {
    TextRef Key;
    TextRef Icon;
    std::int32_t Tag = 0;
  };
  void CheckColumn(int column) const;
  CellData& MutableCell(std::uint32_t stored, int column);

  std::vector<Column> columns_;
  std::vector<int> positions_;
  std::vector<StoredRowData> rows_;
  // The cells of column c, stored row r, at cells_[c - 1][r]: one array per
  // column, so that a sort, the shares and the widths, which each walk one
  // or two columns of a million rows, read those columns' cells end to end
  // instead of one cell in every row's stretch.
  using CellColumn = std::vector<CellData, LargeBlockAllocator<CellData>>;
  std::vector<CellColumn> cells_;
  std::vector<std::uint32_t> order_;
  // The texts, written only while nobody else holds them.
  std::string& WritableTexts();
  std::string_view TextsView() const {
    return pool_ ? std::string_view(*pool_) : std::string_view();
  }
  std::shared_ptr<std::string> pool_ = std::make_shared<std::string>();
};

// The key and the first-column text of the total row.
inline constexpr std::string_view kTotalKey = "TOTAL";

// Throws std::out_of_range for `what` `index` outside 1..count.
[[noreturn]] void OutOfRange(const char* what, int index, int count);

// The accessors that a million-row build and sort call for every cell.

inline void Table::CheckColumn(int column) const {
  if (column < 1 || column > ColumnCount()) OutOfRange("column", column, ColumnCount());
}

inline std::uint32_t Table::StoredRow(int row) const {
  if (row < 1 || row > RowCount()) OutOfRange("row", row, RowCount());
  return order_[static_cast<std::size_t>(row - 1)];
}

inline const CellData& Table::StoredCell(std::uint32_t stored, int column) const {
  CheckColumn(column);
  return cells_[static_cast<std::size_t>(column - 1)][stored];
}

inline std::span<const CellData> Table::StoredColumn(int column) const {
  CheckColumn(column);
  return cells_[static_cast<std::size_t>(column - 1)];
}

inline CellData& Table::MutableCell(std::uint32_t stored, int column) {
  CheckColumn(column);
  return cells_[static_cast<std::size_t>(column - 1)][stored];
}

inline CellData& RowRef::Mutable(int column) {
  return table_->MutableCell(stored_, column);
}

inline const CellData& RowRef::CellAt(int column) const {
  return table_->StoredCell(stored_, column);
}

inline void RowRef::SetLiteral(int column, const char* text) {
  CellData& cell = Mutable(column);
  cell.Kind = CellKind::Literal;
  cell.V.Literal = text;
}

inline void RowRef::SetCount(int column, std::int64_t n) {
  CellData& cell = Mutable(column);
  cell.Kind = CellKind::Count;
  cell.V.Integer = n;
}

inline void RowRef::SetTime(int column, double seconds) {
  CellData& cell = Mutable(column);
  cell.Kind = CellKind::Time;
  cell.V.Number = seconds;
}

inline void RowRef::SetPercent(int column, double fraction) {
  CellData& cell = Mutable(column);
  cell.Kind = CellKind::Percent;
  cell.V.Number = fraction;
}

inline void RowRef::SetBold(int column, bool bold) {
  Mutable(column).Bold = bold;
}

inline void RowRef::SetColor(int column, VbColor color) {
  Mutable(column).Color = color;
}

}  // namespace zol
