#pragma once

// Ticking session files from the command line as the session pane does: each
// file opened and its branch added to the project tree, then the merged and
// compared roots offered for a selection of two or more. Every command that
// works on ticked sessions (tree, merge, table, flow, report) starts this way.

#include <memory>
#include <string>
#include <vector>

#include "catalogue/project_tree.h"
#include "cli/cli_workspace.h"
#include "session/selection.h"
#include "session/workspace.h"

namespace zol::cli {

struct TickOptions {
  // A group file is entered and loaded with its members and ticked as a
  // group; without this it is opened as one session file.
  bool groups = false;
};

// A command's workspace with its project tree. Files are opened read-only: a
// log is replayed in memory, and no session file is written or deleted.
class TickedSessions {
 public:
  explicit TickedSessions(std::shared_ptr<CliPrompter> prompter = std::make_shared<CliPrompter>());
  TickedSessions(const TickedSessions&) = delete;
  TickedSessions& operator=(const TickedSessions&) = delete;

  Workspace& ws() { return cli_.ws(); }
  const Workspace& ws() const { return cli_.ws(); }
  ProjectTree& tree() { return tree_; }
  const ProjectTree& tree() const { return tree_; }

  // Opens `files` in order and ticks each. False when one can't be opened
  // (the reason has been printed); the files before it stay ticked.
  bool Tick(const std::vector<std::string>& files, TickOptions options = {});
  // The session list keys of the ticked files ("S1", "G2"), in order.
  const std::vector<std::string>& Keys() const { return keys_; }

  // A click on the merged or compared root (kMergeKey, kCompareKey), which
  // builds the merged data the first time. False when the merge was refused
  // (the reason has been printed).
  bool OpenMerged(const std::string& key);

  // The place of the selected tree node, as the window shows it: session,
  // project, module and procedure of the node, with the measure given. Before
  // any click, the merged view, where a window starts too.
  Selection Selected(Measure measure = Measure::Total) const;

 private:
  CliWorkspace cli_;
  ProjectTree tree_;
  std::vector<std::string> keys_;
};

}  // namespace zol::cli
