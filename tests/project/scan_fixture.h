#pragma once

// Shared steps of the scanner tests: a workspace whose application folder is
// a test folder, a session that names a project file, and a scan of it.

#include <string>

#include "base/scoped_temp_dir.h"
#include "project/project_info.h"
#include "session/workspace.h"

namespace zol::testing {

// A workspace with one session for `vbp`, its project entry assigned, and its
// side files going below `dir`.
inline Workspace WorkspaceFor(const ScopedTempDir& dir, const std::string& vbp,
                              std::int32_t lines = 0, std::int32_t procedures = 0) {
  Workspace ws;
  ws.appFolder = dir / "app";
  ws.nSession = 1;
  Session& s = ws.SessionSlot(1);
  s.ProjectFile = vbp;
  s.LinesNumber = lines;
  s.ProceduresNumber = procedures;
  s.Project = AssignProjectToSession(ws, 1, vbp);
  ResetRtfPath(ws);
  return ws;
}

inline const Project& Scan(Workspace& ws, const ScanOptions& options = {}) {
  GetProjectInfo(ws, 1, options);
  return ws.Project(ws.Session(1).Project);
}

}  // namespace zol::testing
