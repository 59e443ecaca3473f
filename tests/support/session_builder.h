#pragma once

// Projects and sessions built by hand in a Workspace, for tests that need the
// tables a scan and a replay would leave without running either.
//
//   ProjectBuilder b(ws);
//   auto m = b.Module("Module1");
//   auto p = b.Procedure(m, "Main", {.critical = true});
//   auto l1 = b.Line(p);             // a probed line; makes p line-probed
//   auto l2 = b.Line(p, kExitLine);  // "End Sub": counts for coverage only
//   std::int32_t cp = b.Build();
//   std::int32_t cs = AddSessionForProject(ws, cp, "/tmp/run.pfl");

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol::testing {

struct ProcedureFlags {
  bool profiled = true;  // has an entry probe
  bool critical = false;
  bool dead = false;  // a dead procedure is never profiled
};

inline constexpr bool kExitLine = true;

class ProjectBuilder {
 public:
  explicit ProjectBuilder(Workspace& ws, std::string projectFile = "C:\\Proj\\Test.vbp");

  // Each returns the new item's index or ID, counting from 1.
  std::int32_t Module(const std::string& name);
  std::int32_t Procedure(std::int32_t module, const std::string& name, ProcedureFlags flags = {});
  // A probed line of `procedure` (0: outside any procedure). A line inside a
  // procedure makes that procedure line-probed (IsCovered).
  std::int32_t Line(std::int32_t procedure, bool isExit = false);

  // Appends the project to ws.Project, marked Loaded, and returns its index.
  std::int32_t Build();

 private:
  Workspace& ws_;
  zol::Project p_;
};

// A new session slot of project `cp`, named after `sessionFile`, with zeroed
// CodeLineValue and ProcedureValue arrays of the project's sizes and the
// project's counts, as a replay starts from.
std::int32_t AddSessionForProject(Workspace& ws, std::int32_t cp, const std::string& sessionFile);

}  // namespace zol::testing
