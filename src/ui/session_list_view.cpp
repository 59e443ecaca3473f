#include "ui/session_list_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>

#include "ui/session_list_model.h"

namespace zol {

namespace {

// The list's columns as they were laid out, in characters of about 7 pixels.
constexpr int kColumnWidths[] = {75, 75, 100, 50, 200};

}  // namespace

SessionListView::SessionListView(SessionListModel* model, QWidget* parent)
    : QTreeView(parent), model_(model) {
  setObjectName("sessionList");
  setModel(model);
  setRootIsDecorated(false);
  setUniformRowHeights(true);
  setAlternatingRowColors(true);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setEditTriggers(QAbstractItemView::EditKeyPressed | QAbstractItemView::SelectedClicked);
  setAllColumnsShowFocus(true);
  header()->setSectionsClickable(true);
  header()->setSortIndicatorShown(true);
  header()->setStretchLastSection(true);
  for (int c = 0; c < 5; ++c) header()->resizeSection(c, kColumnWidths[c] * 13 / 10 + 10);
  connect(header(), &QHeaderView::sectionClicked, this,
          [this](int logical) { emit sortRequested(logical + 1); });
}

std::string SessionListView::selectedKey() const {
  const QModelIndex current = currentIndex();
  if (!current.isValid() || current.row() >= static_cast<int>(model_->rows().size())) return {};
  return model_->rows()[static_cast<std::size_t>(current.row())].Key;
}

void SessionListView::selectKey(const std::string& key) {
  const int row = model_->rowOf(key);
  if (row >= 0) setCurrentIndex(model_->index(row, 0));
}

void SessionListView::editSelectedName() {
  const QModelIndex current = currentIndex();
  if (current.isValid()) edit(model_->index(current.row(), 0));
}

void SessionListView::mousePressEvent(QMouseEvent* event) {
  // The row under the pointer becomes the selected row, for either button.
  const QModelIndex hit = indexAt(event->position().toPoint());
  if (hit.isValid()) setCurrentIndex(model_->index(hit.row(), 0));
  if (event->button() == Qt::RightButton) {
    popupMenu(event->globalPosition().toPoint());
    return;
  }
  QTreeView::mousePressEvent(event);
}

void SessionListView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_F2) {
    editSelectedName();
    return;
  }
  if (event->key() == Qt::Key_Menu) {
    popupMenu(viewport()->mapToGlobal(visualRect(currentIndex()).center()));
    return;
  }
  QTreeView::keyPressEvent(event);
}

void SessionListView::popupMenu(const QPoint& globalPos) {
  const QString key = QString::fromStdString(selectedKey());
  const bool hasRow = !key.isEmpty();
  const bool hasRows = model_->rowCount() > 0;
  QMenu menu(this);
  menu.setObjectName("sessionListMenu");
  QAction* edit = menu.addAction(tr("Edit name"), this, &SessionListView::editSelectedName);
  QAction* remove =
      menu.addAction(tr("Remove session"), this, [this, key] { emit removeRequested(key); });
  QAction* destroy = menu.addAction(tr("Destroy session (delete its file)"), this,
                                    [this, key] { emit destroyRequested(key); });
  menu.addSeparator();
  QAction* all = menu.addAction(tr("Select all"), this, &SessionListView::selectAllRequested);
  QAction* none = menu.addAction(tr("Unselect all"), this, &SessionListView::unselectAllRequested);
  menu.addSeparator();
  QAction* removeAll = menu.addAction(tr("Remove all"), this, &SessionListView::removeAllRequested);
  QAction* destroyAll = menu.addAction(tr("Destroy all (delete their files)..."), this,
                                       &SessionListView::destroyAllRequested);
  for (QAction* a : {edit, remove, destroy}) a->setEnabled(hasRow);
  for (QAction* a : {all, none, removeAll, destroyAll}) a->setEnabled(hasRows);
  menu.exec(globalPos);
}

}  // namespace zol
