// The demo project under examples/: its committed instrumented copy is what
// the instrumenter makes of the original, and the scan of it reads as the
// source says.

#include <gtest/gtest.h>

#include <filesystem>

#include "base/files.h"
#include "project/scan_report.h"
#include "scan_fixture.h"
#include "support/instrumenter.h"
#include "truth_check.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::ScopedTempDir;

const std::string kDemo = std::string(ZOL_SOURCE_DIR) + "/examples/demo";

fixture::InstrumentTruth InstrumentDemo(const std::string& outputVbp) {
  fixture::InstrumentOptions options;
  options.plan = fixture::PlanFromText(LoadFile(kDemo + "/plan.txt"));
  return fixture::InstrumentProject(kDemo + "/original/Orders.vbp", outputVbp, options);
}

TEST(DemoProject, CommittedInstrumentedCopyIsUpToDate) {
  ScopedTempDir dir;
  InstrumentDemo(dir / "Orders.vbp");
  const fs::path committed = kDemo + "/instrumented";
  int files = 0;
  for (const auto& entry : fs::recursive_directory_iterator(dir.path())) {
    if (!entry.is_regular_file()) continue;
    const fs::path rel = entry.path().lexically_relative(dir.path());
    EXPECT_EQ(LoadFile((committed / rel).string()), LoadFile(entry.path().string()))
        << rel << " differs: regenerate examples/demo/instrumented with zol_instrument";
    ++files;
  }
  EXPECT_EQ(files, 8);
}

TEST(DemoProject, ScanReadsWhatTheSourceSays) {
  ScopedTempDir dir;
  const fixture::InstrumentTruth truth = InstrumentDemo(dir / "copy/Orders.vbp");
  Workspace ws = testing::WorkspaceFor(dir, kDemo + "/instrumented/Orders.vbp");
  const Project& p = testing::Scan(ws);
  ASSERT_EQ(p.ModulesNumber, 6);
  testing::ExpectMatchesTruth(p, truth);
  EXPECT_EQ(p.ListOfModule, "\rfrmOrder\rmodMain\rmodTax\rmodFormat\rCInvoice\rCLineItem\r");
  EXPECT_TRUE(p.ContainsCritical);

  const std::string report = FormatProjectScan(p);
  EXPECT_NE(report.find("Project Orders ("), std::string::npos) << report;
  EXPECT_NE(report.find("6 modules, 34 procedures, 120 probed lines, some critical"),
            std::string::npos)
      << report;
  EXPECT_NE(report.find("\n  4 Standard modFormat Shared\\modFormat.bas\n"), std::string::npos)
      << report;
  EXPECT_NE(
      report.find("\n  24 CInvoice  Total              Function  60 profiled covered critical\n"),
      std::string::npos)
      << report;
  EXPECT_NE(report.find("\n   9 modMain   ElapsedMs          Function  29 dead\n"),
            std::string::npos)
      << report;
  // An accented customer name, printed as UTF-8.
  EXPECT_NE(report.find("gInvoice.Customer = \"M\xC3\xBCller & S\xC3\xB6hne\""), std::string::npos)
      << report;
}

}  // namespace
}  // namespace zol
