#include "fixture_run.h"

#include <filesystem>

#include "base/paths.h"
#include "project/project_info.h"
#include "session/workspace.h"
#include "vb_fixture_project.h"

namespace zol::testing {

namespace {

// Scans `vbp` in a workspace of its own, whose side files go below `root`.
Project ScanProject(const std::string& root, const std::string& vbp,
                    const fixture::InstrumentTruth& truth) {
  Workspace ws;
  ws.appFolder = root + "/scan-app";
  ws.nSession = 1;
  Session& s = ws.SessionSlot(1);
  s.ProjectFile = vbp;
  s.LinesNumber = truth.Lines.Count();
  s.ProceduresNumber = truth.Procedures.Count();
  s.Project = AssignProjectToSession(ws, 1, vbp);
  ResetRtfPath(ws);
  GetProjectInfo(ws, 1);
  Project p = ws.Project(s.Project);
  KillRtfPath(ws);
  return p;
}

}  // namespace

FixtureRun MakeInstrumentedProject(const std::string& root, std::uint32_t seed) {
  const fixture::VbProjectFiles files = fixture::GenerateVbProject(seed);
  const std::string original = fixture::WriteVbProject(files, root + "/original");
  FixtureRun run;
  run.vbp = root + "/instrumented/" + files.Name + "/" + files.Name + ".vbp";
  run.truth = fixture::InstrumentProject(original, run.vbp);
  run.project = ScanProject(root, run.vbp, run.truth);
  return run;
}

std::string WriteFixtureLog(const FixtureRun& run, const std::string& logName,
                            const SimulatedLogShape& shape) {
  const std::string log = GetPath(run.vbp) + "/" + logName;
  Project named = run.project;
  // The header names the project where it stood on the machine of the run.
  named.ProjectFile = "C:\\Runs\\" + GetFileName(run.vbp);
  WriteSimulatedLog(log, named, shape);
  return log;
}

FixtureRun MakeFixtureRun(const std::string& root, std::uint32_t seed, const std::string& logName,
                          const SimulatedLogShape& shape) {
  FixtureRun run = MakeInstrumentedProject(root, seed);
  run.log = WriteFixtureLog(run, logName, shape);
  return run;
}

}  // namespace zol::testing
