// The scanner against the instrumenter's record of what every ID stands for,
// on generated projects of several seeds.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/text.h"
#include "scan_fixture.h"
#include "support/instrumenter.h"
#include "support/vb_fixture_project.h"

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

void ExpectMatchesTruth(const Project& p, const fixture::InstrumentTruth& t) {
  ASSERT_EQ(p.ModulesNumber, t.Modules.UBound());
  ASSERT_EQ(p.ProceduresNumber, t.Procedures.UBound());
  ASSERT_EQ(p.LinesNumber, t.Lines.UBound());
  EXPECT_EQ(p.ListOfModule, t.ListOfModule);
  EXPECT_EQ(p.ListOfProc, t.ListOfProc);
  EXPECT_EQ(static_cast<bool>(p.ContainsCritical), t.ContainsCritical);
  for (int m = 1; m <= t.Modules.UBound(); ++m) {
    const Module& got = p.Module(m);
    const fixture::TruthModule& want = t.Modules(m);
    EXPECT_EQ(got.FileName, want.FileName);
    EXPECT_EQ(got.Name, want.Name);
    EXPECT_EQ(got.Type, want.Type);
    ASSERT_GE(got.RTFLine.UBound(), want.RTFLine.UBound()) << want.Name;
    for (int i = 1; i <= got.RTFLine.UBound(); ++i) {
      const RTFLine expected = i <= want.RTFLine.UBound() ? want.RTFLine(i) : RTFLine{};
      EXPECT_EQ(got.RTFLine(i), expected) << want.Name << " line " << i;
    }
  }
  for (int id = 1; id <= t.Procedures.UBound(); ++id) {
    const Procedure& got = p.Procedure(id);
    const fixture::TruthProcedure& want = t.Procedures(id);
    EXPECT_EQ(got.Name, want.name) << id;
    EXPECT_EQ(got.Type, want.type) << want.name;
    EXPECT_EQ(got.BelongToModule, want.module) << want.name;
    EXPECT_EQ(got.Position, want.position) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsProfiled), want.isProfiled) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsCovered), want.isCovered) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsCritical), want.isCritical) << want.name;
    EXPECT_EQ(static_cast<bool>(got.IsDead), want.isDead) << want.name;
  }
  for (int id = 1; id <= t.Lines.UBound(); ++id) {
    const CodeLine& got = p.CodeLine(id);
    const fixture::TruthLine& want = t.Lines(id);
    EXPECT_EQ(got.Text, want.text) << id;
    EXPECT_EQ(got.BelongToProcedure, want.procedure) << want.text;
    EXPECT_EQ(got.Position, want.position) << want.text;
    EXPECT_EQ(static_cast<bool>(got.IsProcedureExit), want.isProcedureExit) << want.text;
  }
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
  ExpectMatchesTruth(project, p.truth);

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
  ExpectMatchesTruth(testing::Scan(ws), crlf.truth);
  for (std::size_t i = 0; i < crlf.original.files.size(); ++i) {
    const int m = static_cast<int>(i) + 1;
    EXPECT_EQ(LoadFile(RtfFileName(ws, 1, m)), ShownText(crlf.original.files[i].text));
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ScanTruth, ::testing::Values(1u, 2u, 3u, 17u, 99u, 2024u));

}  // namespace
}  // namespace zol
