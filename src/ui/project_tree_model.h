#pragma once

// The project tree's nodes as a Qt model. The node model of the core changes
// under the window's feet (branches come and go while a session loads), so
// this model never keeps a pointer to a node: it keeps the structure as keys,
// taken at each sync, and looks every node up by key when it is drawn. A node
// that has gone in the meantime simply draws empty until the next sync.

#include <QAbstractItemModel>
#include <string>
#include <unordered_map>
#include <vector>

#include "catalogue/project_tree.h"

namespace zol {

class ProjectTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  explicit ProjectTreeModel(const ProjectTree& tree, QObject* parent = nullptr);

  // Takes the tree's nodes. A change of structure (a node added, removed or
  // moved) resets the model and returns true; new texts and colours need only
  // a repaint of the view.
  bool sync();

  QModelIndex indexOfKey(const std::string& key) const;
  std::string keyOf(const QModelIndex& index) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  struct Item {
    std::string key;
    int parent = -1;  // index in items_; 0 is the invisible root
    int row = 0;      // place among the parent's children
    std::vector<int> children;
  };
  using Shape = std::vector<std::pair<std::string, std::string>>;  // key, parent key

  Shape currentShape() const;
  void rebuild(const Shape& shape);
  const TreeNode* nodeOf(const QModelIndex& index) const;

  const ProjectTree& tree_;
  std::vector<Item> items_;
  std::unordered_map<std::string, int> byKey_;
  Shape shape_;
};

// A colour of the node model (red + 256 green + 65536 blue) for Qt.
QColor treeColor(std::int32_t vbColor);

}  // namespace zol
