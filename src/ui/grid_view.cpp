#include "ui/grid_view.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QScrollBar>
#include <QStyleHints>
#include <algorithm>

#include "grid/grid_click.h"
#include "grid/grid_export.h"
#include "grid/grid_search.h"
#include "ui/grid_table_model.h"
#include "ui/qt_text.h"

namespace zol {

FrozenColumnsView::FrozenColumnsView(GridView* grid) : QTableView(grid), grid_(grid) {
  setObjectName("frozenColumns");
  setModel(grid->model());
  setSelectionModel(grid->selectionModel());
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setFocusPolicy(Qt::NoFocus);
  setShowGrid(false);
  setAlternatingRowColors(true);
  setWordWrap(false);
  setTextElideMode(Qt::ElideRight);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(grid->verticalHeader()->defaultSectionSize());
  horizontalHeader()->setSectionsMovable(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setStretchLastSection(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setSortIndicatorShown(true);
  // A thin line sets the frozen columns apart from those that scroll.
  setFrameShape(QFrame::NoFrame);
  setStyleSheet("QTableView#frozenColumns { border-right: 1px solid palette(mid); }");
  connect(horizontalHeader(), &QHeaderView::sectionClicked, grid,
          [grid](int logical) { grid->sortOn(logical + 1, grid->compared()); });
  // Widths set here are the grid's widths; the columns hidden here (the ones
  // that scroll) keep theirs.
  connect(horizontalHeader(), &QHeaderView::sectionResized, grid,
          [this, grid](int logical, int, int size) {
            if (size <= 0 || isColumnHidden(logical)) return;
            if (grid->horizontalHeader()->sectionSize(logical) != size)
              grid->horizontalHeader()->resizeSection(logical, size);
          });
  // The rows scroll together.
  connect(verticalScrollBar(), &QAbstractSlider::valueChanged, grid->verticalScrollBar(),
          &QAbstractSlider::setValue);
  connect(grid->verticalScrollBar(), &QAbstractSlider::valueChanged, verticalScrollBar(),
          &QAbstractSlider::setValue);
  hide();
}

void FrozenColumnsView::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  QTableView::mousePressEvent(event);
  if (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) return;
  grid_->pressAt(index, event->button());
}

void FrozenColumnsView::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (!grid_->doubleClickAt(index, event->button())) QTableView::mouseDoubleClickEvent(event);
}

void FrozenColumnsView::wheelEvent(QWheelEvent* event) {
  // The wheel scrolls the grid, which takes these rows along.
  QApplication::sendEvent(grid_->viewport(), event);
}

GridView::GridView(QWidget* parent) : QTableView(parent), model_(new GridTableModel(this)) {
  setObjectName("valuesGrid");
  setModel(model_);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  // Rows are gathered for a copy with Ctrl and Shift; a plain click goes on.
  setSelectionMode(QAbstractItemView::ExtendedSelection);
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
  horizontalHeader()->setSortIndicatorShown(true);
  connect(horizontalHeader(), &QHeaderView::sectionClicked, this,
          [this](int logical) { sortOn(logical + 1, compared_); });
  connect(horizontalHeader(), &QHeaderView::sectionMoved, this, &GridView::onSectionMoved);
  frozen_ = new FrozenColumnsView(this);
  viewport()->stackUnder(frozen_);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int logical, int, int size) {
            if (frozenCount_ > 0 && frozen_->columnWidth(logical) != size)
              frozen_->setColumnWidth(logical, size);
            updateFrozenGeometry();
          });
  connect(horizontalHeader(), &QHeaderView::sectionMoved, this, [this] {
    if (frozenCount_ > 0) updateFrozenColumns();
  });

  singleClickTimer_.setSingleShot(true);
  singleClickTimer_.setParent(this);  // found and stopped behind the error dialog
  connect(&singleClickTimer_, &QTimer::timeout, this, [this] {
    ftimDblClick_ = false;
    if (hit_.Index > 0) emit gridClicked(kSingleClick, hit_.Index, hit_.SubIndex);
  });
}

const Table& GridView::table() const {
  return model_->table();
}

int GridView::doubleClickTime() {
  const int t = QApplication::styleHints()->mouseDoubleClickInterval();
  return t < 100 ? 500 : t;
}

void GridView::showTable(Table table) {
  setUpdatesEnabled(false);
  singleClickTimer_.stop();
  ftimDblClick_ = false;
  model_->setTable(std::move(table));
  applyColumns();
  applySearch();
  updateFrozenColumns();
  fitFrozenColumns(0.5);
  horizontalHeader()->setSortIndicator(-1, Qt::DescendingOrder);
  frozen_->horizontalHeader()->setSortIndicator(-1, Qt::DescendingOrder);
  const Table& t = model_->table();
  if (const int row = model_->modelRow(t.SelectedRow); row >= 0) selectRow(row);
  // A new table starts at its top left corner, whatever the last one showed.
  scrollToTop();
  horizontalScrollBar()->setValue(0);
  setUpdatesEnabled(true);
}

void GridView::setFrozenColumns(int count) {
  frozenCount_ = std::max(0, count);
  updateFrozenColumns();
}

