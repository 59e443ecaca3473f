#pragma once

// Logs written record by record for the reader's tests, and comparisons of the
// sessions that two replays leave.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <string>
#include <vector>

#include "profile/pfl_format.h"
#include "session/records.h"
#include "support/pfl_writer.h"

namespace zol::testing {

// Clock values are given in the replay's unit (counter ticks / 10000).
inline std::int64_t Ticks(double lTime) {
  return std::llround(lTime * 10000);
}

inline pfl::LogRecord In(double t, std::int32_t proc) {
  return {Ticks(t), pfl::kProcedureIn, proc};
}
inline pfl::LogRecord Out(double t, std::int32_t proc) {
  return {Ticks(t), pfl::kProcedureOut, proc};
}
inline pfl::LogRecord LineAt(double t, std::int32_t line) {
  return {Ticks(t), pfl::kLineRun, line};
}

struct HandBlock {
  std::vector<pfl::LogRecord> records;
  double closeAt = 0;  // clock value of the closing record
  // zlib level; 0 stores the block uncompressed (800 KB), so that the block
  // before it doesn't end within 1000 bytes of the end of the file.
  int level = 6;
};

inline void WriteHandLog(const std::string& path, const PflHeaderText& header,
                         const std::vector<HandBlock>& blocks,
                         std::optional<std::string> trailer = std::nullopt) {
  PflWriter writer(path, header);
  for (const HandBlock& b : blocks) {
    writer.SetLevel(b.level);
    for (const pfl::LogRecord& r : b.records) writer.AddRecord(r);
    writer.CloseBlock(Ticks(b.closeAt));
  }
  writer.Finish(trailer);
}

// Equal up to rounding: the two replays add the same amounts in another order.
inline ::testing::AssertionResult Near(double a, double b) {
  const double tolerance = 1e-9 * std::max(std::fabs(a), std::fabs(b)) + 1e-15;
  if (std::fabs(a - b) <= tolerance) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << a << " vs " << b << " (difference " << a - b << ")";
}

inline void ExpectSameValues(const Session& expected, const Session& actual) {
  EXPECT_EQ(expected.FirstProc, actual.FirstProc);
  EXPECT_EQ(expected.LastProc, actual.LastProc);
  ASSERT_EQ(expected.CodeLineValue.Count(), actual.CodeLineValue.Count());
  for (std::int32_t i = 1; i <= expected.CodeLineValue.UBound(); ++i) {
    const auto& e = expected.CodeLineValue(i);
    const auto& a = actual.CodeLineValue(i);
    EXPECT_EQ(e.Hits, a.Hits) << "line " << i;
    EXPECT_TRUE(Near(e.TotalTime, a.TotalTime)) << "line " << i;
    EXPECT_TRUE(Near(e.ChildTotalTime, a.ChildTotalTime)) << "line " << i;
  }
  ASSERT_EQ(expected.ProcedureValue.Count(), actual.ProcedureValue.Count());
  for (std::int32_t i = 1; i <= expected.ProcedureValue.UBound(); ++i) {
    const auto& e = expected.ProcedureValue(i);
    const auto& a = actual.ProcedureValue(i);
    EXPECT_EQ(e.Hits, a.Hits) << "procedure " << i;
    EXPECT_TRUE(Near(e.TotalTime, a.TotalTime)) << "procedure " << i;
    EXPECT_TRUE(Near(e.ChildTotalTime, a.ChildTotalTime)) << "procedure " << i;
  }
  ASSERT_EQ(expected.nFlowPair, actual.nFlowPair);
  for (std::int32_t i = 1; i <= expected.nFlowPair; ++i) {
    const auto& e = expected.FlowPair(i);
    const auto& a = actual.FlowPair(i);
    EXPECT_EQ(e.FromProc, a.FromProc) << "pair " << i;
    EXPECT_EQ(e.ToProc, a.ToProc) << "pair " << i;
    EXPECT_EQ(e.Hits, a.Hits) << "pair " << i;
    EXPECT_TRUE(Near(e.ChildTime, a.ChildTime)) << "pair " << i;
  }
}

// Nothing of a replay is left in the session.
inline bool HoldsNoValues(const Session& s) {
  for (const auto& v : s.CodeLineValue) {
    if (!(v == CodeLineValue{})) return false;
  }
  for (const auto& v : s.ProcedureValue) {
    if (!(v == ProcedureValue{})) return false;
  }
  return s.nFlowPair == 0 && s.FlowPair.Count() == 0 && s.FirstProc == 0 && s.LastProc == 0 &&
         !s.Loaded;
}

}  // namespace zol::testing
