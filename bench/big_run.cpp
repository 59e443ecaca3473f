#include "big_run.h"

#include <cstdio>
#include <fstream>

#include "project/project_info.h"
#include "support/fixture_run.h"
#include "support/instrumenter.h"

namespace zol::bench {
namespace {

namespace fs = std::filesystem;

void Write(const fs::path& file, const std::string& text) {
  fs::create_directories(file.parent_path());
  std::ofstream(file, std::ios::binary) << text;
}

// The original project: plain modules of plain procedures.
std::string WriteOriginalProject(const fs::path& folder, int lines, int proceduresPerModule) {
  const int procedures = (lines + kStatementsPerProcedure - 1) / kStatementsPerProcedure;
  const int modules = (procedures + proceduresPerModule - 1) / proceduresPerModule;
  std::string vbp = "Type=Exe\r\n";
  for (int m = 1; m <= modules; ++m) {
    const std::string name = "Mod" + std::to_string(m);
    vbp += "Module=" + name + "; " + name + ".bas\r\n";
    std::string bas = "Attribute VB_Name = \"" + name + "\"\r\nOption Explicit\r\n\r\n";
    for (int p = 1; p <= proceduresPerModule; ++p) {
      bas += "Public Sub Work" + std::to_string(m) + "_" + std::to_string(p) +
             "(ByVal n As Long)\r\n    Dim total As Long\r\n";
      for (int s = 1; s <= kStatementsPerProcedure - 2; ++s) {
        bas += "    total = total + n * " + std::to_string(s) + "\r\n";
      }
      bas += "    Debug.Assert total >= 0\r\nEnd Sub\r\n\r\n";
    }
    Write(folder / (name + ".bas"), bas);
  }
  vbp += "Name=\"Big\"\r\nMajorVer=1\r\nMinorVer=0\r\nRevisionVer=0\r\n";
  Write(folder / "Big.vbp", vbp);
  return (folder / "Big.vbp").string();
}

}  // namespace

std::string PrepareBigRunLog(const fs::path& root, int lines, std::int64_t probes,
                             int proceduresPerModule) {
  const fs::path log = root / "instrumented" / "Run.pfl";
  const fs::path keep = root / "Run.pfl.keep";
  if (!fs::exists(keep)) {
    std::fprintf(stderr, "writing the project and its run into %s ...\n", root.c_str());
    fs::remove_all(root);
    const std::string original =
        WriteOriginalProject(root / "original", lines, proceduresPerModule);
    const std::string vbp = (root / "instrumented" / "Big.vbp").string();
    fixture::InstrumentProject(original, vbp);
    Project project = testing::ScanFixtureProject(vbp, (root / "scan").string());
    project.ProjectFile = "C:\\Runs\\Big.vbp";
    testing::SimulatedLogShape shape;
    shape.run.probes = probes;
    // Shallow calls, so that the run keeps starting afresh in procedures
    // drawn anywhere in the project and nearly every line runs.
    shape.run.callChance = 0.01;
    shape.run.callDepth = 2;
    shape.run.diveChance = 0;
    testing::WriteSimulatedLog(keep.string(), project, shape);
  }
  fs::remove(root / "instrumented" / "Run.pfd");
  fs::copy_file(keep, log, fs::copy_options::overwrite_existing);
  return log.string();
}

double Milliseconds(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - since)
      .count();
}

}  // namespace zol::bench
