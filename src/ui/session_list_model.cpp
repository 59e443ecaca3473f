#include "ui/session_list_model.h"

#include "ui/icons.h"
#include "ui/qt_text.h"

namespace zol {

void SessionListModel::setRows(std::vector<SessionListRow> rows) {
  beginResetModel();
  rows_ = std::move(rows);
  endResetModel();
}

int SessionListModel::rowOf(const std::string& key) const {
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    if (rows_[i].Key == key) return static_cast<int>(i);
  }
  return -1;
}

int SessionListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int SessionListModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(kSessionListHeaders.size());
}

QVariant SessionListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
  const SessionListRow& row = rows_[static_cast<std::size_t>(index.row())];
  const std::string& text = row.Columns[static_cast<std::size_t>(index.column())];
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return index.column() == 4 ? QPath(text) : Q(text);
    case Qt::ToolTipRole:
      return index.column() == 4 ? QVariant(plainToolTip(QPath(text))) : QVariant();
    case Qt::CheckStateRole:
      if (index.column() == 0) return row.Checked ? Qt::Checked : Qt::Unchecked;
      return {};
    case Qt::DecorationRole:
      if (index.column() == 0) return zolIcon(row.Key[0] == 'G' ? "GROUP" : "SESSION");
      return {};
    case Qt::TextAlignmentRole: {
      // Date, project and version stand to the right, as the list was laid out.
      const bool right = index.column() >= 1 && index.column() <= 3;
      return QVariant::fromValue(Qt::AlignVCenter | (right ? Qt::AlignRight : Qt::AlignLeft));
    }
    default:
      return {};
  }
}

QVariant SessionListModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 ||
      section >= columnCount()) {
    return {};
  }
  return Q(kSessionListHeaders[static_cast<std::size_t>(section)]);
}

Qt::ItemFlags SessionListModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (index.column() == 0) f |= Qt::ItemIsUserCheckable | Qt::ItemIsEditable;
  return f;
}

bool SessionListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid) || index.column() != 0) return false;
  const QString key = QString::fromStdString(rows_[static_cast<std::size_t>(index.row())].Key);
  if (role == Qt::CheckStateRole) {
    emit checkToggled(key, value.toInt() == Qt::Checked);
    return true;
  }
  if (role == Qt::EditRole) {
    emit renameRequested(key, value.toString());
    return true;
  }
  return false;
}

}  // namespace zol
