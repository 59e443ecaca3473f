// The log reader on small logs whose every value is worked out by hand. Each
// test runs with both replays: the literal one and the fast one must both give
// the hand-derived values.
//
// Unless a test says otherwise the header gives a counter frequency of 1000
// (so a clock unit is a millisecond) and a probe cost of 0.5 units.

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "base/scoped_temp_dir.h"
#include "profile/log_reader.h"
#include "profile/log_test_support.h"
#include "support/session_builder.h"

namespace zol {
namespace {

using testing::HandBlock;
using testing::In;
using testing::LineAt;
using testing::Out;

constexpr double kSecond = 1000;  // clock units per second in these logs

class LogReaderTest : public ::testing::TestWithParam<ReplayKind> {
 protected:
  LogReaderTest() : prompter_(std::make_shared<RecordingPrompter>()), ws_(prompter_) {
    header_.PerformanceFrequency = "1000";
    header_.TraceOverhead = "0.5";
  }

  // Main (procedure 1): line-probed, lines 1, 2 and 3 (its End Sub).
  // Work (procedure 2): without line probes.
  // Calc (procedure 3): line-probed, lines 4 and 5 (its End Sub).
  void MakeDemoProject() {
    testing::ProjectBuilder b(ws_);
    const auto m = b.Module("Module1");
    const auto main = b.Procedure(m, "Main");
    const auto work = b.Procedure(m, "Work");
    const auto calc = b.Procedure(m, "Calc");
    b.Line(main);
    b.Line(main);
    b.Line(main, testing::kExitLine);
    b.Line(calc);
    b.Line(calc, testing::kExitLine);
    ASSERT_EQ(work, 2);
    project_ = b.Build();
  }

  // A project of one procedure without line probes, which calls itself.
  void MakeRecursiveProject() {
    testing::ProjectBuilder b(ws_);
    b.Procedure(b.Module("Module1"), "Rec");
    project_ = b.Build();
  }

  Session& Read(const std::vector<HandBlock>& blocks,
                std::optional<std::string> trailer = std::nullopt) {
    path_ = dir_ / "run.pfl";
    testing::WriteHandLog(path_, header_, blocks, std::move(trailer));
    cs_ = testing::AddSessionForProject(ws_, project_, path_);
    ReadProfileFile(ws_, cs_, GetParam());
    return ws_.Session(cs_);
  }

