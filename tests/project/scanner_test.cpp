// The scanner on small hand-written projects: the edge cases of probes,
// markers, counts and files.

#include <gtest/gtest.h>

#include <unistd.h>

#include <cctype>
#include <chrono>
#include <filesystem>
#include <thread>

#include "base/files.h"
#include "project/scan_line.h"
#include "project/vbp_text.h"
#include "scan_fixture.h"

namespace zol {
namespace {

using testing::ScopedTempDir;
using testing::WorkspaceFor;

std::string Lines(std::initializer_list<std::string> lines) {
  std::string text;
  for (const std::string& l : lines) text += l + "\r\n";
  return text;
}

// A project "Demo" with one standard module holding `body` behind its name.
std::string OneModuleProject(const ScopedTempDir& dir, const std::string& body) {
  dir.Put("Demo/Main.bas", "Attribute VB_Name = \"modMain\"\r\n" + body);
  return dir.Put("Demo/Demo.vbp", Lines({"Type=Exe", "Module=modMain; Main.bas"}));
}

std::vector<RTFLine> Table(const Module& m) {
  return m.RTFLine.Raw();
}

TEST(Scanner, UnreadableProjectFileLeavesNoModules) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(dir, dir / "Nowhere/Demo.vbp", 3, 2);
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.ModulesNumber, 0);
  EXPECT_EQ(ws.ModulesNumber, 0);
  EXPECT_FALSE(p.Loaded);
  EXPECT_EQ(p.ListOfModule, "\r");
  EXPECT_EQ(p.CodeLine.UBound(), 3);
}

TEST(Scanner, FindsTheProjectFileBesideTheSessionFile) {
  ScopedTempDir dir;
  dir.Put("logs/Main.bas", "Attribute VB_Name = \"modMain\"\r\nSub A()\r\nEnd Sub\r\n");
  dir.Put("logs/Demo.vbp", Lines({"Module=modMain; Main.bas"}));
  Workspace ws = WorkspaceFor(dir, "C:\\Projects\\Gone\\Demo.vbp");
  ws.Session(1).SessionFile = dir / "logs/run1.pfl";
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.ModulesNumber, 1);
  EXPECT_EQ(p.ListOfProc, "\rA\r");
}

TEST(Scanner, ModuleWithoutSourceHasNoProceduresAndAnEmptySideFile) {
  ScopedTempDir dir;
  dir.Put("Demo/classes/cexists.CLS",
          Lines({"VERSION 1.0 CLASS", "Attribute VB_Name = \"CExists\"", "Public Sub Go()",
                 "    zolProfiler.zolProcIn 1", "End Sub"}));
  const std::string vbp =
      dir.Put("Demo/Demo.vbp",
              Lines({"Module=Gone; Missing\\Gone.bas", "Class=CExists; Classes\\CExists.cls"}));
  Workspace ws = WorkspaceFor(dir, vbp, 0, 1);
  const Project& p = testing::Scan(ws);
  ASSERT_EQ(p.ModulesNumber, 2);
  EXPECT_EQ(p.Module(1).Name, "Gone");
  EXPECT_EQ(p.Module(1).FileName, "Missing\\Gone.bas");
  EXPECT_EQ(p.Module(1).RTFLine.UBound(), 1);
  EXPECT_EQ(LoadFile(RtfFileName(ws, 1, 1)), "");
  EXPECT_EQ(p.Module(2).Name, "CExists");
  EXPECT_EQ(p.Procedure(1).BelongToModule, 2);
  EXPECT_EQ(p.ListOfModule, "\rGone\rCExists\r");
}

TEST(Scanner, IdsAboveTheSessionCountsGrowTheTables) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir,
      OneModuleProject(dir, Lines({"Sub A()", "    zolProfiler.zolProcIn 3",
                                   "    zolProfiler.zolExecuteLine 5", "    x = 1", "End Sub"})),
      2, 1);
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.LinesNumber, 5);
  EXPECT_EQ(p.ProceduresNumber, 3);
  EXPECT_EQ(p.CodeLine.UBound(), 5);
  EXPECT_EQ(p.Procedure.UBound(), 3);
  EXPECT_EQ(p.CodeLine(5).Text, "x = 1");
  EXPECT_EQ(p.CodeLine(5).BelongToProcedure, 3);
  EXPECT_TRUE(p.CodeLine(1).Text.empty());
  EXPECT_EQ(p.CodeLine(1).BelongToProcedure, 0);
  EXPECT_EQ(p.Procedure(3).Name, "A");
  EXPECT_TRUE(p.Procedure(3).IsCovered);
}

