#pragma once

// The legend of a pie as a list beside it: one row per slice with its colour,
// its name, its value and its share of the whole. A list scrolls where the
// chart's own legend would be cut off, and long names stay readable in full
// in the tooltip.

#include <QAbstractTableModel>
#include <QColor>
#include <vector>

#include "grid/chart.h"

namespace zol {

struct LegendEntry {
  QString Name;
  double Value = 0;
  QColor Colour;
};

class ChartLegendModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum ColumnIndex { kName = 0, kValue = 1, kShare = 2, kColumns = 3 };

  using QAbstractTableModel::QAbstractTableModel;

  void setEntries(std::vector<LegendEntry> entries);
  const std::vector<LegendEntry>& entries() const { return entries_; }
  // The entry's share of the sum of all values, in percent (0 when the sum
  // is not positive).
  double share(int row) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
  std::vector<LegendEntry> entries_;
  double total_ = 0;
};

// A chart value as the chart shows it: up to six significant digits, never
// in exponent form.
QString chartValueText(double value);

}  // namespace zol
