#include "ui/project_tree_view.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QScrollBar>

#include "catalogue/project_tree.h"
#include "ui/project_tree_model.h"

namespace zol {

ProjectTreeView::ProjectTreeView(const ProjectTree& tree, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(new ProjectTreeModel(tree, this)) {
  setObjectName("projectTree");
  setModel(model_);
  setHeaderHidden(true);
  setUniformRowHeights(true);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setStretchLastSection(false);
  // The nodes carry their own colours on white, whatever the desktop's theme.
  QPalette pal = palette();
  pal.setColor(QPalette::Base, Qt::white);
  pal.setColor(QPalette::Text, Qt::black);
  setPalette(pal);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { onCurrentChanged(current); });
  connect(this, &QTreeView::clicked, this, &ProjectTreeView::onClicked);
}

void ProjectTreeView::mousePressEvent(QMouseEvent* event) {
  reportedByCurrentChange_ = false;
  QTreeView::mousePressEvent(event);
}

void ProjectTreeView::onCurrentChanged(const QModelIndex& current) {
  if (syncing_ || !current.isValid()) return;
  reportedByCurrentChange_ = true;
  emit nodeClicked(QString::fromStdString(model_->keyOf(current)));
}

void ProjectTreeView::onClicked(const QModelIndex& index) {
  // A click that made the node current has been reported already; a click on
  // the node that was current redraws its view all the same.
  if (reportedByCurrentChange_) {
    reportedByCurrentChange_ = false;
    return;
  }
  if (!syncing_ && index.isValid()) emit nodeClicked(QString::fromStdString(model_->keyOf(index)));
}

std::set<std::string> ProjectTreeView::expandedKeys() const {
  std::set<std::string> keys;
  tree_.Nodes().ForEach([&](const TreeNode& node) {
    const QModelIndex index = model_->indexOfKey(node.Key);
    if (index.isValid() && isExpanded(index)) keys.insert(node.Key);
  });
  return keys;
}

void ProjectTreeView::applyExpansion(const std::set<std::string>& expandedBefore,
                                     const std::set<std::string>& keysBefore) {
  // Nodes the user could open or close keep the state the user gave them;
  // new nodes (and the merged branch that gets its children on its first
  // click) open as the tree's model says.
  tree_.Nodes().ForEach([&](const TreeNode& node) {
    const bool known = keysBefore.count(node.Key) != 0;
    const bool open = known ? expandedBefore.count(node.Key) != 0 : node.Expanded;
    if (open) setExpanded(model_->indexOfKey(node.Key), true);
  });
}

void ProjectTreeView::sync() {
  syncing_ = true;
  std::set<std::string> keysBefore;
  tree_.Nodes().ForEach([&](const TreeNode& node) {
    // Only a node that could be opened has a state the user gave it.
    const QModelIndex index = model_->indexOfKey(node.Key);
    if (index.isValid() && model_->rowCount(index) > 0) keysBefore.insert(node.Key);
  });
  const std::set<std::string> expandedBefore = expandedKeys();
  const int scroll = verticalScrollBar()->value();
  if (model_->sync()) {
    applyExpansion(expandedBefore, keysBefore);
    verticalScrollBar()->setValue(scroll);
  } else {
    viewport()->update();
  }
  const std::string& selected = tree_.Nodes().SelectedKey();
  const QModelIndex index = model_->indexOfKey(selected);
  if (index.isValid()) {
    if (index != currentIndex()) {
      setCurrentIndex(index);
      scrollTo(index);
    }
  } else {
    clearSelection();
    setCurrentIndex({});
  }
  syncing_ = false;
}

}  // namespace zol
