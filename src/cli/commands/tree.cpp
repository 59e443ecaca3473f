// zolprof tree FILE...: ticks the sessions and prints the project tree, one
// node a line with its key and text, indented by depth. With two or more
// sessions the merged branch is opened, so that "MERGE" and "COMPARE" show
// their branches too. Logs are replayed in memory; no file is written.

#include <iomanip>
#include <iostream>
#include <memory>
#include <sstream>
#include <vector>

#include "base/cp1252.h"
#include "catalogue/project_tree.h"
#include "cli/command_registry.h"
#include "cli/measure_option.h"
#include "cli/tick_sessions.h"

namespace {

struct TreeArgs {
  std::vector<std::string> files;
  bool details = false;
  bool closed = false;
  bool colored = false;
  zol::Measure measure = zol::Measure::Total;
};

std::string Colour(std::int32_t bgr) {
  std::ostringstream out;
  out << "#" << std::hex << std::setfill('0') << std::setw(2) << (bgr & 0xFF) << std::setw(2)
      << ((bgr >> 8) & 0xFF) << std::setw(2) << ((bgr >> 16) & 0xFF);
  return out.str();
}

void PrintNode(const zol::TreeNode& node, int depth, bool details) {
  std::cout << std::string(static_cast<std::size_t>(depth) * 2, ' ') << node.Key << "\t";
  if (details) {
    std::cout << node.Image << "\t" << Colour(node.ForeColor) << "\t" << Colour(node.BackColor)
              << "\t" << (node.Bold ? "bold" : "-") << "\t";
  }
  std::cout << zol::Cp1252ToUtf8(node.Text) << "\n";
  for (const auto& child : node.Children) PrintNode(*child, depth + 1, details);
}

void Setup(CLI::App& app) {
  auto args = std::make_shared<TreeArgs>();
  auto* cmd = app.add_subcommand(
      "tree", "Tick sessions and print the project tree with node keys and texts");
  cmd->add_option("FILE", args->files, "session files (.pfd, or .pfl replayed in memory)")
      ->required();
  cmd->add_flag("--details", args->details,
                "also print each node's icon key, text and back colours (#RRGGBB) and boldness");
  cmd->add_flag("--closed", args->closed, "leave the merged branch unopened");
  cmd->add_flag("--colored", args->colored, "colour the nodes by rank (with --details)");
  zol::cli::AddMeasureOption(*cmd, args->measure, "for the colours");
  cmd->callback([args] {
    zol::cli::TickedSessions ticked;
    zol::Workspace& ws = ticked.ws();
    ws.view.colored = args->colored;
    // Branches are coloured for the measure as they are added.
    ticked.tree().UpdateColors(args->measure);
    if (!ticked.Tick(args->files)) {
      zol::cli::SetExitCode(1);
      return;
    }
    zol::ProjectTree& tree = ticked.tree();
    if (!args->closed && tree.Nodes().Find(zol::kMergeKey)) tree.NodeClicked(zol::kMergeKey);
    tree.UpdateColors(args->measure);
    for (const auto& root : tree.Nodes().Roots()) PrintNode(*root, 0, args->details);
  });
}

ZOLPROF_COMMAND("tree", Setup);

}  // namespace
