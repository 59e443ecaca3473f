#pragma once

// A grid on screen: a table view over a GridTableModel with the
// click chain of the grids. A single click waits for the double-click time
// before it counts, so that a double click never runs the single click's
// action first; a right click opens the context menu at once. A click on a
// header sorts the table on that column.

#include <QTableView>
#include <QTimer>

#include "grid/grid_sort.h"
#include "grid/table.h"

namespace zol {

class GridTableModel;
class GridView;

// The leading columns of a grid kept in place while the others scroll: a
// view over the same model and selection laid over the grid's left edge,
// showing only those columns. Clicks on it go through the grid's click
// chain, as if they were made on the grid itself.
class FrozenColumnsView : public QTableView {
  Q_OBJECT

 public:
  explicit FrozenColumnsView(GridView* grid);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  GridView* grid_;
};

// What the grid learns of the last press.
struct GridHit {
  int Index = 0;     // row, from 1; 0 for none
  int SubIndex = 0;  // column, from 1
  std::string ColumnText;
  std::string Text;
  Qt::MouseButton button = Qt::NoButton;
};

class GridView : public QTableView {
  Q_OBJECT

 public:
  explicit GridView(QWidget* parent = nullptr);

  GridTableModel* typedModel() const { return model_; }
  const Table& table() const;

  // Swaps in a newly built table: columns sized and placed as the table says,
  // its selected row selected. The view doesn't repaint until it is all done.
  void showTable(Table table);
  // Sorts on column `column` (from 1) as a header click does. `compared`
  // keeps the colours of a compared grid.
  void sortOn(int column, bool compared);
  void setCompared(bool compared) { compared_ = compared; }
  bool compared() const { return compared_; }
  SortMemory& sortMemory() { return memory_; }

  // Keeps the first `count` columns (in display order) in place while the
  // others scroll; 0 lets all of them scroll.
  void setFrozenColumns(int count);
  int frozenColumns() const { return frozenCount_; }
  FrozenColumnsView* frozen() const { return frozen_; }
  // The width the frozen columns take on the left of the viewport.
  int frozenWidth() const;

  // The click chain, for a press or double click on the cell at `index`
  // (of this grid or of its frozen columns).
  void pressAt(const QModelIndex& index, Qt::MouseButton button);
  bool doubleClickAt(const QModelIndex& index, Qt::MouseButton button);

  void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

  // Keeps only the rows whose module, procedure or line text holds every
  // word of `words` (all rows for none); new tables and sorts keep it.
  void setSearch(const QString& words);
  const QString& search() const { return search_; }
  // The selected rows (or, `whole`, every row shown) with the headers, as
  // tab-separated lines: what the clipboard gets.
  QString copyText(bool whole) const;
  void copyToClipboard(bool whole);

  const GridHit& lastHit() const { return hit_; }
  // The double-click time, 500 ms when the system gives less than 100.
  static int doubleClickTime();

 signals:
  // kind: 1 single click, 2 right click, 3 double click; row and column from 1.
  void gridClicked(int kind, int row, int column);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void updateGeometries() override;

 private:
  void getHitTest(const QModelIndex& index, Qt::MouseButton button);
  // Shows the frozen columns over the leading ones, at their widths.
  void updateFrozenColumns();
  void updateFrozenGeometry();
  // Narrows the widest frozen column so that the frozen ones take at most
  // `share` of the viewport's width.
  void fitFrozenColumns(double share);
  // The row the user had selected, selected again after a sort moved it.
  void selectTableRow();
  // Applies the search to the table shown, keeping the columns as they are.
  void applySearch();
  void applyColumns();
  void onSectionMoved();

  GridTableModel* model_;
  QTimer singleClickTimer_;
  bool ftimDblClick_ = false;
  GridHit hit_;
  SortMemory memory_;
  bool compared_ = false;
  FrozenColumnsView* frozen_ = nullptr;
  int frozenCount_ = 0;
  QString search_;
};

}  // namespace zol