TEST(Scanner, ProbeBehindGivesItsIdToTheLineBeforeEvenABlankOne) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir,
      OneModuleProject(dir, Lines({"Sub A(x)", "    zolProfiler.zolProcIn 1", "    Select Case x",
                                   "    Case 1", "    zolProfiler.zolExecuteLine 1 'B", "",
                                   "    zolProfiler.zolExecuteLine 2 'B", "End Sub"})));
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.CodeLine(1).Text, "Case 1");
  EXPECT_EQ(p.CodeLine(1).Position, 3);
  EXPECT_EQ(p.CodeLine(2).Text, "");
  EXPECT_EQ(p.CodeLine(2).Position, 4);
  EXPECT_FALSE(p.CodeLine(1).IsProcedureExit);
  EXPECT_EQ(Table(p.Module(1)),
            (std::vector<RTFLine>{
                {1, 1}, {0, 0}, {2, 1}, {2, 2}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}}));
}

TEST(Scanner, ContinuedStatementsTakeOneEntryAtTheirFirstLine) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir,
      OneModuleProject(dir, Lines({"Public Function Calc _", "    (ByVal a As Long, _",
                                   "    ByVal b As Long) As Long", "    zolProfiler.zolProcIn 1",
                                   "    zolProfiler.zolExecuteLine 1", "    Calc = a + _",
                                   "        b", "    zolProfiler.zolExecuteLine 2",
                                   "    zolProfiler.zolProcOut 1", "End Function"})));
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.Procedure(1).Type, 1);
  EXPECT_EQ(p.Procedure(1).Position, 1);
  // The name runs to the bracket, so the blank before it stays.
  EXPECT_EQ(p.Procedure(1).Name, "Calc ");
  EXPECT_EQ(p.CodeLine(1).Text, "Calc = a + _");
  EXPECT_EQ(p.CodeLine(1).Position, 4);
  EXPECT_EQ(p.CodeLine(2).Position, 6);
  EXPECT_TRUE(p.CodeLine(2).IsProcedureExit);
  EXPECT_EQ(
      Table(p.Module(1)),
      (std::vector<RTFLine>{
          {1, 1}, {0, 0}, {0, 0}, {2, 1}, {0, 0}, {5, 2}, {0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}}));
}

TEST(Scanner, RewrittenLineIsDroppedAndItsOriginalShown) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir,
      OneModuleProject(
          dir,
          Lines({"Private Sub B()", "'zolProcIn 4 'C", "'zolLine 7:    If x Then Exit Sub",
                 "    zolProfiler.zolExecuteLine 7: If x Then zolProfiler.zolProcOut 4: Exit Sub",
                 "    zolProfiler.zolExecuteLine 8", "    y = 2", "End Sub"})));
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(LoadFile(RtfFileName(ws, 1, 1)),
            Lines({"Private Sub B()", "    If x Then Exit Sub", "    y = 2", "End Sub"}));
  EXPECT_EQ(p.CodeLine(7).Text, "If x Then Exit Sub");
  EXPECT_EQ(p.CodeLine(7).Position, 2);
  EXPECT_EQ(p.CodeLine(7).BelongToProcedure, 4);
  EXPECT_EQ(p.CodeLine(8).Position, 3);
  const Procedure& b = p.Procedure(4);
  EXPECT_FALSE(b.IsProfiled);
  EXPECT_TRUE(b.IsCritical);
  EXPECT_TRUE(p.ContainsCritical);
}

TEST(Scanner, ExitProbeMarksTheNextLineAndAddedLinesAreLeftOut) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir, OneModuleProject(
               dir, Lines({"Private Const zolModuleIndex As Long = 1 'ID",
                           "Property Get Value() As Long", "Attribute Value.VB_UserMemId = 0",
                           "    zolProfiler.zolProcIn 2 'D", "    zolProfiler.zolProcOut 2",
                           "    Exit Property", "End Property"})));
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(LoadFile(RtfFileName(ws, 1, 1)),
            Lines({"Property Get Value() As Long", "    Exit Property", "End Property"}));
  const Procedure& v = p.Procedure(2);
  EXPECT_EQ(v.Name, "Value[Get]");
  EXPECT_EQ(v.Type, 3);
  EXPECT_TRUE(v.IsDead);
  EXPECT_FALSE(v.IsProfiled);
  EXPECT_FALSE(v.IsCovered);
  EXPECT_EQ(p.ListOfProc, "\rValue\r");
  EXPECT_EQ(p.Module(1).RTFLine(1), (RTFLine{1, 2}));
  EXPECT_EQ(p.Module(1).RTFLine(2), (RTFLine{5, 0}));
}

