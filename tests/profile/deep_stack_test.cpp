// A log of procedure entries that never leave packs tens of thousands of
// frames into a block of a few hundred bytes. The replays refuse a stack
// deeper than any real run builds, so that such a log can't take the memory
// of the machine; one as deep as the limit still loads.

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

#include "base/scoped_temp_dir.h"
#include "profile/log_error.h"
#include "profile/log_reader.h"
#include "profile/log_replay.h"
#include "profile/log_test_support.h"
#include "support/session_builder.h"

namespace zol {
namespace {

class DeepStackTest : public ::testing::Test {
 protected:
  DeepStackTest() {
    testing::ProjectBuilder b(ws_);
    const auto m = b.Module("Module1");
    b.Procedure(m, "Recurse");  // no line probes: its time is gathered per frame
    project_ = b.Build();
    path_ = dir_ / "deep.pfl";
  }

  // `entries` entries of procedure 1, one log unit apart, none left.
  void WriteNestedLog(std::int32_t entries) {
    testing::PflWriter writer(path_, header_);
    double t = 100;
    for (std::int32_t i = 0; i < entries; ++i) {
      if (writer.RecordsInBlock() == pfl::kDataRecordsPerBlock) {
        writer.CloseBlock(testing::Ticks(t));
        t += 1;
      }
      writer.AddRecord(testing::In(t, 1));
      t += 1;
    }
    writer.CloseBlock(testing::Ticks(t));
    writer.Finish(testing::TrailerLine("0.5"));
  }

  Workspace ws_;
  testing::ScopedTempDir dir_;
  testing::PflHeaderText header_;
  std::string path_;
  std::int32_t project_ = 0;
};

TEST_F(DeepStackTest, StackDeeperThanAnyRealRunIsRefusedByBothReplays) {
  WriteNestedLog(kMaxStackDepth + 1);
  for (const ReplayKind kind : {ReplayKind::Literal, ReplayKind::Fast}) {
    const std::int32_t cs = testing::AddSessionForProject(ws_, project_, path_);
    try {
      ReadProfileFile(ws_, cs, kind);
      ADD_FAILURE() << "log accepted";
    } catch (const LogError& e) {
      EXPECT_EQ(e.file(), path_);
      // Entry 100,001 is the first record of the third block.
      EXPECT_EQ(e.fault(),
                "Record 1 of block 3 enters a procedure more than 100000 calls deep, which no "
                "real run reaches.");
    }
    EXPECT_TRUE(testing::HoldsNoValues(ws_.Session(cs)));
  }
}

TEST_F(DeepStackTest, StackAsDeepAsTheLimitLoadsAlike) {
  WriteNestedLog(kMaxStackDepth);
  const std::int32_t literal = testing::AddSessionForProject(ws_, project_, path_);
  ReadProfileFile(ws_, literal, ReplayKind::Literal);
  const std::int32_t fast = testing::AddSessionForProject(ws_, project_, path_);
  ReadProfileFile(ws_, fast, ReplayKind::Fast);
  EXPECT_EQ(ws_.Session(fast).ProcedureValue(1).Hits, kMaxStackDepth);
  EXPECT_EQ(ws_.Session(fast).FlowPair(1).Hits, kMaxStackDepth - 1);
  testing::ExpectSameValues(ws_.Session(literal), ws_.Session(fast));
}

#if !defined(__SANITIZE_ADDRESS__)
// The peak resident size of a process that reads the deepest log allowed,
// and then one that nests far beyond (which it refuses), stays far below
// what a desktop can spare. Measured in a child, whose peak is its own.
TEST_F(DeepStackTest, PeakMemoryStaysSmallForAnyNesting) {
  for (const std::int32_t entries : {kMaxStackDepth, 20 * pfl::kDataRecordsPerBlock}) {
    WriteNestedLog(entries);
    int pipeEnds[2];
    ASSERT_EQ(::pipe(pipeEnds), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      ::close(pipeEnds[0]);
      try {
        ReadProfileFile(ws_, testing::AddSessionForProject(ws_, project_, path_));
      } catch (const LogError&) {
      }
      rusage usage{};
      ::getrusage(RUSAGE_SELF, &usage);
      const long peakKb = usage.ru_maxrss;
      const bool written = ::write(pipeEnds[1], &peakKb, sizeof peakKb) == sizeof peakKb;
      ::_exit(written ? 0 : 1);
    }
    ::close(pipeEnds[1]);
    long peakKb = 0;
    const bool read = ::read(pipeEnds[0], &peakKb, sizeof peakKb) == sizeof peakKb;
    ::close(pipeEnds[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(read && WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_LT(peakKb, 200 * 1024) << entries << " nested entries";
    std::printf("%d nested entries: peak resident size %ld KB\n", entries, peakKb);
  }
}
#endif

}  // namespace
}  // namespace zol
