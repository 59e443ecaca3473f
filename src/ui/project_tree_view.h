#pragma once

// The project tree on screen. A click on a node, or a move of
// the current node with the keyboard, is reported once as nodeClicked; the
// window runs the tree's click handling and then calls Sync, which brings the
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

  ProjectTreeModel* Model() const { return model_; }
  void Sync();

 signals:
  void nodeClicked(const QString& key);

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  void OnCurrentChanged(const QModelIndex& current);
  void OnClicked(const QModelIndex& index);
  std::set<std::string> ExpandedKeys() const;
  void ApplyExpansion(const std::set<std::string>& expandedBefore,
                      const std::set<std::string>& keysBefore);

  const ProjectTree& tree_;
  ProjectTreeModel* model_;
  bool syncing_ = false;
  bool reportedByCurrentChange_ = false;
};

}  // namespace zol
