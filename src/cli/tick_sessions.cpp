#include "cli/tick_sessions.h"

#include "compare/global_sessions.h"

namespace zol::cli {

bool TickSessions(Workspace& ws, ProjectTree& tree, const std::vector<std::string>& files,
                  const OpenOptions& options) {
  for (const std::string& file : files) {
    const auto cs = OpenSession(ws, file, options);
    if (!cs) return false;
    tree.SelectSession(*cs, "", true);
  }
  InitGlobalSessions(ws, &tree);
  return true;
}

}  // namespace zol::cli
