#pragma once

// Runs on disk for catalogue tests: a generated, instrumented project with
// logs of several runs beside its .vbp, and group files made of such runs.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/paths.h"
#include "catalogue/session_catalogue.h"
#include "profile/session_files.h"
#include "support/fixture_run.h"

namespace zol::testing {

inline SimulatedLogShape SmallRun(std::uint32_t seed) {
  SimulatedLogShape shape;
  shape.run.seed = seed;
  shape.run.probes = 2000;
  return shape;
}

// The project of seed 3 below `root` with the log "run1.pfl" of a short run.
inline FixtureRun MakeSmallRun(const std::string& root) {
  return MakeFixtureRun(root, 3, "run1.pfl", SmallRun(1));
}

// Another short run of the same project, beside the first.
inline std::string AnotherRun(const FixtureRun& run, const std::string& logName,
                              std::uint32_t seed) {
  return WriteFixtureLog(run, logName, SmallRun(seed));
}

struct GroupFileSpec {
  std::string file;  // the group file to write
  std::string GroupFile = "C:\\Runs\\Runs.vbg";
  std::string IniFile = "C:\\Runs\\zolRuns.vbg.ini";
  std::string DateTime = "12/05/2004 15:00:00";
};

// Loads each log in `ws` (each becomes a .pfd) and stores them as the
// members of one group file.
inline void WriteGroupFile(Workspace& ws, const std::vector<std::string>& logs,
                           const GroupFileSpec& spec) {
  const std::int32_t sg = ++ws.nSessionGroup;
  ws.SessionGroup.ReDimPreserve(sg);
  SessionGroup& g = ws.SessionGroup(sg);
  g.SessionFile = spec.file;
  g.Name = GetFileBody(spec.file);
  g.GroupFile = spec.GroupFile;
  g.IniFile = spec.IniFile;
  g.DateTime = spec.DateTime;
  for (const std::string& log : logs) {
    const std::int32_t cs = AddSession(ws, log);
    ASSERT_NE(cs, 0) << log;
    ASSERT_TRUE(LoadSession(ws, cs)) << log;
    ++g.nSession;
    g.Sessions.ReDimPreserve(g.nSession);
    g.Sessions(g.nSession) = cs;
  }
  SaveSessionInfoGroup(ws, sg);
}

}  // namespace zol::testing