TEST(Scanner, DeclarationWithoutBracketsLeavesThePreviousHeadInForce) {
  ScopedTempDir dir;
  Workspace ws = WorkspaceFor(
      dir,
      OneModuleProject(dir, Lines({"Private Sub First()", "    zolProfiler.zolProcIn 1", "End Sub",
                                   "Public Sub Main", "    zolProfiler.zolProcIn 2", "End Sub"})));
  const Project& p = testing::Scan(ws);
  EXPECT_EQ(p.Procedure(2).Name, "First");
  EXPECT_EQ(p.Procedure(2).Position, 1);
  EXPECT_EQ(p.ListOfProc, "\rFirst\r");
}

TEST(Scanner, ReadsTheProbesOfTheChosenPrefixOnly) {
  EXPECT_EQ(AppPrefixFor("Zolmark Profiler"), "zolProfiler.");
  EXPECT_EQ(AppPrefixFor("zolmark PROFILER lite"), "zolProfiler.");
  EXPECT_EQ(AppPrefixFor("Zolmark Debugger"), "zolDebugger.");
  EXPECT_EQ(ScanOptions{}.AppPrefix, "zolProfiler.");

  ScopedTempDir dir;
  const std::string vbp =
      OneModuleProject(dir, Lines({"Sub A()", "    zolDebugger.zolProcIn 1",
                                   "    zolDebugger.zolExecuteLine 1", "    x = 1", "End Sub"}));
  Workspace profilerWs = WorkspaceFor(dir, vbp);
  EXPECT_EQ(testing::Scan(profilerWs).ProceduresNumber, 0);

  Workspace debuggerWs = WorkspaceFor(dir, vbp);
  const Project& p = testing::Scan(debuggerWs, {std::string(kDebuggerPrefix)});
  EXPECT_EQ(p.ProceduresNumber, 1);
  EXPECT_EQ(p.CodeLine(1).Text, "x = 1");
  EXPECT_EQ(p.CodeLine(1).Position, 2);
}

TEST(Scanner, ProbeThatDoesNotFitNamesTheModuleAndLine) {
  ScopedTempDir dir;
  Workspace zeroId = WorkspaceFor(
      dir, OneModuleProject(dir, Lines({"Sub A()", "    zolProfiler.zolProcIn 0", "End Sub"})));
  try {
    testing::Scan(zeroId);
    FAIL() << "no error";
  } catch (const ScanError& e) {
    EXPECT_NE(std::string(e.what()).find("Main.bas\", line 2"), std::string::npos) << e.what();
  }

  ScopedTempDir dir2;
  Workspace noHead = WorkspaceFor(
      dir2, OneModuleProject(dir2, Lines({"x = 1", "zolProfiler.zolExecuteLine 99999999999 'B"})));
  EXPECT_THROW(testing::Scan(noHead), ScanError);
}

TEST(Scanner, AssignsOneEntryPerProjectFileAndVersion) {
  ScopedTempDir dir;
  const std::string vbp = dir.Put("Demo/Demo.zol.vbp", "Module=A; A.bas\r\n");
  Workspace ws;
  EXPECT_EQ(AssignProjectToSession(ws, 1, vbp), 1);
  EXPECT_EQ(ws.Project(1).Name, "Demo");
  EXPECT_EQ(ws.Project(1).ProjectFile, vbp);
  std::string upper = vbp;
  for (char& c : upper) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  EXPECT_EQ(AssignProjectToSession(ws, 2, upper), 1);
  EXPECT_EQ(ws.nProject, 1);

  // A rebuilt project gets an entry of its own.
  std::filesystem::last_write_time(vbp,
                                   std::filesystem::last_write_time(vbp) + std::chrono::seconds(5));
  EXPECT_EQ(AssignProjectToSession(ws, 3, vbp), 2);
  EXPECT_EQ(AssignProjectToSession(ws, 4, vbp), 2);

  // Once the file is gone, the first entry with its path is taken.
  std::filesystem::remove(vbp);
  EXPECT_EQ(AssignProjectToSession(ws, 5, vbp), 1);
  EXPECT_EQ(ws.nProject, 2);
}

TEST(Scanner, SideFileFolderIsMadeAfreshAndRemoved) {
  ScopedTempDir dir;
  Workspace ws;
  ws.appFolder = dir / "app";
  ResetRtfPath(ws);
  const std::string expected = dir / ("app/Temp/Rtf" + std::to_string(::getpid()) + "/");
  EXPECT_EQ(ws.RtfPath, expected);
  EXPECT_EQ(LoadFile(ws.RtfPath + "Warning.txt"), kRtfWarningText);
  EXPECT_EQ(ws.tempFiles.nDeleteOnExit(), 1);
  dir.Put("app/Temp/Rtf" + std::to_string(::getpid()) + "/p1m1.txt", "old");

  ResetRtfPath(ws);
  EXPECT_FALSE(FileExist(ws.RtfPath + "p1m1.txt"));
  EXPECT_TRUE(FileExist(ws.RtfPath + "Warning.txt"));
  EXPECT_EQ(RtfFileName(ws, 3, 12), ws.RtfPath + "p3m12.txt");

  KillRtfPath(ws);
  EXPECT_FALSE(FolderExist(ws.RtfPath));
  KillRtfPath(ws);  // nothing left to remove: no failure
}

