// Damaged logs are refused whole, by both replays alike: a LogError that names
// the file and the fault, and a session with nothing half-read left in it.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <limits>

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

class BadLogTest : public ::testing::Test {
 protected:
  BadLogTest() {
    // Main: line-probed with lines 1 and 2; Work: without line probes.
    testing::ProjectBuilder b(ws_);
    const auto m = b.Module("Module1");
    const auto main = b.Procedure(m, "Main");
    b.Procedure(m, "Work");
    b.Line(main);
    b.Line(main, testing::kExitLine);
    project_ = b.Build();
    path_ = dir_ / "bad.pfl";
  }

  void Write(const std::string& bytes) { std::ofstream(path_, std::ios::binary) << bytes; }

  void WriteLog(const std::vector<HandBlock>& blocks) {
    testing::WriteHandLog(path_, header_, blocks, testing::TrailerLine("0.5"));
  }

  // A log that holds good values in its first block (stored, so that it is not
  // the last one) before whatever comes behind it.
  std::string GoodStart() {
    WriteLog({HandBlock{{In(100, 1), LineAt(101, 1), In(102, 2), Out(103, 2)}, 104, 0}});
    std::ifstream in(path_, std::ios::binary);
    std::string bytes((std::istreambuf_iterator<char>(in)), {});
    return bytes.substr(0, bytes.size() - 27);  // without the trailer
  }

  // Reads the log with both replays; both must refuse it with the same fault
  // and leave their sessions empty. Returns the fault.
  std::string Refused() {
    std::string faults[2];
    int i = 0;
    for (const ReplayKind kind : {ReplayKind::Literal, ReplayKind::Fast}) {
      const std::int32_t cs = testing::AddSessionForProject(ws_, project_, path_);
      try {
        ReadProfileFile(ws_, cs, kind);
        ADD_FAILURE() << "log accepted";
      } catch (const LogError& e) {
        EXPECT_EQ(e.file(), path_);
        faults[i] = e.fault();
      }
      EXPECT_TRUE(testing::HoldsNoValues(ws_.Session(cs)));
      ++i;
    }
    EXPECT_EQ(faults[0], faults[1]);
    return faults[0];
  }

  Workspace ws_;
  testing::ScopedTempDir dir_;
  testing::PflHeaderText header_;
  std::string path_;
  std::int32_t project_ = 0;
};

TEST_F(BadLogTest, MissingFile) {
  EXPECT_EQ(Refused(), "The file can not be opened.");
}

TEST_F(BadLogTest, ShortHeader) {
  Write("02\r\n\r\nC:\\a.vbp\r\nC:\\a.ini\r\n12/05/2004\r\n");
  EXPECT_EQ(Refused(), "The header is short: it doesn't hold nine lines.");
}

TEST_F(BadLogTest, CounterFrequencyZeroOrNotANumber) {
  header_.PerformanceFrequency = "0";
  WriteLog({HandBlock{{}, 100}});
  EXPECT_EQ(Refused(), "The counter frequency on line 8 is not above zero: \"0\".");
  header_.PerformanceFrequency = "fast";
  WriteLog({HandBlock{{}, 100}});
  EXPECT_EQ(Refused(), "The counter frequency on line 8 is not a number: \"fast\".");
}

// Line 9 is only read when the trailer gives no probe cost.
TEST_F(BadLogTest, ProbeCostNotANumber) {
  header_.TraceOverhead = "n/a";
  testing::WriteHandLog(path_, header_, {HandBlock{{}, 100}});
  EXPECT_EQ(Refused(), "The probe cost on line 9 is not a number: \"n/a\".");

  WriteLog({HandBlock{{}, 100}});
  const std::int32_t cs = testing::AddSessionForProject(ws_, project_, path_);
  EXPECT_NO_THROW(ReadProfileFile(ws_, cs));
  EXPECT_EQ(ws_.TraceOverhead, 0.5);

  testing::WriteHandLog(path_, header_, {HandBlock{{}, 100}}, testing::TrailerLine("half"));
  EXPECT_EQ(Refused(), "The probe cost of the trailer is not a number: \"half       \".");
}

