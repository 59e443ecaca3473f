#include "ui/chart_legend_model.h"

#include <cmath>

#include "ui/qt_text.h"

namespace zol {

QString chartValueText(double value) {
  if (!std::isfinite(value)) return QString();
  const double magnitude = std::fabs(value);
  if (magnitude >= 1e6 || magnitude == 0) return QString::number(value, 'f', 0);
  // Six significant digits in fixed notation, trailing zeros dropped.
  const int decimals = std::max(0, 5 - static_cast<int>(std::floor(std::log10(magnitude))));
  QString text = QString::number(value, 'f', decimals);
  if (text.contains('.')) {
    while (text.endsWith('0')) text.chop(1);
    if (text.endsWith('.')) text.chop(1);
  }
  return text;
}

void ChartLegendModel::setEntries(std::vector<LegendEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  total_ = 0;
  for (const LegendEntry& e : entries_) {
    if (std::isfinite(e.Value) && e.Value > 0) total_ += e.Value;
  }
  endResetModel();
}

double ChartLegendModel::share(int row) const {
  if (row < 0 || row >= rowCount() || total_ <= 0) return 0;
  const double v = entries_[static_cast<std::size_t>(row)].Value;
  return std::isfinite(v) && v > 0 ? 100.0 * v / total_ : 0;
}

int ChartLegendModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

int ChartLegendModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant ChartLegendModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const LegendEntry& e = entries_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case Qt::DisplayRole:
      if (index.column() == kName) return e.Name;
      if (index.column() == kValue) return chartValueText(e.Value);
      return QString::number(share(index.row()), 'f', 1) + "%";
    case Qt::ToolTipRole:
      return plainToolTip(QString("%1\n%2 (%3%)")
                              .arg(e.Name, chartValueText(e.Value))
                              .arg(share(index.row()), 0, 'f', 1));
    case Qt::DecorationRole:
      return index.column() == kName ? QVariant(e.Colour) : QVariant();
    case Qt::TextAlignmentRole:
      return QVariant::fromValue((index.column() == kName ? Qt::AlignLeft : Qt::AlignRight) |
                                 Qt::AlignVCenter);
    default:
      return {};
  }
}

QVariant ChartLegendModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
      section >= kColumns) {
    return QAbstractTableModel::headerData(section, orientation, role);
  }
  static const char* const kHeaders[] = {"Item", "Value", "Share"};
  return tr(kHeaders[section]);
}

}  // namespace zol
