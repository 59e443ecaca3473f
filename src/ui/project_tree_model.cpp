#include "ui/project_tree_model.h"

#include <QColor>
#include <QFont>

#include "ui/icons.h"
#include "ui/qt_text.h"

namespace zol {

QColor treeColor(std::int32_t vbColor) {
  return QColor(vbColor & 0xFF, (vbColor >> 8) & 0xFF, (vbColor >> 16) & 0xFF);
}

ProjectTreeModel::ProjectTreeModel(const ProjectTree& tree, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree) {
  items_.push_back(Item{});
}

ProjectTreeModel::Shape ProjectTreeModel::currentShape() const {
  Shape shape;
  shape.reserve(tree_.Nodes().Count());
  tree_.Nodes().ForEach([&shape](const TreeNode& node) {
    shape.emplace_back(node.Key, node.Parent ? node.Parent->Key : std::string());
  });
  return shape;
}

bool ProjectTreeModel::sync() {
  Shape shape = currentShape();
  if (shape == shape_) return false;
  beginResetModel();
  rebuild(shape);
  shape_ = std::move(shape);
  endResetModel();
  return true;
}

void ProjectTreeModel::rebuild(const Shape& shape) {
  items_.assign(1, Item{});
  byKey_.clear();
  byKey_.reserve(shape.size());
  for (const auto& [key, parentKey] : shape) {
    const auto parentIt = byKey_.find(parentKey);
    const int parent = parentKey.empty() || parentIt == byKey_.end() ? 0 : parentIt->second;
    const int id = static_cast<int>(items_.size());
    items_.push_back(
        Item{key,
             parent,
             static_cast<int>(items_[static_cast<std::size_t>(parent)].children.size()),
             {}});
    items_[static_cast<std::size_t>(parent)].children.push_back(id);
    byKey_.emplace(key, id);
  }
}

QModelIndex ProjectTreeModel::indexOfKey(const std::string& key) const {
  const auto it = byKey_.find(key);
  if (it == byKey_.end()) return {};
  const Item& item = items_[static_cast<std::size_t>(it->second)];
  return createIndex(item.row, 0, static_cast<quintptr>(it->second));
}

std::string ProjectTreeModel::keyOf(const QModelIndex& index) const {
  if (!index.isValid()) return {};
  return items_[static_cast<std::size_t>(index.internalId())].key;
}

QModelIndex ProjectTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (column != 0 || row < 0) return {};
  const std::size_t p = parent.isValid() ? static_cast<std::size_t>(parent.internalId()) : 0;
  const auto& children = items_[p].children;
  if (row >= static_cast<int>(children.size())) return {};
  return createIndex(row, 0, static_cast<quintptr>(children[static_cast<std::size_t>(row)]));
}

QModelIndex ProjectTreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid()) return {};
  const int p = items_[static_cast<std::size_t>(child.internalId())].parent;
  if (p <= 0) return {};
  return createIndex(items_[static_cast<std::size_t>(p)].row, 0, static_cast<quintptr>(p));
}

int ProjectTreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  const std::size_t p = parent.isValid() ? static_cast<std::size_t>(parent.internalId()) : 0;
  return static_cast<int>(items_[p].children.size());
}

int ProjectTreeModel::columnCount(const QModelIndex&) const {
  return 1;
}

const TreeNode* ProjectTreeModel::nodeOf(const QModelIndex& index) const {
  if (!index.isValid()) return nullptr;
  return tree_.Nodes().Find(items_[static_cast<std::size_t>(index.internalId())].key);
}

QVariant ProjectTreeModel::data(const QModelIndex& index, int role) const {
  const TreeNode* node = nodeOf(index);
  if (!node) return {};
  switch (role) {
    case Qt::DisplayRole:
      return Q(node->Text);
    case Qt::ToolTipRole:
      return plainToolTip(Q(node->Text));
    case Qt::DecorationRole:
      return node->Image.empty() ? QVariant() : QVariant(zolIcon(node->Image));
    case Qt::ForegroundRole:
      return treeColor(node->ForeColor);
    case Qt::BackgroundRole:
      return treeColor(node->BackColor);
    case Qt::FontRole:
      if (node->Bold) {
        QFont bold;
        bold.setBold(true);
        return bold;
      }
      return {};
    default:
      return {};
  }
}

Qt::ItemFlags ProjectTreeModel::flags(const QModelIndex& index) const {
  return index.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

}  // namespace zol
