#include "fixture_run.h"

#include <filesystem>

#include "base/paths.h"
#include "project/project_info.h"
#include "session/workspace.h"
#include "vb_fixture_project.h"

namespace zol::testing {

Project ScanFixtureProject(const std::string& vbp, const std::string& scratchFolder) {
  Workspace ws;
  ws.appFolder = scratchFolder;
  ws.nSession = 1;
  Session& s = ws.SessionSlot(1);
  s.ProjectFile = vbp;
  s.Project = AssignProjectToSession(ws, 1, vbp);
  ResetRtfPath(ws);
  GetProjectInfo(ws, 1);
  Project p = ws.Project(s.Project);
  KillRtfPath(ws);
  return p;
}

FixtureRun MakeInstrumentedProject(const std::string& root, std::uint32_t seed) {
  const fixture::VbProjectFiles files = fixture::GenerateVbProject(seed);
  const std::string original = fixture::WriteVbProject(files, root + "/original");
  FixtureRun run;
  run.vbp = root + "/instrumented/" + files.Name + "/" + files.Name + ".vbp";
  run.truth = fixture::InstrumentProject(original, run.vbp);
  run.project = ScanFixtureProject(run.vbp, root + "/scan-app");
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

std::string Pfd(const std::string& log) {
  return log.substr(0, log.size() - 1) + "d";
}

std::set<std::string> FilesIn(const std::string& folder) {
  std::set<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    names.insert(entry.path().string());
  }
  return names;
}

std::unique_ptr<Workspace> FreshWorkspace(const std::filesystem::path& dir,
                                          std::shared_ptr<Prompter> prompter) {
  auto ws = std::make_unique<Workspace>(std::move(prompter));
  ws->appFolder = (dir / "app").string();
  ResetRtfPath(*ws);
  return ws;
}

}  // namespace zol::testing
