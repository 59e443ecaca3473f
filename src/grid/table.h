#pragma once

// The grid as a model: what a table builder produces, what the sort orders,
// what the export and the console print, and what the GUI shows through a
// model of its own. Cell texts are the data: later passes (percentages,
// totals, sorting, export) read them back, so builders write them exactly as
// they are to be seen.
//
// Columns are numbered from 1 in creation order; the cells of column 1 are the
// row's own text, so a row's text, bold flag and colour are those of its
// first cell. A column's display position (Position) can differ from its
// creation index, the way a report-style list lets a column be moved.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

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

struct Cell {
  std::string Text;
  bool Bold = false;
  VbColor Color = kColorStandard;
};

struct Row {
  std::string Key;  // only the total row has one ("TOTAL")
  std::int32_t Tag = 0;
  std::string Icon;         // small icon key, empty for none
  std::vector<Cell> Cells;  // Cells[0] is column 1, the row's own text

  // The cell of column `column` (from 1); a missing cell is made empty.
  Cell& At(int column);
  // The text of column `column`; empty for a cell never set.
  const std::string& Text(int column) const;

  const std::string& RowText() const { return Text(1); }
  bool Bold() const { return !Cells.empty() && Cells[0].Bold; }
  VbColor Color() const { return Cells.empty() ? kColorStandard : Cells[0].Color; }
  // The bold flag and colour of the row, which are those of its first cell.
  void SetBold(bool bold) { At(1).Bold = bold; }
  void SetColor(VbColor color) { At(1).Color = color; }
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
  const std::vector<int>& GetHeadersPositions() const { return order_; }

  // Appends a row with its text in column 1 and cells for every column.
  Row& AddRow(std::string key, std::string text, std::string icon = {});
  int RowCount() const { return static_cast<int>(rows_.size()); }
  Row& RowAt(int row);  // from 1
  const Row& RowAt(int row) const;
  std::vector<Row>& Rows() { return rows_; }
  const std::vector<Row>& Rows() const { return rows_; }
  // The row with this key, or nullptr.
  const Row* FindRow(std::string_view key) const;

  // The list's own sort state: whether it has been sorted once.
  bool Sorted = false;
  // The selected row (from 1), 0 for none.
  int SelectedRow = 0;
  ImageListKind ImageList = ImageListKind::Nothing;

 private:
  std::vector<Column> columns_;
  std::vector<int> order_;
  std::vector<Row> rows_;
};

// The key and the first-column text of the total row.
inline constexpr std::string_view kTotalKey = "TOTAL";

}  // namespace zol