int GridView::frozenWidth() const {
  if (frozenCount_ <= 0 || !frozen_->isVisibleTo(this)) return 0;
  int width = 0;
  const QHeaderView* header = horizontalHeader();
  for (int v = 0; v < frozenCount_ && v < header->count(); ++v)
    width += header->sectionSize(header->logicalIndex(v));
  return width;
}

void GridView::updateFrozenColumns() {
  const int columns = model_->columnCount();
  if (frozenCount_ <= 0 || frozenCount_ >= columns) {
    frozen_->hide();
    return;
  }
  const QHeaderView* header = horizontalHeader();
  for (int logical = 0; logical < columns; ++logical) {
    const bool leading = header->visualIndex(logical) < frozenCount_;
    frozen_->setColumnHidden(logical, !leading);
    if (leading) frozen_->setColumnWidth(logical, header->sectionSize(logical));
  }
  // The same order as the grid's leading columns.
  QHeaderView* own = frozen_->horizontalHeader();
  for (int visual = 0; visual < frozenCount_; ++visual) {
    const int from = own->visualIndex(header->logicalIndex(visual));
    if (from != visual) own->moveSection(from, visual);
  }
  frozen_->horizontalHeader()->setFixedHeight(header->height());
  frozen_->show();
  updateFrozenGeometry();
}

void GridView::fitFrozenColumns(double share) {
  // frozen columns wider than the page would leave no room for the columns
  // that scroll: the widest of them (the line's text) gives way.
  const int room = static_cast<int>(viewport()->width() * share);
  int excess = frozenWidth() - room;
  if (excess <= 0 || room <= 0) return;
  QHeaderView* header = horizontalHeader();
  int widest = -1;
  for (int v = 0; v < frozenCount_ && v < header->count(); ++v) {
    const int logical = header->logicalIndex(v);
    if (widest < 0 || header->sectionSize(logical) > header->sectionSize(widest)) widest = logical;
  }
  if (widest < 0) return;
  header->resizeSection(widest, std::max(60, header->sectionSize(widest) - excess));
}

void GridView::updateFrozenGeometry() {
  if (frozenCount_ <= 0 || !frozen_->isVisibleTo(this)) return;
  frozen_->horizontalHeader()->setFixedHeight(horizontalHeader()->height());
  frozen_->setGeometry(frameWidth(), frameWidth(), frozenWidth() + 1,
                       viewport()->height() + horizontalHeader()->height());
}

void GridView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  if (event->size().width() < event->oldSize().width()) fitFrozenColumns(0.7);
  updateFrozenGeometry();
}

void GridView::updateGeometries() {
  QTableView::updateGeometries();
  updateFrozenGeometry();
}

void GridView::scrollTo(const QModelIndex& index, ScrollHint hint) {
  const int frozenWidth = this->frozenWidth();
  if (frozenWidth <= 0 || !index.isValid()) {
    QTableView::scrollTo(index, hint);
    return;
  }
  // A frozen column is always in view: only the rows move. Any other column
  // is brought out from under the frozen ones.
  QScrollBar* bar = horizontalScrollBar();
  const int before = bar->value();
  QTableView::scrollTo(index, hint);
  if (horizontalHeader()->visualIndex(index.column()) < frozenCount_) {
    bar->setValue(before);
    return;
  }
  const int left = visualRect(index).left();
  if (left < frozenWidth) bar->setValue(bar->value() - (frozenWidth - left));
}

