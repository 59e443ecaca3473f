// The scanner against the instrumenter's record of what every ID stands for,
// on generated projects of several seeds.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/text.h"
#include "scan_fixture.h"
#include "support/instrumenter.h"
#include "support/vb_fixture_project.h"
#include "truth_check.h"

namespace zol {
namespace {

using testing::ScopedTempDir;

struct Instrumented {
  fixture::VbProjectFiles original;
  fixture::InstrumentTruth truth;
  std::string vbp;  // the instrumented project file
};

Instrumented MakeProject(const ScopedTempDir& dir, std::uint32_t seed, bool lfOnly = false) {
  Instrumented p;
  p.original = fixture::GenerateVbProject(seed, {lfOnly});
  const std::string originalVbp = fixture::WriteVbProject(p.original, dir / "original");
  p.vbp = dir / ("instrumented/" + p.original.vbpDiskPath);
  fixture::InstrumentOptions options;
  options.plan = fixture::RandomPlan(seed);
  p.truth = fixture::InstrumentProject(originalVbp, p.vbp, options);
  return p;
}

// What the IDE shows of a module: the lines behind the name attribute
// without the Attribute lines, each ending in CR LF.
std::string ShownText(const std::string& source) {
  std::string shown;
  bool behindName = false;
  for (std::string line : Split(source, "\n")) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (!behindName) {
      behindName = InStr(1, line, "Attribute VB_Name = \"", CompareMethod::Text) > 0;
      continue;
    }
    if (LTrim(line).rfind("Attribute ", 0) == 0) continue;
    shown += line + "\r\n";
  }
  // A text ending in a line break has no line behind it.
  if (source.ends_with("\n")) shown.resize(shown.size() - 2);
  return shown;
}

class ScanTruth : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(ScanTruth, RecoversEveryIdAndWritesTheShownText) {
  ScopedTempDir dir;
  const Instrumented p = MakeProject(dir, GetParam());
  ASSERT_GT(p.truth.Lines.UBound(), 20);
  Workspace ws =
      testing::WorkspaceFor(dir, p.vbp, p.truth.Lines.UBound(), p.truth.Procedures.UBound());
  const Project& project = testing::Scan(ws);
  EXPECT_TRUE(project.Loaded);
  testing::ExpectMatchesTruth(project, p.truth);

  for (std::size_t i = 0; i < p.original.files.size(); ++i) {
    const int m = static_cast<int>(i) + 1;
    EXPECT_EQ(LoadFile(RtfFileName(ws, ws.Session(1).Project, m)),
              ShownText(p.original.files[i].text))
        << p.original.files[i].diskPath;
  }
}

TEST_P(ScanTruth, GrowsFromZeroCountsAndReadsLineFeedsAlone) {
  ScopedTempDir crlfDir;
  ScopedTempDir lfDir;
  const Instrumented crlf = MakeProject(crlfDir, GetParam());
  const Instrumented lf = MakeProject(lfDir, GetParam(), true);
  ASSERT_EQ(lf.original.files.front().text.find('\r'), std::string::npos);

  // A session that tells no counts: every ID grows the tables.
  Workspace ws = testing::WorkspaceFor(lfDir, lf.vbp);
  testing::ExpectMatchesTruth(testing::Scan(ws), crlf.truth);
  for (std::size_t i = 0; i < crlf.original.files.size(); ++i) {
    const int m = static_cast<int>(i) + 1;
    EXPECT_EQ(LoadFile(RtfFileName(ws, 1, m)), ShownText(crlf.original.files[i].text));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ScanTruth, ::testing::Values(1u, 2u, 3u, 17u, 99u, 2024u));

}  // namespace
}  // namespace zol