TEST_F(BadLogTest, BlockLengthNotHex) {
  const std::string start = GoodStart();
  Write(start + "00XYZ1" + std::string(300, 'x'));
  EXPECT_EQ(Refused(), "Block 2 at byte " + std::to_string(start.size()) +
                           " has a length that is not hex: \"00XYZ1\".");
}

TEST_F(BadLogTest, BlockLengthPastTheEnd) {
  Write(GoodStart() + "0FFFFF" + std::string(300, 'x'));
  EXPECT_NE(Refused().find("is cut short: it needs 1048575 bytes, the file holds 300."),
            std::string::npos);
}

TEST_F(BadLogTest, LogCutInTheMiddleOfABlock) {
  const std::string start = GoodStart();
  WriteLog({HandBlock{{In(100, 1), LineAt(101, 1)}, 104, 0}, HandBlock{{Out(105, 1)}, 106, 0}});
  std::filesystem::resize_file(path_, start.size() + 5000);
  EXPECT_NE(Refused().find("Block 2 at byte " + std::to_string(start.size()) + " is cut short"),
            std::string::npos);
  // Cut so short that fewer than 100 bytes of the block remain.
  std::filesystem::resize_file(path_, start.size() + 50);
  EXPECT_NE(Refused().find("the file holds 44."), std::string::npos);
}

TEST_F(BadLogTest, LogCutInsideTheDigitsOfABlockLength) {
  // Cut behind the header, within the first block's six length digits: what
  // is left is too short to be read as a block, but it is no trailer either.
  testing::WriteHandLog(path_, header_, {});
  std::ifstream in(path_, std::ios::binary);
  const std::string head((std::istreambuf_iterator<char>(in)), {});
  for (const std::string digits : {"0", "00C", "00C35"}) {
    Write(head + digits);
    EXPECT_EQ(Refused(), "Block 1 at byte " + std::to_string(head.size()) +
                             " is cut short: its length runs past the end of the file.");
  }
  const std::string start = GoodStart();
  Write(start + "0001");
  EXPECT_NE(Refused().find("Block 2 at byte " + std::to_string(start.size()) + " is cut short"),
            std::string::npos);
}

TEST_F(BadLogTest, BlockThatDoesNotInflate) {
  const std::string start = GoodStart();
  Write(start + testing::FramedBlock(std::string(300, 'x')));
  EXPECT_EQ(Refused(), "Block 2 at byte " + std::to_string(start.size()) + " does not inflate.");

  // A sound stream with one byte of its checksum changed.
  std::string block = testing::Compress(std::string(pfl::kBlockBytes, '\0'), 6);
  block.back() ^= 1;
  Write(start + testing::FramedBlock(block));
  EXPECT_EQ(Refused(), "Block 2 at byte " + std::to_string(start.size()) + " does not inflate.");
}

TEST_F(BadLogTest, LineIdsOutsideTheProject) {
  for (const std::int32_t id : {3, 0, -1, std::numeric_limits<std::int32_t>::min()}) {
    WriteLog({HandBlock{{In(100, 1), LineAt(101, 1)}, 102, 0},
              HandBlock{{LineAt(103, 2), LineAt(104, id)}, 105}});
    EXPECT_EQ(Refused(), "Record 2 of block 2 names line ID " + std::to_string(id) +
                             ", outside the 2 lines of the project.");
  }
}

TEST_F(BadLogTest, ProcedureIdsOutsideTheProject) {
  for (const std::int32_t id : {3, 0, std::numeric_limits<std::int32_t>::min()}) {
    WriteLog({HandBlock{{In(100, 1), LineAt(101, 1), In(102, id)}, 103}});
    EXPECT_EQ(Refused(), "Record 3 of block 1 names procedure ID " + std::to_string(id) +
                             ", outside the 2 procedures of the project.");
  }
}

TEST_F(BadLogTest, MessageForTheUser) {
  const LogError e("C:\\Runs\\run.pfl", "Block 2 at byte 180 does not inflate.");
  EXPECT_EQ(
      e.UserMessage(),
      "The session file:\nC:\\Runs\\run.pfl\ncan not be read ! It was either corrupted or not "
      "generated properly.\nBlock 2 at byte 180 does not inflate.");
}

}  // namespace
}  // namespace zol
