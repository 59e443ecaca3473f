#pragma once

// The project tree on screen. A click on a node, or a move of
// the current node with the keyboard, is reported once as nodeClicked; the
// window runs the tree's click handling and then calls sync, which brings the
// view in line with the nodes: new structure, expansion, selection and
// colours.

#include <QTreeView>
#include <set>
#include <string>

namespace zol {

class ProjectTree;
class ProjectTreeModel;

class ProjectTreeView : public QTreeView {
  Q_OBJECT

 public:
  ProjectTreeView(const ProjectTree& tree, QWidget* parent = nullptr);

  ProjectTreeModel* typedModel() const { return model_; }
  void sync();

 signals:
  void nodeClicked(const QString& key);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void onCurrentChanged(const QModelIndex& current);
  void onClicked(const QModelIndex& index);
  std::set<std::string> expandedKeys() const;
  void applyExpansion(const std::set<std::string>& expandedBefore,
                      const std::set<std::string>& keysBefore);

  const ProjectTree& tree_;
  ProjectTreeModel* model_;
  bool syncing_ = false;
  bool reportedByCurrentChange_ = false;
};

}  // namespace zol
