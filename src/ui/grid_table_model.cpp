#include "ui/grid_table_model.h"

#include <QColor>
#include <QFontMetricsF>

#include "ui/icons.h"
#include "ui/qt_text.h"

namespace zol {

QVariant GridColor(VbColor color) {
  if (color & 0x80000000u) return {};
  return QColor(static_cast<int>(color & 0xFF), static_cast<int>((color >> 8) & 0xFF),
                static_cast<int>((color >> 16) & 0xFF));
}

QFont BarsFont() {
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

void GridTableModel::SetTable(Table table) {
  beginResetModel();
  table_ = std::move(table);
  barsColumn_ = 0;
  for (int c = 1; c <= table_.ColumnCount(); ++c) {
    if (table_.ColumnAt(c).Header.find("Bars") != std::string::npos) barsColumn_ = c;
  }
  endResetModel();
}

void GridTableModel::RowsReordered() {
  emit layoutAboutToBeChanged();
  emit layoutChanged();
}

int GridTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : table_.RowCount();
}

int GridTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : table_.ColumnCount();
}

QVariant GridTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= table_.RowCount() ||
      index.column() >= table_.ColumnCount()) {
    return {};
  }
  const Row& row = table_.Rows()[static_cast<std::size_t>(index.row())];
  const int column = index.column() + 1;
  const std::size_t cell = static_cast<std::size_t>(index.column());
  switch (role) {
    case Qt::DisplayRole:
      return cell < row.Cells.size() ? Q(row.Cells[cell].Text) : QString();
    case Qt::ToolTipRole:
      if (column == barsColumn_ || cell >= row.Cells.size()) return {};
      return PlainToolTip(Q(row.Cells[cell].Text));
    case Qt::FontRole:
      if (column == barsColumn_) return BarsFont();
      if (cell < row.Cells.size() && row.Cells[cell].Bold) {
        QFont bold;
        bold.setBold(true);
        return bold;
      }
      return {};
    case Qt::ForegroundRole:
      return cell < row.Cells.size() ? GridColor(row.Cells[cell].Color) : QVariant();
    case Qt::TextAlignmentRole: {
      const Alignment a = table_.ColumnAt(column).Align;
      const Qt::Alignment h = a == Alignment::Right    ? Qt::AlignRight
                              : a == Alignment::Center ? Qt::AlignHCenter
                                                       : Qt::AlignLeft;
      return QVariant::fromValue(h | Qt::AlignVCenter);
    }
    case Qt::DecorationRole:
      if (column == 1 && !row.Icon.empty()) return ZolIcon(row.Icon);
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
