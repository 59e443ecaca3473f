#include "ui/grid_view.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleHints>
#include <algorithm>

#include "grid/grid_click.h"
#include "ui/grid_table_model.h"

namespace zol {

GridView::GridView(QWidget* parent) : QTableView(parent), model_(new GridTableModel(this)) {
  setObjectName("lvValues");
  setModel(model_);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setShowGrid(false);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  // Every row is one line high: the view never measures rows, whatever their
  // number.
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  horizontalHeader()->setSectionsMovable(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int logical) { SortOn(logical + 1, compared_); });
  connect(horizontalHeader(), &QHeaderView::sectionMoved, this, &GridView::OnSectionMoved);

  timDblClick_.setSingleShot(true);
  connect(&timDblClick_, &QTimer::timeout, this, [this] {
    ftimDblClick_ = false;
    if (hit_.Index > 0) emit gridClicked(kSingleClick, hit_.Index, hit_.SubIndex);
  });
}

const Table& GridView::table() const {
  return model_->table();
}

int GridView::DoubleClickTime() {
  const int t = QApplication::styleHints()->mouseDoubleClickInterval();
  return t < 100 ? 500 : t;
}

void GridView::ShowTable(Table table) {
  setUpdatesEnabled(false);
  timDblClick_.stop();
  ftimDblClick_ = false;
  model_->SetTable(std::move(table));
  ApplyColumns();
  const Table& t = model_->table();
  if (t.SelectedRow >= 1 && t.SelectedRow <= t.RowCount()) {
    selectRow(t.SelectedRow - 1);
  }
  scrollToTop();
  setUpdatesEnabled(true);
}

void GridView::ApplyColumns() {
  const Table& t = model_->table();
  QHeaderView* header = horizontalHeader();
  const QSignalBlocker block(header);
  const int charWidth = std::max(6, fontMetrics().averageCharWidth());
  QFont bold = font();
  bold.setBold(true);
  const int boldCharWidth = std::max(charWidth, QFontMetrics(bold).averageCharWidth());
  for (int c = 1; c <= t.ColumnCount(); ++c) {
    const int chars = std::clamp(t.ColumnAt(c).Width, 3, 120);
    // Values and bars are bold in places; the first column carries an icon.
    const int width = chars * boldCharWidth + 18 + (c == 1 ? 22 : 0);
    header->resizeSection(c - 1, width);
  }
  // Display places: the table's order, from the left.
  const std::vector<int>& order = t.GetHeadersPositions();
  for (int visual = 0; visual < static_cast<int>(order.size()); ++visual) {
    const int logical = order[static_cast<std::size_t>(visual)] - 1;
    const int from = header->visualIndex(logical);
    if (from != visual) header->moveSection(from, visual);
  }
}

void GridView::OnSectionMoved() {
  // The table keeps the order the user gave the columns, for the export.
  Table& t = model_->MutableTable();
  QHeaderView* header = horizontalHeader();
  for (int visual = 0; visual < header->count(); ++visual) {
    t.SetPosition(header->logicalIndex(visual) + 1, visual + 1);
  }
}

void GridView::SortOn(int column, bool compared) {
  if (model_->table().RowCount() == 0) return;
  setUpdatesEnabled(false);
  lvValues_Sort(model_->MutableTable(), memory_, column, kSortToggle, compared);
  model_->RowsReordered();
  setUpdatesEnabled(true);
}

void GridView::GetHitTest(const QPoint& pos, Qt::MouseButton button) {
  const QModelIndex index = indexAt(pos);
  hit_ = GridHit{};
  hit_.Button = button;
  if (!index.isValid()) return;
  const Table& t = model_->table();
  hit_.Index = index.row() + 1;
  hit_.SubIndex = index.column() + 1;
  hit_.ColumnText = t.ColumnAt(hit_.SubIndex).Header;
  hit_.Text = t.RowAt(hit_.Index).Text(hit_.SubIndex);
}

void GridView::mousePressEvent(QMouseEvent* event) {
  GetHitTest(event->position().toPoint(), event->button());
  QTableView::mousePressEvent(event);
  if (hit_.Index == 0) return;
  if (event->button() == Qt::RightButton) {
    timDblClick_.stop();
    ftimDblClick_ = false;
    emit gridClicked(kRightClick, hit_.Index, hit_.SubIndex);
  } else if (event->button() == Qt::LeftButton && !ftimDblClick_) {
    ftimDblClick_ = true;
    timDblClick_.start(DoubleClickTime());
  }
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  timDblClick_.stop();
  ftimDblClick_ = false;
  GetHitTest(event->position().toPoint(), event->button());
  if (event->button() == Qt::LeftButton && hit_.Index > 0) {
    emit gridClicked(kDoubleClick, hit_.Index, hit_.SubIndex);
    return;
  }
  QTableView::mouseDoubleClickEvent(event);
}

void GridView::keyPressEvent(QKeyEvent* event) {
  // Enter on a row goes on as a single click does; Shift+Enter to the source.
  const QModelIndex current = currentIndex();
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && current.isValid()) {
    const int kind = (event->modifiers() & Qt::ShiftModifier) ? kDoubleClick : kSingleClick;
    emit gridClicked(kind, current.row() + 1, current.column() + 1);
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace zol
