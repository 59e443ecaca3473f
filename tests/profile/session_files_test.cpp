#include "profile/session_files.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>

#include "base/byte_io.h"
#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "profile/gather_info.h"
#include "support/session_builder.h"

namespace zol {
namespace {

using testing::AddSessionForProject;
using testing::ProjectBuilder;
using testing::ScopedTempDir;

// The smallest session that has every block: one line in one procedure of one
// module, one flow pair. Its project file lies in `dir`.
struct TinySession {
  explicit TinySession(const ScopedTempDir& dir, const std::string& sessionName = "run.pfl")
      : vbp(dir.Put("Test.vbp", "Name=\"Test\"\r\n")),
        ini(dir.Put("zolOptions_Test.ini", "[Source]\r\nProject=C:\\Orig\\Test.vbp\r\n")),
        ws(std::make_shared<RecordingPrompter>()) {
    ProjectBuilder b(ws, vbp);
    const auto p = b.Procedure(b.Module("Module1"), "Main");
    b.Line(p);
    cs = AddSessionForProject(ws, b.Build(), dir / sessionName);
    Session& s = ws.Session(cs);
    s.DateTime = "01/02/2003 04:05:06";
    s.IniFile = ini;
    s.CodeLineValue(1) = {2, 0.5, 0.25, 1.5, 0.75};
    s.ProcedureValue(1).Hits = 2;
    s.ProcedureValue(1).TotalTime = 3;
    s.nFlowPair = 1;
    s.FlowPair.ReDim(1);
    s.FlowPair(1) = {0, 1, 2, 1.5};
    s.FirstProc = 1;
    s.LastProc = 1;
    GatherInfo(ws, cs);
  }

  RecordingPrompter& prompter() { return static_cast<RecordingPrompter&>(ws.prompter()); }

