#include "cli/tick_sessions.h"

#include "cli/open_session.h"
#include "compare/global_sessions.h"

namespace zol::cli {

TickedSessions::TickedSessions(std::shared_ptr<CliPrompter> prompter)
    : cli_(std::move(prompter)), tree_(cli_.ws()) {}

bool TickedSessions::Tick(const std::vector<std::string>& files) {
  OpenOptions options;
  options.readOnly = true;
  Workspace& workspace = ws();
  for (const std::string& file : files) {
    const auto cs = OpenSession(workspace, file, options);
    if (!cs) return false;
    tree_.SelectSession(*cs, "", true);
  }
  InitGlobalSessions(workspace, &tree_);
  return true;
}

bool TickedSessions::OpenMerged(const std::string& key) {
  tree_.NodeClicked(key);
  return ws().Session(0).Loaded;
}

}  // namespace zol::cli
