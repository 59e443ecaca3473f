#pragma once

// A built grid (zol::Table) as a Qt model. The model owns the table it shows:
// a new build is swapped in whole, so the view never shows a half-built
// table, and only the rows on screen are ever turned into Qt texts, so a table
// of hundreds of thousands of lines costs nothing to show.

#include <QAbstractTableModel>
#include <QFont>
#include <vector>

#include "grid/table.h"

namespace zol {

class GridTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  // Takes a new table in place of the one shown.
  void setTable(Table table);
  const Table& table() const { return table_; }
  // For the sort and the column moves, which work on the table itself; call
  // rowsReordered after a sort.
  Table& mutableTable() { return table_; }
  void rowsReordered();

  // Shows only the table's rows `rows` (from 1, in table order); showAllRows
  // shows every row again. A new table shows all of its rows.
  void showRows(std::vector<int> rows);
  void showAllRows();
  bool filtered() const { return filtered_; }
  // The table row (from 1) of a model row (from 0), and back; -1 for a table
  // row that isn't shown.
  int tableRow(int modelRow) const;
  int modelRow(int tableRow) const;

  // The bars column (its header holds "Bars"), 0 for none.
  int barsColumn() const { return barsColumn_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  Table table_;
  int barsColumn_ = 0;
  bool filtered_ = false;
  std::vector<int> shown_;
};

// The font of the bars column.
QFont barsFont();

// A colour of the grids (red + 256 green + 65536 blue, or the standard text
// colour) for Qt; nothing for the standard colour, so the theme's text colour
// applies.
QVariant gridColor(VbColor color);

}  // namespace zol
