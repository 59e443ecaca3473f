#include "catalogue/tree_node.h"

#include <algorithm>
#include <stdexcept>

namespace zol {

TreeNode& TreeNodes::Add(const std::string& parentKey, const std::string& key,
                         const std::string& text, const std::string& image) {
  if (byKey_.count(key) != 0) throw std::invalid_argument("tree key in use: " + key);
  TreeNode* parent = nullptr;
  if (!parentKey.empty()) {
    parent = Find(parentKey);
    if (!parent)
      throw std::invalid_argument("no tree node " + parentKey + " to add " + key + " to");
  }
  auto node = std::make_unique<TreeNode>();
  node->Key = key;
  node->Text = text;
  node->Image = image;
  node->Parent = parent;
  TreeNode& added = *node;
  (parent ? parent->Children : roots_).push_back(std::move(node));
  byKey_[key] = &added;
  return added;
}

TreeNode* TreeNodes::Find(const std::string& key) {
  auto it = byKey_.find(key);
  return it == byKey_.end() ? nullptr : it->second;
}

const TreeNode* TreeNodes::Find(const std::string& key) const {
  auto it = byKey_.find(key);
  return it == byKey_.end() ? nullptr : it->second;
}

void TreeNodes::Forget(const TreeNode& node) {
  if (node.Key == selected_) selected_.clear();
  byKey_.erase(node.Key);
  for (const auto& child : node.Children) Forget(*child);
}

bool TreeNodes::Remove(const std::string& key) {
  TreeNode* node = Find(key);
  if (!node) return false;
  Forget(*node);
  auto& siblings = node->Parent ? node->Parent->Children : roots_;
  siblings.erase(std::find_if(siblings.begin(), siblings.end(),
                              [node](const auto& p) { return p.get() == node; }));
  return true;
}

void TreeNodes::Clear() {
  roots_.clear();
  byKey_.clear();
  selected_.clear();
}

bool TreeNodes::Select(const std::string& key) {
  if (!Find(key)) return false;
  selected_ = key;
  return true;
}

}  // namespace zol