  std::shared_ptr<RecordingPrompter> prompter_;
  Workspace ws_;
  testing::ScopedTempDir dir_;
  testing::PflHeaderText header_;
  std::string path_;
  std::int32_t project_ = 0;
  std::int32_t cs_ = 0;
};

TEST_P(LogReaderTest, EmptyRunLeavesEverythingZero) {
  MakeDemoProject();
  const Session& s = Read({HandBlock{{}, 130}}, testing::TrailerLine("0.5"));
  EXPECT_TRUE(testing::HoldsNoValues(s));
  EXPECT_EQ(ws_.PerformanceFrequency, 1000);
  EXPECT_EQ(ws_.TraceOverhead, 0.5);
}

// An exit with no procedure open only counts as a probe; so do action codes
// the reader doesn't know. Work runs from 101 to 105 less its entry probe, the
// unknown probe at 103 and nothing for the stray exit before it.
TEST_P(LogReaderTest, StrayExitAndUnknownActionOnlyCountAsProbes) {
  MakeDemoProject();
  const Session& s =
      Read({HandBlock{{Out(100, 2), In(101, 2), {testing::Ticks(103), 7, 99}, Out(105, 2)}, 110}});
  EXPECT_EQ(s.ProcedureValue(2).Hits, 1);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(2).TotalTime, 3.0 / kSecond);  // 4 - 2 probes of 0.5
  EXPECT_EQ(s.nFlowPair, 0);
}

// Main's line 2 calls Work, which calls Calc; Calc runs lines 4 and 5.
//
//  t    record      what happens (TO = 0.5, OH = probes counted so far)
//  100  in Main     frame 1 (Main)
//  101  line 1      line 1 starts
//  105  line 2      line 1 closes: 105 - 101 - 1 probe = 3.5; line 2 starts; ChildLine(1) = 2
//  106  in Work     line 2 keeps running; pair Main>Work hit; frame 2 (Work)
//  110  in Calc     Work's first stretch 110 - 106 - 0.5 = 3.5; pair Work>Calc hit; frame 3
//  111  line 4      line 2 closes: 111 - 105 - 3 probes = 4.5; frame 1's ChildLine is 2, so
//                   line 2 child += 4.5 and pair Main>Work += 4.5 (frame 2 has no ChildLine)
//  114  line 5      line 4 closes: 114 - 111 - 0.5 = 2.5; line 2 child, Main>Work += 2.5
//  115  out Calc    line 5 closes: 0.5; line 2 child, Main>Work += 0.5. Calc is line-probed:
//                   its frame time goes nowhere. Work resumes at 115.
//  120  out Work    Work: 120 - 115 + 3.5 - 1 probe = 8.0 to Work's time, Main's child time
//                   and pair Main>Work
//  121  line 3      line 3 starts
//  122  out Main    line 3 closes: 0.5
//  130  closing     end of run, stack empty
//
// Raw sums: line 1 3.5; line 2 4.5 own, 7.5 child; line 3 0.5; line 4 2.5;
// line 5 0.5; Main child 8.0; Work 8.0; Main>Work 15.5; Work>Calc 0. Each
// child time then takes in the own time, and all times are divided by 1000.
TEST_P(LogReaderTest, NestedCallsWorkedByHand) {
  MakeDemoProject();
  const Session& s = Read({HandBlock{{In(100, 1), LineAt(101, 1), LineAt(105, 2), In(106, 2),
                                      In(110, 3), LineAt(111, 4), LineAt(114, 5), Out(115, 3),
                                      Out(120, 2), LineAt(121, 3), Out(122, 1)},
                                     130}},
                          testing::TrailerLine("0.5"));
  struct Expected {
    double own, child;
  };
  const Expected lines[] = {{3.5, 3.5}, {4.5, 12.0}, {0.5, 0.5}, {2.5, 2.5}, {0.5, 0.5}};
  for (std::int32_t id = 1; id <= 5; ++id) {
    SCOPED_TRACE(id);
    EXPECT_EQ(s.CodeLineValue(id).Hits, 1);
    EXPECT_DOUBLE_EQ(s.CodeLineValue(id).TotalTime, lines[id - 1].own / kSecond);
    EXPECT_DOUBLE_EQ(s.CodeLineValue(id).ChildTotalTime, lines[id - 1].child / kSecond);
  }
  const Expected procs[] = {{0, 8.0}, {8.0, 8.0}, {0, 0}};
  for (std::int32_t id = 1; id <= 3; ++id) {
    SCOPED_TRACE(id);
    EXPECT_EQ(s.ProcedureValue(id).Hits, 1);
    EXPECT_DOUBLE_EQ(s.ProcedureValue(id).TotalTime, procs[id - 1].own / kSecond);
    EXPECT_DOUBLE_EQ(s.ProcedureValue(id).ChildTotalTime, procs[id - 1].child / kSecond);
  }
  ASSERT_EQ(s.nFlowPair, 2);
  EXPECT_EQ(s.FlowPair(1), (FlowPair{1, 2, 1, 15.5 / kSecond}));
  EXPECT_EQ(s.FlowPair(2), (FlowPair{2, 3, 1, 0}));
  EXPECT_EQ(s.FirstProc, 1);
  EXPECT_EQ(s.LastProc, 1);  // the last entry into a frame was the return to Main
}

// Probes closer together than their cost give negative times here; the floor
// of 0.00000005 per probe reaches the pair but not the procedure sums.
//
//  100     in Main; 101 line 1
//  101.25  in Work (line 1 keeps running)
//  101.5   out Work: line 1 closes at 101.5 - 101 - 2 probes = -0.5, to line 1 own and
//          child, and to pair Main>Work. Work: 101.5 - 101.25 - 1 probe = -0.25 to Work's
//          time and Main's child time; floored at 1 probe x 0.00000005 for the pair.
//  102     line 3; 103 out Main: line 3 closes at 0.5.
TEST_P(LogReaderTest, NegativeOwnTimeAndTheFloor) {
  MakeDemoProject();
  const Session& s = Read({HandBlock{
      {In(100, 1), LineAt(101, 1), In(101.25, 2), Out(101.5, 2), LineAt(102, 3), Out(103, 1)},
      110}});
  EXPECT_DOUBLE_EQ(s.CodeLineValue(1).TotalTime, -0.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.CodeLineValue(1).ChildTotalTime, -1.0 / kSecond);
  EXPECT_DOUBLE_EQ(s.CodeLineValue(3).TotalTime, 0.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(2).TotalTime, -0.25 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).ChildTotalTime, -0.25 / kSecond);
  ASSERT_EQ(s.nFlowPair, 1);
  EXPECT_DOUBLE_EQ(s.FlowPair(1).ChildTime, (-0.5 + 0.00000005) / kSecond);
}

