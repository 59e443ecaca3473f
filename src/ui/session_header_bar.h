#pragma once

// The header of headers above a compared grid: one wide section per session,
// spanning exactly that session's run of columns, and one in front for the
// leading columns. The two stay in step both ways: when a grid column is
// resized or moved the sessions' sections follow, and when the user drags a
// session's section its columns share the new width.

#include <QHeaderView>
#include <QStandardItemModel>

#include "grid/grid_build.h"

class QTableView;

namespace zol {

class SessionHeaderBar : public QHeaderView {
  Q_OBJECT

 public:
  // `grid` is the table view the bar stands above.
  SessionHeaderBar(QTableView* grid, QWidget* parent = nullptr);

  // Shows the sessions' names over their runs of columns (prepareFakeHeaders).
  void prepareFakeHeaders(const FakeHeaders& headers);
  // Takes the bar away (no compared grid on display).
  void release();
  const FakeHeaders& shown() const { return headers_; }

  // Sizes the sessions' sections from the grid's columns.
  void arrangeHeaders();
  // Sizes the grid's columns from the sessions' sections.
  void arrangeList();

 private:
  void resizeEvent(QResizeEvent* event) override;
  // The grid's logical columns in the order shown.
  int gridColumnAt(int visual) const;

  QTableView* grid_;
  // An empty section over the leading columns' place that doesn't scroll,
  // as the grid's leading columns don't.
  QWidget* corner_;
  QStandardItemModel names_;
  FakeHeaders headers_;
  bool fDuringArrange_ = false;
};

}  // namespace zol