void GridView::applyColumns() {
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

void GridView::onSectionMoved() {
  // The table keeps the order the user gave the columns, for the export.
  Table& t = model_->mutableTable();
  QHeaderView* header = horizontalHeader();
  for (int visual = 0; visual < header->count(); ++visual) {
    t.SetPosition(header->logicalIndex(visual) + 1, visual + 1);
  }
}

void GridView::sortOn(int column, bool compared) {
  if (model_->table().RowCount() == 0) return;
  setUpdatesEnabled(false);
  Table& table = model_->mutableTable();
  // The sort carries the selected row along: the highlight stays on the
  // same item, wherever it lands.
  const QModelIndexList selected = selectionModel()->selectedRows();
  const QModelIndex current = currentIndex();
  const int highlighted = current.isValid() && selectionModel()->isRowSelected(current.row())
                              ? current.row()
                              : (selected.isEmpty() ? -1 : selected.front().row());
  table.SelectedRow = std::max(0, model_->tableRow(highlighted));
  const std::int32_t order = SortTable(table, memory_, column, kSortToggle, compared);
  model_->rowsReordered();
  applySearch();
  const Qt::SortOrder shown = order == kSortAscending ? Qt::AscendingOrder : Qt::DescendingOrder;
  horizontalHeader()->setSortIndicator(column - 1, shown);
  frozen_->horizontalHeader()->setSortIndicator(column - 1, shown);
  selectTableRow();
  setUpdatesEnabled(true);
}

void GridView::selectTableRow() {
  const Table& t = model_->table();
  selectionModel()->clearSelection();
  const int row = model_->modelRow(t.SelectedRow);
  if (row < 0) return;
  const QModelIndex current = currentIndex();
  const QModelIndex index = model_->index(row, current.isValid() ? current.column() : 0);
  selectionModel()->setCurrentIndex(
      index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  scrollTo(index);
}

void GridView::getHitTest(const QModelIndex& index, Qt::MouseButton button) {
  hit_ = GridHit{};
  hit_.button = button;
  if (!index.isValid()) return;
  const Table& t = model_->table();
  hit_.Index = model_->tableRow(index.row());
  if (hit_.Index < 1) {
    hit_.Index = 0;
    return;
  }
  hit_.SubIndex = index.column() + 1;
  hit_.ColumnText = t.ColumnAt(hit_.SubIndex).Header;
  hit_.Text = t.Text(hit_.Index, hit_.SubIndex);
}

void GridView::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  QTableView::mousePressEvent(event);
  // Ctrl and Shift gather rows (for a copy) without going anywhere.
  if (event->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) return;
  pressAt(index, event->button());
}

void GridView::pressAt(const QModelIndex& index, Qt::MouseButton button) {
  getHitTest(index, button);
  if (hit_.Index == 0) return;
  if (button == Qt::RightButton) {
    singleClickTimer_.stop();
    ftimDblClick_ = false;
    emit gridClicked(kRightClick, hit_.Index, hit_.SubIndex);
  } else if (button == Qt::LeftButton && !ftimDblClick_) {
    ftimDblClick_ = true;
    singleClickTimer_.start(doubleClickTime());
  }
}

bool GridView::doubleClickAt(const QModelIndex& index, Qt::MouseButton button) {
  singleClickTimer_.stop();
  ftimDblClick_ = false;
  getHitTest(index, button);
  if (button == Qt::LeftButton && hit_.Index > 0) {
    emit gridClicked(kDoubleClick, hit_.Index, hit_.SubIndex);
    return true;
  }
  return false;
}

void GridView::mouseDoubleClickEvent(QMouseEvent* event) {
  if (!doubleClickAt(indexAt(event->position().toPoint()), event->button()))
    QTableView::mouseDoubleClickEvent(event);
}

void GridView::keyPressEvent(QKeyEvent* event) {
  // Enter on a row goes on as a single click does; Shift+Enter to the source.
  const QModelIndex current = currentIndex();
  if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && current.isValid()) {
    const int kind = (event->modifiers() & Qt::ShiftModifier) ? kDoubleClick : kSingleClick;
    const int row = model_->tableRow(current.row());
    if (row >= 1) emit gridClicked(kind, row, current.column() + 1);
    return;
  }
  // A copy takes whole rows, as the export writes them, not one cell.
  if (event->matches(QKeySequence::Copy)) {
    copyToClipboard(false);
    return;
  }
  QTableView::keyPressEvent(event);
}

}  // namespace zol

namespace zol {

void GridView::setSearch(const QString& words) {
  if (words == search_) return;
  search_ = words;
  applySearch();
  updateFrozenColumns();
}

void GridView::applySearch() {
  const std::string words = toCp1252(search_);
  const bool any = words.find_first_not_of(" \t") != std::string::npos;
  if (!any && !model_->filtered()) return;
  // A model reset forgets the columns' widths and places; the user's stay.
  QHeaderView* header = horizontalHeader();
  std::vector<int> sizes;
  std::vector<int> order;
  for (int c = 0; c < header->count(); ++c) {
    sizes.push_back(header->sectionSize(c));
    order.push_back(header->logicalIndex(c));
  }
  const int scroll = horizontalScrollBar()->value();
  if (any) {
    model_->showRows(RowsMatching(model_->table(), words));
  } else {
    model_->showAllRows();
  }
  {
    const QSignalBlocker block(header);
    for (int c = 0; c < header->count() && c < static_cast<int>(sizes.size()); ++c)
      header->resizeSection(c, sizes[static_cast<std::size_t>(c)]);
    for (int visual = 0; visual < static_cast<int>(order.size()); ++visual) {
      const int from = header->visualIndex(order[static_cast<std::size_t>(visual)]);
      if (from >= 0 && from != visual) header->moveSection(from, visual);
    }
  }
  horizontalScrollBar()->setValue(scroll);
}

QString GridView::copyText(bool whole) const {
  std::vector<int> rows;
  if (whole) {
    for (int r = 0; r < model_->rowCount(); ++r) rows.push_back(model_->tableRow(r));
  } else {
    QModelIndexList selected = selectionModel()->selectedRows();
    if (selected.isEmpty() && currentIndex().isValid()) selected << currentIndex();
    std::sort(selected.begin(), selected.end(),
              [](const QModelIndex& a, const QModelIndex& b) { return a.row() < b.row(); });
    for (const QModelIndex& index : selected) rows.push_back(model_->tableRow(index.row()));
  }
  if (rows.empty()) return {};
  QString text = Q(ExportText(model_->table(), rows, false));
  text.replace("\r\n", "\n");
  return text;
}

void GridView::copyToClipboard(bool whole) {
  const QString text = copyText(whole);
  if (!text.isEmpty()) QApplication::clipboard()->setText(text);
}

}  // namespace zol
