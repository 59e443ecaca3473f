#include "grid/table.h"

#include <algorithm>
#include <stdexcept>

namespace zol {

namespace {

const std::string kEmpty;

void CheckIndex(int index, int count, const char* what) {
  if (index < 1 || index > count) {
    throw std::out_of_range(std::string(what) + " " + std::to_string(index) + " out of range 1.." +
                            std::to_string(count));
  }
}

}  // namespace

Cell& Row::At(int column) {
  if (column < 1) throw std::out_of_range("column " + std::to_string(column) + " below 1");
  if (static_cast<std::size_t>(column) > Cells.size()) Cells.resize(column);
  return Cells[column - 1];
}

const std::string& Row::Text(int column) const {
  if (column < 1 || static_cast<std::size_t>(column) > Cells.size()) return kEmpty;
  return Cells[column - 1].Text;
}

void Table::ClearRows() {
  rows_.clear();
  Sorted = false;
  SelectedRow = 0;
}

void Table::Clear() {
  ClearRows();
  columns_.clear();
  order_.clear();
}

int Table::AddColumn(std::string header, Alignment align, std::int32_t width) {
  columns_.push_back({std::move(header), align, width});
  const int index = ColumnCount();
  order_.push_back(index);
  return index;
}

Column& Table::ColumnAt(int column) {
  CheckIndex(column, ColumnCount(), "column");
  return columns_[column - 1];
}

const Column& Table::ColumnAt(int column) const {
  CheckIndex(column, ColumnCount(), "column");
  return columns_[column - 1];
}

int Table::FindColumn(std::string_view header) const {
  for (int c = 1; c <= ColumnCount(); ++c) {
    if (columns_[c - 1].Header == header) return c;
  }
  return 0;
}

void Table::SetPosition(int column, int position) {
  CheckIndex(column, ColumnCount(), "column");
  position = std::clamp(position, 1, ColumnCount());
  order_.erase(std::find(order_.begin(), order_.end(), column));
  order_.insert(order_.begin() + (position - 1), column);
}

int Table::Position(int column) const {
  CheckIndex(column, ColumnCount(), "column");
  return static_cast<int>(std::find(order_.begin(), order_.end(), column) - order_.begin()) + 1;
}

Row& Table::AddRow(std::string key, std::string text, std::string icon) {
  Row& row = rows_.emplace_back();
  row.Key = std::move(key);
  row.Icon = std::move(icon);
  row.Cells.resize(std::max<std::size_t>(columns_.size(), 1));
  row.Cells[0].Text = std::move(text);
  return row;
}

Row& Table::RowAt(int row) {
  CheckIndex(row, RowCount(), "row");
  return rows_[row - 1];
}

const Row& Table::RowAt(int row) const {
  CheckIndex(row, RowCount(), "row");
  return rows_[row - 1];
}

const Row* Table::FindRow(std::string_view key) const {
  for (const Row& r : rows_) {
    if (r.Key == key) return &r;
  }
  return nullptr;
}

}  // namespace zol
