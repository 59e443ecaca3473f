#include "ui/grid_table_model.h"

#include <QColor>
#include <QFontMetricsF>
#include <algorithm>

#include "ui/icons.h"
#include "ui/qt_text.h"

namespace zol {

QVariant gridColor(VbColor color) {
  if (color & 0x80000000u) return {};
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                static_cast<int>((color >> 16) & 0xFF));
}

QFont barsFont() {
  // A bar is a run of bold letters "l" of the grid's font, set close enough
  // that their strokes touch and read as one bar.
  static const QFont font = [] {
    QFont f;
    f.setBold(true);
    const QFontMetricsF metrics(f);
    const double ink = metrics.boundingRect(QChar('l')).width();
    const double advance = metrics.horizontalAdvance(QChar('l'));
    if (ink > 0 && advance > ink) f.setLetterSpacing(QFont::AbsoluteSpacing, ink - advance + 0.5);
    return f;
  }();
  return font;
}

void GridTableModel::setTable(Table table) {
  beginResetModel();
  table_ = std::move(table);
  filtered_ = false;
  shown_.clear();
  barsColumn_ = 0;
  for (int c = 1; c <= table_.ColumnCount(); ++c) {
    if (table_.ColumnAt(c).Header.find("Bars") != std::string::npos) barsColumn_ = c;
  }
  endResetModel();
}

void GridTableModel::rowsReordered() {
  emit layoutAboutToBeChanged();
  emit layoutChanged();
}

void GridTableModel::showRows(std::vector<int> rows) {
  beginResetModel();
  shown_.clear();
  for (const int r : rows) {
    if (r >= 1 && r <= table_.RowCount()) shown_.push_back(r);
  }
  std::sort(shown_.begin(), shown_.end());
  shown_.erase(std::unique(shown_.begin(), shown_.end()), shown_.end());
  filtered_ = true;
  endResetModel();
}

void GridTableModel::showAllRows() {
  if (!filtered_) return;
  beginResetModel();
  filtered_ = false;
  shown_.clear();
  endResetModel();
}

int GridTableModel::tableRow(int modelRow) const {
  if (modelRow < 0 || modelRow >= rowCount()) return -1;
  return filtered_ ? shown_[static_cast<std::size_t>(modelRow)] : modelRow + 1;
}

int GridTableModel::modelRow(int tableRow) const {
  if (tableRow < 1 || tableRow > table_.RowCount()) return -1;
  if (!filtered_) return tableRow - 1;
  const auto at = std::lower_bound(shown_.begin(), shown_.end(), tableRow);
  if (at == shown_.end() || *at != tableRow) return -1;
  return static_cast<int>(at - shown_.begin());
}

int GridTableModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return 0;
  return filtered_ ? static_cast<int>(shown_.size()) : table_.RowCount();
}

int GridTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : table_.ColumnCount();
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
  const int tableRow = index.isValid() ? this->tableRow(index.row()) : -1;
  if (tableRow < 1 || index.column() >= table_.ColumnCount()) return {};
  const int column = index.column() + 1;
  // Only the cells on screen are asked for: their texts are made here.
  switch (role) {
    case Qt::DisplayRole:
      return Q(table_.Text(tableRow, column));
    case Qt::ToolTipRole:
      if (column == barsColumn_) return {};
      return plainToolTip(Q(table_.Text(tableRow, column)));
    case Qt::FontRole:
      if (column == barsColumn_) return barsFont();
      if (table_.Bold(tableRow, column)) {
        QFont bold;
        bold.setBold(true);
        return bold;
      }
      return {};
    case Qt::ForegroundRole:
      return gridColor(table_.Color(tableRow, column));
    case Qt::TextAlignmentRole: {
      const Alignment a = table_.ColumnAt(column).Align;
      const Qt::Alignment h = a == Alignment::Right    ? Qt::AlignRight
                              : a == Alignment::Center ? Qt::AlignHCenter
                                                       : Qt::AlignLeft;
      return QVariant::fromValue(h | Qt::AlignVCenter);
    }
    case Qt::DecorationRole:
      if (column == 1) {
        const std::string_view icon = table_.Icon(tableRow);
        if (!icon.empty()) return zolIcon(std::string(icon));
      }
      return {};
    default:
      return {};
  }
}

QVariant GridTableModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || section < 0 || section >= table_.ColumnCount()) {
    return QAbstractTableModel::headerData(section, orientation, role);
  }
  const Column& column = table_.ColumnAt(section + 1);
  if (role == Qt::DisplayRole) return Q(column.Header);
  if (role == Qt::TextAlignmentRole) {
    const Qt::Alignment h = column.Align == Alignment::Right    ? Qt::AlignRight
                            : column.Align == Alignment::Center ? Qt::AlignHCenter
                                                                : Qt::AlignLeft;
    return QVariant::fromValue(h | Qt::AlignVCenter);
  }
  return {};
}

}  // namespace zol
