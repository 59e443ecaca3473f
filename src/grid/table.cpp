#include "grid/table.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

#include "grid/bars.h"
#include "grid/cell_text.h"

namespace zol {

namespace {

const std::string kEmpty;

}  // namespace

void OutOfRange(const char* what, int index, int count) {
  throw std::out_of_range(std::string(what) + " " + std::to_string(index) + " out of range 1.." +
                          std::to_string(count));
}

const std::string& Row::Text(int column) const {
  if (column < 1 || static_cast<std::size_t>(column) > Cells.size()) return kEmpty;
  return Cells[column - 1].Text;
}

// --- RowRef ---

void RowRef::SetText(int column, std::string_view text) {
  SetText(column, table_->AddText(text));
}

void RowRef::SetText(int column, TextRef text) {
  CellData& cell = Mutable(column);
  cell.Kind = text.Length == 0 ? CellKind::Empty : CellKind::Text;
  cell.V.Text = text;
}

void RowRef::SetBar(int column, std::int32_t length) {
  CellData& cell = Mutable(column);
  cell.Kind = CellKind::Bar;
  cell.V.Integer = std::clamp(length, 0, kMaxBarLength);
}

void RowRef::SetCell(int column, const CellData& cell) {
  Mutable(column) = cell;
}

void RowRef::SetTag(std::int32_t tag) {
  table_->rows_[stored_].Tag = tag;
}

std::string RowRef::Text(int column) const {
  return table_->CellText(CellAt(column));
}

std::int32_t RowRef::Tag() const {
  return table_->rows_[stored_].Tag;
}

// --- Table ---

void Table::ClearRows() {
  rows_.clear();
  for (CellColumn& column : cells_) column.clear();
  order_.clear();
  pool_ = std::make_shared<std::string>();
  Sorted = false;
  SelectedRow = 0;
}

void Table::Clear() {
  ClearRows();
  cells_.clear();
  columns_.clear();
  positions_.clear();
}

int Table::AddColumn(std::string header, Alignment align, std::int32_t width) {
  columns_.push_back({std::move(header), align, width});
  const int index = ColumnCount();
  positions_.push_back(index);
  // Rows already there get an empty cell in the new column.
  cells_.emplace_back(rows_.size());
  return index;
}

Column& Table::ColumnAt(int column) {
  CheckColumn(column);
  return columns_[column - 1];
}

const Column& Table::ColumnAt(int column) const {
  CheckColumn(column);
  return columns_[column - 1];
}

int Table::FindColumn(std::string_view header) const {
  for (int c = 1; c <= ColumnCount(); ++c) {
    if (columns_[c - 1].Header == header) return c;
  }
  return 0;
}

void Table::SetPosition(int column, int position) {
  CheckColumn(column);
  position = std::clamp(position, 1, ColumnCount());
  positions_.erase(std::find(positions_.begin(), positions_.end(), column));
  positions_.insert(positions_.begin() + (position - 1), column);
}

int Table::Position(int column) const {
  CheckColumn(column);
  return static_cast<int>(std::find(positions_.begin(), positions_.end(), column) -
                          positions_.begin()) +
         1;
}

TextRef Table::AddText(std::string_view text) {
  if (text.empty()) return {};
  std::string& pool = WritableTexts();
  if (pool.size() + text.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("the texts of a table pass 4 GB");
  }
  const TextRef ref{static_cast<std::uint32_t>(pool.size()),
                    static_cast<std::uint32_t>(text.size())};
  pool.append(text);
  return ref;
}

RowRef Table::AddRow(std::string_view key, std::string_view text, std::string_view icon) {
  if (rows_.size() >= std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("a table of more than 4 billion rows");
  }
  if (columns_.empty()) throw std::logic_error("a row added to a table without columns");
  const auto stored = static_cast<std::uint32_t>(rows_.size());
  rows_.push_back({AddText(key), AddText(icon), 0});
  for (CellColumn& column : cells_) column.emplace_back();
  order_.push_back(stored);
  RowRef row(*this, stored);
  row.SetText(1, text);
  return row;
}

void Table::Reserve(std::size_t rows, std::size_t textBytes) {
  rows_.reserve(rows);
  order_.reserve(rows);
  for (CellColumn& column : cells_) column.reserve(rows);
  std::string& pool = WritableTexts();
  pool.reserve(pool.size() + textBytes);
}

std::string& Table::WritableTexts() {
  if (!pool_) {
    pool_ = std::make_shared<std::string>();
  } else if (pool_.use_count() > 1) {
    pool_ = std::make_shared<std::string>(*pool_);
  }
  return *pool_;
}

RowRef Table::EditRow(int row) {
  return RowRef(*this, StoredRow(row));
}

const CellData& Table::CellAt(int row, int column) const {
  return StoredCell(StoredRow(row), column);
}

std::string_view Table::StoredText(const CellData& cell) const {
  switch (cell.Kind) {
    case CellKind::Text:
      return TextsView().substr(cell.V.Text.Offset, cell.V.Text.Length);
    case CellKind::Literal:
      return cell.V.Literal;
    default:
      return {};
  }
}

std::string Table::CellText(const CellData& cell) const {
  switch (cell.Kind) {
    case CellKind::Empty:
      return {};
    case CellKind::Text:
    case CellKind::Literal:
      return std::string(StoredText(cell));
    case CellKind::Count:
      return std::to_string(cell.V.Integer);
    case CellKind::Time:
      return TimeText(cell.V.Number);
    case CellKind::Percent:
      return PercentText(cell.V.Number);
    case CellKind::Bar:
      return BarText(static_cast<std::int32_t>(cell.V.Integer));
  }
  return {};
}

std::string Table::Text(int row, int column) const {
  return CellText(CellAt(row, column));
}

std::string_view Table::TextView(int row, int column, std::string& scratch) const {
  const CellData& cell = CellAt(row, column);
  if (cell.Kind == CellKind::Text || cell.Kind == CellKind::Literal) return StoredText(cell);
  if (cell.Kind == CellKind::Empty) return {};
  scratch = CellText(cell);
  return scratch;
}

std::int32_t Table::Tag(int row) const {
  return rows_[StoredRow(row)].Tag;
}

std::string_view Table::Key(int row) const {
  const TextRef key = rows_[StoredRow(row)].Key;
  return TextsView().substr(key.Offset, key.Length);
}

std::string_view Table::Icon(int row) const {
  const TextRef icon = rows_[StoredRow(row)].Icon;
  return TextsView().substr(icon.Offset, icon.Length);
}

int Table::FindRow(std::string_view key) const {
  for (int r = 1; r <= RowCount(); ++r) {
    if (Key(r) == key) return r;
  }
  return 0;
}

Row Table::RowAt(int row) const {
  Row r;
  r.Key = std::string(Key(row));
  r.Tag = Tag(row);
  r.Icon = std::string(Icon(row));
  r.Cells.reserve(columns_.size());
  for (int c = 1; c <= ColumnCount(); ++c) {
    const CellData& cell = CellAt(row, c);
    r.Cells.push_back({CellText(cell), cell.Bold, cell.Color});
  }
  return r;
}

std::vector<Row> Table::Rows() const {
  std::vector<Row> rows;
  rows.reserve(order_.size());
  for (int r = 1; r <= RowCount(); ++r) rows.push_back(RowAt(r));
  return rows;
}

void Table::SetOrder(std::vector<std::uint32_t> stored) {
  if (stored.size() != order_.size()) {
    throw std::invalid_argument("a new row order of " + std::to_string(stored.size()) +
                                " rows for a table of " + std::to_string(order_.size()));
  }
  order_ = std::move(stored);
}

}  // namespace zol
