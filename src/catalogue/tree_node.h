#pragma once

// The nodes of the project tree as plain data: what a tree control shows of
// each (key, text, icon key, colours, bold, expanded) and its children in
// order. The window maps them to its own tree widget. Keys are unique, as a
// tree control's keys are, and every node is found by its key.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace zol {

// Colours as red + 256 * green + 65536 * blue.
inline constexpr std::int32_t kTreeWhite = 0xFFFFFF;
inline constexpr std::int32_t kTreeBlack = 0x000000;
inline constexpr std::int32_t kTreeRed = 0x0000FF;
inline constexpr std::int32_t kTreeGreen = 0x00FF00;
inline constexpr std::int32_t kTreeBlue = 0xFF0000;
inline constexpr std::int32_t kTreeYellow = 0x00FFFF;

struct TreeNode {
  std::string Key;
  std::string Text;
  std::string Image;  // icon key
  std::int32_t ForeColor = kTreeBlack;
  std::int32_t BackColor = kTreeWhite;
  bool Bold = false;
  bool Expanded = false;
  TreeNode* Parent = nullptr;
  std::vector<std::unique_ptr<TreeNode>> Children;
};

class TreeNodes {
 public:
  // Adds a node as the last child of `parentKey`, or as the last root when
  // `parentKey` is empty. Throws std::invalid_argument for a key in use or a
  // parent that doesn't exist.
  TreeNode& Add(const std::string& parentKey, const std::string& key, const std::string& text,
                const std::string& image);

  TreeNode* Find(const std::string& key);
  const TreeNode* Find(const std::string& key) const;

  // Removes the node and everything below it; false when there is no such
  // node. A selection inside the removed branch is cleared.
  bool Remove(const std::string& key);
  void Clear();

  const std::vector<std::unique_ptr<TreeNode>>& Roots() const { return roots_; }
  std::size_t Count() const { return byKey_.size(); }

  // Every node, depth first in the order shown.
  template <typename Visit>
  void ForEach(Visit visit) const {
    for (const auto& root : roots_) Walk(*root, visit);
  }
  template <typename Visit>
  void ForEach(Visit visit) {
    for (const auto& root : roots_) Walk(*root, visit);
  }

  // The selected node's key, empty for none. Selecting a key that doesn't
  // exist changes nothing and returns false.
  const std::string& SelectedKey() const { return selected_; }
  bool Select(const std::string& key);

 private:
  template <typename Node, typename Visit>
  static void Walk(Node& node, Visit& visit) {
    visit(node);
    for (const auto& child : node.Children) Walk(*child, visit);
  }
  void Forget(const TreeNode& node);

  std::vector<std::unique_ptr<TreeNode>> roots_;
  std::unordered_map<std::string, TreeNode*> byKey_;
  std::string selected_;
};

}  // namespace zol
