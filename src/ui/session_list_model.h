#pragma once

// The rows of the session list as a Qt model. The rows are rebuilt from the
// workspace on every refresh (SessionListRows), never edited in place: a tick
// or a new name is handed to the window, which acts on the catalogue and
// refreshes.

#include <QAbstractTableModel>
#include <vector>

#include "catalogue/session_list.h"

namespace zol {

class SessionListModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  void setRows(std::vector<SessionListRow> rows);
  const std::vector<SessionListRow>& rows() const { return rows_; }
  // The row of `key`, -1 if none.
  int rowOf(const std::string& key) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  bool setData(const QModelIndex& index, const QVariant& value, int role) override;

 signals:
  // The user ticked or unticked the row `key`.
  void checkToggled(const QString& key, bool checked);
  // The user typed a new name for the row `key`.
  void renameRequested(const QString& key, const QString& newName);

 private:
  std::vector<SessionListRow> rows_;
};

}  // namespace zol