  std::string vbp, ini;
  Workspace ws;
  std::int32_t cs = 0;
};

// The expected file, field by field, independently of the record writers.
std::string ExpectedTinyImage(const Session& s) {
  ByteWriter w;
  w.Bytes("Version03");
  w.Counted(s.DateTime);
  w.Counted("");  // RunType
  w.Counted(s.ProjectFile);
  w.Counted(s.IniFile);
  w.I32(1);  // lines
  w.I32(1);  // procedures
  w.I32(1);  // modules

  auto moduleImage = [](ByteWriter& b, const ModuleValue& m) {
    b.I16(m.IsProfiled.Raw());
    b.I16(m.IsCovered.Raw());
    b.I32(m.HitLines);
    b.I32(m.TotalLines);
    b.F64(m.LineCoverage);
    b.I32(m.HitProcedures);
    b.I32(m.TotalProcedures);
    b.F64(m.ProcedureCoverage);
    b.F64(m.TotalTime);
    b.I32(m.CriticalHitLines);
    b.I32(m.CriticalTotalLines);
    b.F32(m.TotalTimingRank);
    b.F32(m.CoverageRank);
  };
  w.I32(60);
  moduleImage(w, s.SessionValue);

  w.I32(36);
  w.I32(2);
  w.F64(0.5);
  w.F64(0.25);
  w.F64(1.5);
  w.F64(0.75);
  for (int rank = 0; rank < 4; ++rank) {
    w.I32(4);
    w.I32(1);  // the only line is first in every order
  }

  const ProcedureValue& p = s.ProcedureValue(1);
  w.I32(84);
  w.I16(-1);  // IsProfiled
  w.I16(-1);  // IsCovered
  w.I32(2);   // Hits
  w.I32(1);   // HitLines
  w.I32(1);   // TotalLines
  w.F64(1.0);
  w.F64(0.5);  // TotalTime, from the line
  w.F64(0.25);
  w.F64(1.5);
  w.F64(0.75);
  w.F32(p.TotalTimingRank);
  w.F32(p.AverageTimingRank);
  w.F64(p.ChildTotalTimingRank);
  w.F64(p.ChildAverageTimingRank);
  w.F32(p.CoverageRank);

  w.I32(60);
  moduleImage(w, s.ModuleValue(1));

  w.I32(1);  // nFlowPair
  w.I32(1);  // FirstProc
  w.I32(1);  // LastProc
  w.I32(20);
  w.I32(0);
  w.I32(1);
  w.I32(2);
  w.F64(1.5);
  return w.Take();
}

TEST(SaveSessionInfo, WritesTheLayoutByteForByte) {
  ScopedTempDir dir;
  TinySession t(dir);
  SaveSessionInfo(t.ws, t.cs);

  const Session& s = t.ws.Session(t.cs);
  EXPECT_EQ(s.SessionFile, dir / "run.pfd");
  // Spot checks that the hand-built image rests on the right values.
  EXPECT_FLOAT_EQ(s.ProcedureValue(1).TotalTimingRank, 0.0005f);
  EXPECT_EQ(s.ModuleValue(1).TotalLines, 1);
  EXPECT_EQ(LoadFile(s.SessionFile), ExpectedTinyImage(s));
}

TEST(SaveSessionInfo, CapitalLogNameGetsALowerCaseD) {
  ScopedTempDir dir;
  TinySession t(dir, "RUN.PFL");
  SaveSessionInfo(t.ws, t.cs);
  EXPECT_EQ(t.ws.Session(t.cs).SessionFile, dir / "RUN.PFd");
  EXPECT_TRUE(FileExist(dir / "RUN.PFd"));
}

// Loads `file` into a fresh slot with only a name, as the catalogue leaves it.
std::int32_t LoadIntoNewSlot(Workspace& ws, std::string file, bool* ok = nullptr) {
  const std::int32_t cs = ++ws.nSession;
  ws.SessionSlot(cs).SessionFile = file;
  const bool loaded = LoadSessionInfo(ws, cs, file);
  if (ok) *ok = loaded;
  return cs;
}

TEST(LoadSessionInfo, ReadsBackWhatWasSaved) {
  ScopedTempDir dir;
  TinySession t(dir);
  t.ws.Session(t.cs).GroupFile = "C:\\Runs\\App.vbg";
  t.ws.Session(t.cs).RunType = "Full";
  SaveSessionInfo(t.ws, t.cs);
  const Session saved = t.ws.Session(t.cs);

  bool ok = false;
  const std::int32_t cs = LoadIntoNewSlot(t.ws, saved.SessionFile, &ok);
  ASSERT_TRUE(ok);
  const Session& s = t.ws.Session(cs);
  EXPECT_EQ(s.DateTime, saved.DateTime);
  EXPECT_EQ(s.RunType, "Full");
  EXPECT_EQ(s.GroupFile, "C:\\Runs\\App.vbg");
  EXPECT_EQ(s.ProjectFile, t.vbp);
  EXPECT_EQ(s.IniFile, t.ini);
  EXPECT_EQ(s.OriginalProjectFile, "C:\\Orig\\Test.vbp");
  EXPECT_EQ(s.SessionValue, saved.SessionValue);
  EXPECT_EQ(s.CodeLineValue, saved.CodeLineValue);
  EXPECT_EQ(s.LineTotalTimeRank, saved.LineTotalTimeRank);
  EXPECT_EQ(s.LineChildAverageTimeRank, saved.LineChildAverageTimeRank);
  EXPECT_EQ(s.ProcedureValue, saved.ProcedureValue);
  EXPECT_EQ(s.ModuleValue, saved.ModuleValue);
  EXPECT_EQ(s.FlowPair, saved.FlowPair);
  EXPECT_EQ(s.nFlowPair, 1);
  EXPECT_EQ(s.FirstProc, 1);
  EXPECT_FALSE(s.Loaded);  // the catalogue decides that
  EXPECT_EQ(t.ws.ModulesNumber, 1);

  auto& p = t.prompter();
  ASSERT_EQ(p.progressTexts.size(), 1u);
  const auto size = std::filesystem::file_size(saved.SessionFile);
  EXPECT_EQ(p.progressTexts[0],
            "Reading profile data from run.pfd (" + std::to_string(size) + " bytes)...");
  EXPECT_EQ(p.progressMax, 9);
  EXPECT_EQ(p.progressValue, 9);
  EXPECT_FALSE(p.progressVisible);
}

TEST(LoadSessionInfo, ProjectWithoutLinesHasNoLineBlocks) {
  ScopedTempDir dir;
  const std::string vbp = dir.Put("P.vbp");
  Workspace ws;
  ProjectBuilder b(ws, vbp);
  const auto p = b.Procedure(b.Module("Module1"), "Main");
  const std::int32_t cs = AddSessionForProject(ws, b.Build(), dir / "nolines.pfl");
  ws.Session(cs).ProcedureValue(p).Hits = 1;
  GatherInfo(ws, cs);
  SaveSessionInfo(ws, cs);

  // Magic; DateTime, RunType and IniFile empty; ProjectFile; three counts.
  const std::string bytes = LoadFile(ws.Session(cs).SessionFile);
  const std::size_t header = 9 + 4 + 4 + 4 + vbp.size() + 4 + 12;
  EXPECT_EQ(bytes.size(), header + (4 + 60) + (4 + 84) + (4 + 60) + 12);

  bool ok = false;
  const std::int32_t back = LoadIntoNewSlot(ws, ws.Session(cs).SessionFile, &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(ws.Session(back).ProcedureValue, ws.Session(cs).ProcedureValue);
  EXPECT_FALSE(ws.Session(back).CodeLineValue.IsDimensioned());
}

TEST(LoadSessionInfo, WindowsProjectPathFoundBesideTheFile) {
  ScopedTempDir dir;
  TinySession t(dir);
  t.ws.Session(t.cs).ProjectFile = "C:\\Elsewhere\\TEST.VBP";
  SaveSessionInfo(t.ws, t.cs);

  bool ok = false;
  const std::int32_t cs = LoadIntoNewSlot(t.ws, t.ws.Session(t.cs).SessionFile, &ok);
  ASSERT_TRUE(ok);
  EXPECT_EQ(t.ws.Session(cs).ProjectFile, t.vbp);
}

TEST(LoadSessionInfo, MissingProjectLeavesTheSessionUntouched) {
  ScopedTempDir dir;
  TinySession t(dir);
  SaveSessionInfo(t.ws, t.cs);
  std::filesystem::remove(t.vbp);

  bool ok = true;
  const std::int32_t cs = LoadIntoNewSlot(t.ws, t.ws.Session(t.cs).SessionFile, &ok);
  EXPECT_FALSE(ok);
  EXPECT_TRUE(t.ws.Session(cs).DateTime.empty());
  EXPECT_FALSE(t.ws.Session(cs).ProcedureValue.IsDimensioned());
  EXPECT_TRUE(t.prompter().messages.empty());  // the caller reports it
  EXPECT_FALSE(t.prompter().progressVisible);
}

TEST(LoadSessionInfo, WrongMagicIsRefusedWithTheMessage) {
  ScopedTempDir dir;
  const std::string file = dir.Put("old.pfd", "Version02 and more");
  auto prompter = std::make_shared<RecordingPrompter>();
  Workspace ws(prompter);
  bool ok = true;
  const std::int32_t cs = LoadIntoNewSlot(ws, file, &ok);
  EXPECT_FALSE(ok);
  ASSERT_EQ(prompter->messages.size(), 1u);
  EXPECT_EQ(prompter->messages[0].text,
            "The following file is not compatible with this version of the profiler:\n" + file);
  EXPECT_FALSE(ws.Session(cs).ProcedureValue.IsDimensioned());
}

// Damaged copies of a good file: each is refused with the file's name and
// leaves the slot as it was.
class DamagedSessionFile : public ::testing::Test {
 protected:
  void SetUp() override {
    SaveSessionInfo(t.ws, t.cs);
    good = LoadFile(t.ws.Session(t.cs).SessionFile);
  }

  void ExpectRefused(const std::string& bytes, const std::string& faultPart) {
    const std::string file = dir.Put("bad.pfd", bytes);
    const std::int32_t cs = ++t.ws.nSession;
    t.ws.SessionSlot(cs).Name = "bad";
    try {
      LoadSessionInfo(t.ws, cs, file);
      ADD_FAILURE() << "no error for " << faultPart;
    } catch (const SessionFileError& e) {
      EXPECT_EQ(e.file(), file);
      EXPECT_NE(std::string(e.what()).find(file), std::string::npos);
      EXPECT_NE(e.fault().find(faultPart), std::string::npos) << e.fault();
    }
    const Session& s = t.ws.Session(cs);
    EXPECT_EQ(s.Name, "bad");
    EXPECT_TRUE(s.DateTime.empty());
    EXPECT_FALSE(s.ProcedureValue.IsDimensioned());
    EXPECT_FALSE(s.CodeLineValue.IsDimensioned());
    EXPECT_FALSE(s.Loaded);
    EXPECT_FALSE(t.prompter().progressVisible);
  }

  ScopedTempDir dir;
  TinySession t{dir};
  std::string good;
};

TEST_F(DamagedSessionFile, TruncatedAnywhere) {
  ExpectRefused(good.substr(0, 12), "DateTime");
  ExpectRefused(good.substr(0, good.size() - 10), "FlowPair");
  // Cut in the middle of the procedure block.
  const std::size_t procBlock = good.find(std::string("\x54\x00\x00\x00", 4));
  ASSERT_NE(procBlock, std::string::npos);
  ExpectRefused(good.substr(0, procBlock + 40), "ProcedureValue");
}

TEST_F(DamagedSessionFile, BlockLengthNotMatchingTheCount) {
  std::string bytes = good;
  const std::size_t procBlock = bytes.find(std::string("\x54\x00\x00\x00", 4));  // 84
  bytes[procBlock] = 80;
  ExpectRefused(bytes, "ProcedureValue: block of 80 bytes where 1 records need 84");
}

TEST_F(DamagedSessionFile, NegativeCount) {
  std::string bytes = good;
  // The line count follows the four texts.
  const Session& s = t.ws.Session(t.cs);
  const std::size_t lines =
      9 + 4 + s.DateTime.size() + 4 + 4 + s.ProjectFile.size() + 4 + s.IniFile.size();
  bytes.replace(lines, 4, std::string("\xff\xff\xff\xff", 4));
  ExpectRefused(bytes, "number of lines: negative count -1");
}

TEST_F(DamagedSessionFile, ValuesNoRunCanHave) {
  // Written as they are, refused when read: each names its record and field.
  // (Refusals add session slots, so the session is looked up afresh.)
  const auto session = [&]() -> Session& { return t.ws.Session(t.cs); };
  const ProcedureValue kept = session().ProcedureValue(1);
  const auto refusedWith = [&](const std::string& faultPart) {
    SaveSessionInfo(t.ws, t.cs);
    ExpectRefused(LoadFile(session().SessionFile), faultPart);
    session().ProcedureValue(1) = kept;
  };
  session().ProcedureValue(1).HitLines = 500000;
  session().ProcedureValue(1).TotalLines = 1;
  refusedWith("ProcedureValue(1).HitLines is 500000, above TotalLines (1)");
  session().ProcedureValue(1).Hits = -3;
  refusedWith("ProcedureValue(1).Hits is -3, below 0");
  session().ProcedureValue(1).TotalTime = std::numeric_limits<double>::quiet_NaN();
  refusedWith("ProcedureValue(1).TotalTime is NaN, not a finite time");
  session().ProcedureValue(1).CoverageRank = 7;
  refusedWith("ProcedureValue(1).CoverageRank is 7, outside 0 to 1");
  session().SessionValue.TotalTime = std::numeric_limits<double>::infinity();
  refusedWith("SessionValue.TotalTime is infinite");
}

TEST(LoadSessionInfo, MissingFileIsAnError) {
  Workspace ws;
  ws.SessionSlot(1);
  ws.nSession = 1;
  EXPECT_THROW(LoadSessionInfo(ws, 1, "/nonexistent/x.pfd"), SessionFileError);
}

TEST(ReadSessionHeader, TakesTheCataloguesFields) {
  ScopedTempDir dir;
  TinySession t(dir);
  t.ws.Session(t.cs).RunType = "Full";
  SaveSessionInfo(t.ws, t.cs);

  Session s;
  ASSERT_TRUE(ReadSessionHeader(t.ws, s, t.ws.Session(t.cs).SessionFile));
  EXPECT_EQ(s.DateTime, "01/02/2003 04:05:06");
  EXPECT_EQ(s.RunType, "Full");
  EXPECT_EQ(s.ProjectFile, t.vbp);
  EXPECT_EQ(s.OriginalProjectFile, "C:\\Orig\\Test.vbp");
  EXPECT_EQ(s.LinesNumber, 1);
  EXPECT_EQ(s.ProceduresNumber, 1);
  EXPECT_FALSE(s.CodeLineValue.IsDimensioned());
}

TEST(ReadSessionHeader, MissingProjectPointsBesideTheFile) {
  ScopedTempDir dir;
  TinySession t(dir);
  t.ws.Session(t.cs).ProjectFile = "C:\\Gone\\Away.vbp";
  SaveSessionInfo(t.ws, t.cs);

  Session s;
  ASSERT_TRUE(ReadSessionHeader(t.ws, s, t.ws.Session(t.cs).SessionFile));
  EXPECT_EQ(s.ProjectFile, dir / "Away.vbp");
}

// A group of two members, the second a copy of the first under another name.
struct TinyGroup {
  explicit TinyGroup(const ScopedTempDir& dir) : t(dir) {
    Workspace& ws = t.ws;
    const std::int32_t second = ++ws.nSession;
    Session copy = ws.Session(t.cs);
    ws.SessionSlot(second) = std::move(copy);
    ws.Session(second).Name = "Second";
    ws.Session(t.cs).GroupFile = ws.Session(second).GroupFile = "C:\\Runs\\App.vbg";
    csg = ++ws.nSessionGroup;
    ws.SessionGroup.ReDimPreserve(csg);
    SessionGroup& g = ws.SessionGroup(csg);
    g.SessionFile = dir / "App.vbg 1.pfd";
    g.DateTime = "01/02/2003";
    g.GroupFile = "C:\\Runs\\App.vbg";
    g.IniFile = "C:\\Runs\\zolApp.vbg.ini";
    g.nSession = 2;
    g.Sessions.ReDim(2);
    g.Sessions(1) = t.cs;
    g.Sessions(2) = second;
  }

  TinySession t;
  std::int32_t csg = 0;
};

TEST(SessionGroupFiles, GroupWrittenAndReadBackIsByteIdentical) {
  ScopedTempDir dir;
  TinyGroup g(dir);
  Workspace& ws = g.t.ws;
  SaveSessionInfoGroup(ws, g.csg);
  const std::string file = ws.SessionGroup(g.csg).SessionFile;
  const std::string written = LoadFile(file);
  ASSERT_TRUE(written.starts_with("GroupVn01"));

  const std::int32_t before = ws.nSession;
  const std::int32_t back = ++ws.nSessionGroup;
  ws.SessionGroup.ReDimPreserve(back);
  ws.SessionGroup(back).SessionFile = dir / "again.pfd";
  ASSERT_TRUE(LoadSessionInfoGroup(ws, back, file));

  const SessionGroup& r = ws.SessionGroup(back);
  EXPECT_TRUE(r.Loaded);
  EXPECT_EQ(r.DateTime, "01/02/2003");
  EXPECT_EQ(r.GroupFile, "C:\\Runs\\App.vbg");
  EXPECT_EQ(r.IniFile, "C:\\Runs\\zolApp.vbg.ini");
  ASSERT_EQ(r.nSession, 2);
  EXPECT_EQ(ws.nSession, before + 2);
  for (std::int32_t i = 1; i <= 2; ++i) {
    const Session& m = ws.Session(r.Sessions(i));
    EXPECT_EQ(r.Sessions(i), before + i);
    EXPECT_TRUE(m.Invisible);
    EXPECT_TRUE(m.Loaded);
    EXPECT_EQ(m.Group, back);
    EXPECT_EQ(m.ProjectFile, g.t.vbp);
    EXPECT_EQ(m.LinesNumber, 1);
    EXPECT_EQ(m.ProcedureValue, ws.Session(g.t.cs).ProcedureValue);
    // The unpacked copies are gone with their folder.
    EXPECT_FALSE(FileExist(m.SessionFile));
    EXPECT_FALSE(std::filesystem::exists(std::filesystem::path(m.SessionFile).parent_path()));
  }
  EXPECT_EQ(ws.Session(r.Sessions(1)).Name, "run");
  EXPECT_EQ(ws.Session(r.Sessions(2)).Name, "Second");

  // The counts of a member's file come from its project entry, which the
  // catalogue assigns to each member.
  for (std::int32_t i = 1; i <= 2; ++i)
    ws.Session(r.Sessions(i)).Project = ws.Session(g.t.cs).Project;
  SaveSessionInfoGroup(ws, back);
  EXPECT_EQ(LoadFile(dir / "again.pfd"), written);
}

TEST(SessionGroupFiles, DamagedMemberAddsNoSlot) {
  ScopedTempDir dir;
  TinyGroup g(dir);
  Workspace& ws = g.t.ws;
  SaveSessionInfoGroup(ws, g.csg);
  const std::string file = ws.SessionGroup(g.csg).SessionFile;
  std::string bytes = LoadFile(file);
  // The last bytes are the second member's flow pair.
  const std::string damaged = dir.Put("damaged.pfd", bytes.substr(0, bytes.size() - 4));
  const std::int32_t before = ws.nSession;
  EXPECT_THROW(LoadSessionInfoGroup(ws, g.csg, damaged), SessionFileError);
  EXPECT_EQ(ws.nSession, before);

  // Whole framing, but the member inside is cut short.
  ByteWriter w;
  w.Bytes("GroupVn01");
  w.Counted("d");
  w.Counted("g");
  w.Counted("i");
  w.I32(1);
  w.Counted("Only");
  w.Counted(LoadFile(g.t.ws.Session(g.t.cs).SessionFile).substr(0, 100));
  const std::string shortMember = dir.Put("short.pfd", w.Data());
  try {
    LoadSessionInfoGroup(ws, g.csg, shortMember);
    ADD_FAILURE() << "no error";
  } catch (const SessionFileError& e) {
    EXPECT_EQ(e.file(), shortMember);
    EXPECT_NE(e.fault().find("session 1 (\"Only\")"), std::string::npos) << e.fault();
  }
  EXPECT_EQ(ws.nSession, before);
  EXPECT_FALSE(ws.SessionGroup(g.csg).Loaded);
}

TEST(SessionGroupFiles, SessionFileIsNotAGroup) {
  ScopedTempDir dir;
  TinySession t(dir);
  SaveSessionInfo(t.ws, t.cs);
  const std::string pfd = t.ws.Session(t.cs).SessionFile;
  EXPECT_FALSE(IsGroupFile(pfd));
  t.ws.SessionGroup.ReDimPreserve(1);
  EXPECT_FALSE(LoadSessionInfoGroup(t.ws, 1, pfd));
  ASSERT_EQ(t.prompter().messages.size(), 1u);
  EXPECT_EQ(t.prompter().messages[0].text,
            "The following file is not compatible with this version of the profiler:\n" + pfd);
}

TEST(SessionGroupFiles, HeaderOfAGroupFile) {
  ScopedTempDir dir;
  TinyGroup g(dir);
  SaveSessionInfoGroup(g.t.ws, g.csg);
  const std::string file = g.t.ws.SessionGroup(g.csg).SessionFile;
  EXPECT_TRUE(IsGroupFile(file));
  SessionGroup header;
  ReadGroupHeader(header, file);
  EXPECT_EQ(header.DateTime, "01/02/2003");
  EXPECT_EQ(header.GroupFile, "C:\\Runs\\App.vbg");
  EXPECT_EQ(header.IniFile, "C:\\Runs\\zolApp.vbg.ini");
}

}  // namespace
}  // namespace zol
