#include "cli/tick_sessions.h"

#include <iostream>

#include "base/files.h"
#include "catalogue/session_catalogue.h"
#include "cli/open_session.h"
#include "compare/global_sessions.h"
#include "profile/session_files.h"

namespace zol::cli {

TickedSessions::TickedSessions(std::shared_ptr<CliPrompter> prompter)
    : cli_(std::move(prompter)), tree_(cli_.ws()) {}

bool TickedSessions::Tick(const std::vector<std::string>& files, TickOptions tick) {
  OpenOptions options;
  options.readOnly = true;
  Workspace& workspace = ws();
  for (const std::string& file : files) {
    if (tick.groups && FileExist(file) && IsGroupFile(file)) {
      const std::int32_t before = workspace.nSessionGroup;
      AddSession(workspace, file);
      const std::int32_t sg = workspace.nSessionGroup;
      if (sg == before || !LoadSessionGroup(workspace, sg)) {
        std::cerr << "zolprof: " << file << ": the group could not be loaded\n";
        return false;
      }
      tree_.SelectSessionGroup(sg, true);
      keys_.push_back("G" + std::to_string(sg));
      continue;
    }
    const auto cs = OpenSession(workspace, file, options);
    if (!cs) return false;
    tree_.SelectSession(*cs, "", true);
    keys_.push_back("S" + std::to_string(*cs));
  }
  InitGlobalSessions(workspace, &tree_);
  return true;
}

Selection TickedSessions::Selected(Measure measure) const {
  return tree_.TreeSelection({.session = SessionRef::merged(), .measure = measure});
}

bool TickedSessions::OpenMerged(const std::string& key) {
  tree_.NodeClicked(key);
  return ws().Session(0).Loaded;
}

}  // namespace zol::cli