TEST(VbpText, ReadsTheModuleLinesInOrder) {
  const std::string vbp =
      Lines({"Type=Exe", "Form=frmMain.frm", "  module=Util; ..\\Common\\Util.bas",
             "Reference=*\\G{000}#2.0#0#stdole2.tlb#OLE Automation", "Class=CInvoice; CInvoice.cls",
             "Module=zolProfiler; zolProfiler.bas", "UserControl=ctl\\Gauge.ctl",
             "PropertyPage=Page.pag", "UserDocument=Doc.dob", "Designer=de.dsr",
             "Object={1}#1.0#0; x.ocx", "Startup=\"Sub Main\""});
  const std::vector<VbpModule> m = ReadVbpModules(vbp);
  ASSERT_EQ(m.size(), 7u);
  EXPECT_EQ(m[0].FileName, "frmMain.frm");
  EXPECT_EQ(m[0].Type, kModuleForm);
  EXPECT_EQ(m[1].FileName, "..\\Common\\Util.bas");
  EXPECT_EQ(m[1].Type, kModuleStandard);
  EXPECT_EQ(m[2].Type, kModuleClass);
  EXPECT_EQ(m[3].FileName, "ctl\\Gauge.ctl");
  EXPECT_EQ(m[3].Type, kModuleUserControl);
  EXPECT_EQ(m[4].Type, kModulePropertyPage);
  EXPECT_EQ(m[5].Type, kModuleUserDocument);
  EXPECT_EQ(m[6].Type, kModuleDesigner);
}

TEST(VbpText, NamesAModuleByItsAttributeOrItsFile) {
  const ModuleSource named =
      SplitModuleSource(Lines({"VERSION 5.00", "Begin VB.Form frmMain", "End",
                               "attribute vb_name = \"frmMain\"", "Option Explicit"}),
                        "Forms\\frmMain.frm");
  EXPECT_EQ(named.Name, "frmMain");
  EXPECT_EQ(named.text, "Option Explicit\r\n");
  const ModuleSource unnamed = SplitModuleSource("Option Explicit\n", "..\\x\\Util.bas");
  EXPECT_EQ(unnamed.Name, "Util");
  EXPECT_EQ(unnamed.text, "Option Explicit\n");
}

TEST(ScanLine, ProbesCompareExactlyOverTheirLength) {
  auto kind = [](const std::string& s) { return ClassifyScanLine(s, s, "zolProfiler.").kind; };
  EXPECT_EQ(kind("zolProfiler.zolExecuteLine 5"), ScanLineKind::LineProbe);
  EXPECT_EQ(kind("zolProfiler.zolExecuteLine5"), ScanLineKind::Code);
  EXPECT_EQ(kind("ZOLPROFILER.zolExecuteLine 5"), ScanLineKind::Code);
  EXPECT_EQ(kind("zolProfiler.zolProcOut"), ScanLineKind::Code);
  EXPECT_EQ(kind("zolProfiler.zolProcOut 3"), ScanLineKind::ExitProbe);
  EXPECT_EQ(kind("x = 1 'ID"), ScanLineKind::AddedLine);
  EXPECT_EQ(kind("zolProfiler.zolExecuteLine 5 'ID"), ScanLineKind::AddedLine);
  EXPECT_EQ(kind("x = 1 'ID "), ScanLineKind::Code);
  EXPECT_EQ(kind("Attribute X.VB_UserMemId = 0"), ScanLineKind::Attribute);

  const ScanLine behind = ClassifyScanLine("", "zolProfiler.zolExecuteLine 12 'B", "zolProfiler.");
  EXPECT_EQ(behind.number, 12);
  EXPECT_TRUE(behind.behind);
  const ScanLine entry = ClassifyScanLine("", "zolProfiler.zolProcIn 7 'D 'C", "zolProfiler.");
  EXPECT_EQ(entry.number, 7);
  EXPECT_TRUE(entry.critical);
  EXPECT_TRUE(entry.dead);
  EXPECT_EQ(ClassifyScanLine("", "'zolLine 31:x = 1: y = 2", "zolProfiler.").number, 31);
  EXPECT_EQ(RewrittenOriginal("'zolLine 31:  x = 1: y = 2\r\n"), "  x = 1: y = 2");
  EXPECT_THROW(ClassifyScanLine("", "'zolLine 31 x", "zolProfiler."), std::invalid_argument);
}

}  // namespace
}  // namespace zol