// The logger writes block 1 out from 104 to 154. Line 1 runs across the
// block's end: it closes at the closing record (104 - 101 - 2 probes = 2).
// Work runs across the gap: 154 - 104 - 1 probe = 49.5 comes off its stretch,
// leaving 154 - 102 - 49.5 - 2 probes = 1.5. Block 2 is stored uncompressed so
// that block 1 doesn't end within 1000 bytes of the end of the file.
TEST_P(LogReaderTest, WritingGapIsLeftOutOfLineAndFrame) {
  MakeDemoProject();
  const Session& s = Read({HandBlock{{In(100, 1), LineAt(101, 1), In(102, 2)}, 104},
                           HandBlock{{Out(154, 2), LineAt(155, 3), Out(156, 1)}, 160, 0}});
  EXPECT_DOUBLE_EQ(s.CodeLineValue(1).TotalTime, 2.0 / kSecond);
  EXPECT_DOUBLE_EQ(s.CodeLineValue(1).ChildTotalTime, 4.0 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(2).TotalTime, 1.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).ChildTotalTime, 1.5 / kSecond);
  ASSERT_EQ(s.nFlowPair, 1);
  EXPECT_DOUBLE_EQ(s.FlowPair(1).ChildTime, 3.5 / kSecond);  // 2 of line 1, 1.5 of Work
}

// A closing record in a block that ends within 1000 bytes of the end of the
// file ends the run, even when a small block follows: Work's frame is closed
// there (104 - 100 - 1 probe = 3.5) and stays open; its exit at 110 then adds
// 110 - 100 + 3.5 - 2 probes = 12.5. When the block behind is large (stored
// uncompressed), the same record starts a writing gap instead (110 - 104 - 0.5
// = 5.5 off), and Work gets 3.5.
TEST_P(LogReaderTest, ClosingRecordNearTheEndOfTheFileEndsTheRun) {
  MakeDemoProject();
  EXPECT_DOUBLE_EQ(Read({HandBlock{{In(100, 2)}, 104}, HandBlock{{Out(110, 2)}, 112}})
                       .ProcedureValue(2)
                       .TotalTime,
                   16.0 / kSecond);
  EXPECT_DOUBLE_EQ(Read({HandBlock{{In(100, 2)}, 104}, HandBlock{{Out(110, 2)}, 112, 0}})
                       .ProcedureValue(2)
                       .TotalTime,
                   3.5 / kSecond);
}

// Main calls Work, which calls Calc... all without line probes here, and the
// run ends inside Calc: only Calc gets its last stretch (111 - 105 - 0.5 =
// 5.5), which reaches the child times of Main and Work and both pairs; Main's
// and Work's stretches before their calls are lost.
TEST_P(LogReaderTest, RunEndingInsideNestedCalls) {
  testing::ProjectBuilder b(ws_);
  const auto m = b.Module("Module1");
  for (const char* name : {"Main", "Work", "Calc"}) b.Procedure(m, name);
  project_ = b.Build();
  const Session& s = Read({HandBlock{{In(100, 1), In(102, 2), In(105, 3)}, 111}});
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).TotalTime, 0);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).ChildTotalTime, 5.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(2).TotalTime, 0);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(2).ChildTotalTime, 5.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(3).TotalTime, 5.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(3).ChildTotalTime, 5.5 / kSecond);
  ASSERT_EQ(s.nFlowPair, 2);
  EXPECT_EQ(s.FlowPair(1), (FlowPair{1, 2, 1, 5.5 / kSecond}));
  EXPECT_EQ(s.FlowPair(2), (FlowPair{2, 3, 1, 5.5 / kSecond}));
  EXPECT_EQ(s.LastProc, 3);
}

