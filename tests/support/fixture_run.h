#pragma once

// A whole profiling run on disk for end-to-end tests: a generated VB6
// project, its instrumented copy, and a simulated .pfl log of a run of it
// beside the instrumented .vbp. The log's header names the project by a
// Windows path, as a log written on Windows does; the loader finds the
// project beside the log.

#include <cstdint>
#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "instrumenter.h"
#include "session/records.h"
#include "session/workspace.h"
#include "simulated_log.h"

namespace zol::testing {

struct FixtureRun {
  std::string vbp;  // the instrumented project
  std::string log;  // the .pfl beside it
  fixture::InstrumentTruth truth;
  zol::Project project;  // the instrumented project as scanned
};

// Scans the instrumented project `vbp` as the loader would, with side files
// going below `scratchFolder` (removed again).
zol::Project ScanFixtureProject(const std::string& vbp, const std::string& scratchFolder);

// The instrumented project of `seed` below `root` (once per root and seed).
FixtureRun MakeInstrumentedProject(const std::string& root, std::uint32_t seed);

// MakeInstrumentedProject, then a log named `logName` of a run drawn from
// `shape` (its run seed and length) beside the .vbp.
FixtureRun MakeFixtureRun(const std::string& root, std::uint32_t seed, const std::string& logName,
                          const SimulatedLogShape& shape = {});

// Another run of the same scanned project into `logName` beside it.
std::string WriteFixtureLog(const FixtureRun& run, const std::string& logName,
                            const SimulatedLogShape& shape);

// The session file a load writes for `log`: the same name ending in ".pfd".
std::string Pfd(const std::string& log);

// The paths of the entries of `folder`, to see that nothing was written or
// deleted there.
std::set<std::string> FilesIn(const std::string& folder);

// A fresh workspace, as a new process of the program would have, its
// application folder "app" in `dir` and its messages told to `prompter`.
std::unique_ptr<Workspace> FreshWorkspace(const std::filesystem::path& dir,
                                          std::shared_ptr<Prompter> prompter);

}  // namespace zol::testing