// Rec calls itself 59 times (frames 1 to 60, entered at 100 to 159), then the
// frames return at 200 to 259, innermost first. Each frame's stretch before
// its call is 1 - 0.5 = 0.5. Frame 60 closes at 200 - 159 - 0.5 = 40.5; every
// other frame at 1 + 0.5 - 1 probe = 1.0. Own time: 40.5 + 59 = 99.5. Each
// close adds its time once per frame below: 40.5 x 59 + (0 + 1 + ... + 58) =
// 4100.5, to Rec's child time and to the pair Rec>Rec.
TEST_P(LogReaderTest, RecursionDeeperThanFiftyFrames) {
  MakeRecursiveProject();
  std::vector<pfl::LogRecord> records;
  for (int i = 0; i < 60; ++i) records.push_back(In(100 + i, 1));
  for (int i = 0; i < 60; ++i) records.push_back(Out(200 + i, 1));
  const Session& s = Read({HandBlock{records, 300}});
  EXPECT_EQ(s.ProcedureValue(1).Hits, 60);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).TotalTime, 99.5 / kSecond);
  EXPECT_DOUBLE_EQ(s.ProcedureValue(1).ChildTotalTime, (4100.5 + 99.5) / kSecond);
  ASSERT_EQ(s.nFlowPair, 1);
  EXPECT_EQ(s.FlowPair(1).Hits, 59);
  EXPECT_DOUBLE_EQ(s.FlowPair(1).ChildTime, 4100.5 / kSecond);
}

// Work runs from 100 to 110 with one probe against it: its time is 10 less
// the probe cost, which comes from the trailer if it has one and doesn't say 0,
// else from line 9.
TEST_P(LogReaderTest, ProbeCostFromTrailerOrLineNine) {
  MakeDemoProject();
  struct Case {
    const char* lineNine;
    std::optional<std::string> trailer;
    double cost;
  };
  const Case cases[] = {
      {"0.5", std::nullopt, 0.5},
      {"0,5", std::nullopt, 0.5},
      {"0.5", testing::TrailerLine("0.25"), 0.25},
      {"0.5", testing::TrailerLine("0,25"), 0.25},
      {"0.5", std::string("TraceOverheat=0.25       \r\n"), 0.5},
      {"0.5", testing::TrailerLine("0"), 0.5},
      {"0", testing::TrailerLine("0.000000000"), 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lineNine + std::string(" / ") + c.trailer.value_or("no trailer"));
    header_.TraceOverhead = c.lineNine;
    const Session& s = Read({HandBlock{{In(100, 2), Out(110, 2)}, 120}}, c.trailer);
    EXPECT_EQ(ws_.TraceOverhead, c.cost);
    EXPECT_DOUBLE_EQ(s.ProcedureValue(2).TotalTime, (10 - c.cost) / kSecond);
  }
}

TEST_P(LogReaderTest, ShowsProgressAndLetsEventsRunOncePerBlock) {
  MakeDemoProject();
  Read({HandBlock{{In(100, 2)}, 104, 0}, HandBlock{{Out(110, 2)}, 112}});
  const auto length = std::filesystem::file_size(path_);
  ASSERT_GT(length, 800000u);
  ASSERT_LT(length, 900000u);
  std::string size = std::to_string(length);  // "8xx xxx"
  size.insert(3, " ");
  ASSERT_EQ(prompter_->progressTexts.size(), 1u);
  EXPECT_EQ(prompter_->progressTexts[0],
            "Reading profile data from run.pfl (" + size + " bytes)...");
  EXPECT_TRUE(prompter_->progressVisible);
  EXPECT_EQ(prompter_->progressMax, 11);   // (8 + 1) x 1.25 = 11.25
  EXPECT_EQ(prompter_->progressValue, 9);  // at the end: 11.25 / 1.25, rounded
  EXPECT_EQ(prompter_->doEventsCalls, 3);  // once before the blocks, once per block
}

class AbortingPrompter : public SilentPrompter {
 public:
  explicit AbortingPrompter(Workspace*& ws) : ws_(ws) {}
  void DoEvents() override {
    if (++calls_ == 2) ws_->abort = true;  // during the first block
  }

 private:
  Workspace*& ws_;
  int calls_ = 0;
};

TEST_P(LogReaderTest, AbortBetweenBlocksStopsAndClearsTheSession) {
  Workspace* self = &ws_;
  ws_.SetPrompter(std::make_shared<AbortingPrompter>(self));
  MakeDemoProject();
  EXPECT_THROW(Read({HandBlock{{In(100, 2)}, 104, 0}, HandBlock{{Out(110, 2)}, 112}}),
               LogReadCancelled);
  EXPECT_TRUE(testing::HoldsNoValues(ws_.Session(cs_)));
}

INSTANTIATE_TEST_SUITE_P(BothReplays, LogReaderTest,
                         ::testing::Values(ReplayKind::Literal, ReplayKind::Fast),
                         [](const auto& info) {
                           return info.param == ReplayKind::Literal ? "Literal" : "Fast";
                         });

}  // namespace
}  // namespace zol
