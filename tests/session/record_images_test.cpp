#include "session/record_images.h"

#include <gtest/gtest.h>

#include <string>

namespace zol {
namespace {

// Builds a byte string from little-endian pieces, so that expected images can
// be written out by hand next to the layout they follow.
struct Image {
  std::string bytes;
  Image& i16(std::int16_t v) { return put(static_cast<std::uint16_t>(v), 2); }
  Image& i32(std::int32_t v) { return put(static_cast<std::uint32_t>(v), 4); }
  Image& f32(float v) { return put(std::bit_cast<std::uint32_t>(v), 4); }
  Image& f64(double v) { return put(std::bit_cast<std::uint64_t>(v), 8); }
  Image& put(std::uint64_t v, int n) {
    for (int i = 0; i < n; ++i) bytes.push_back(static_cast<char>((v >> (8 * i)) & 0xFF));
    return *this;
  }
};

TEST(RecordImages, HandWrittenImagesDecodeToTheirFields) {
  Image line;
  line.i32(7).f64(0.5).f64(0.5 / 7).f64(1.25).f64(1.25 / 7);
  ASSERT_EQ(line.bytes.size(), 36u);
  auto clv = FromImage<CodeLineValue>(line.bytes);
  EXPECT_EQ(clv.Hits, 7);
  EXPECT_EQ(clv.TotalTime, 0.5);
  EXPECT_EQ(clv.ChildAverageTime, 1.25 / 7);

  Image proc;
  proc.i16(-1).i16(0).i32(3).i32(2).i32(4).f64(0.5).f64(1).f64(2).f64(3).f64(4);
  proc.f32(0.25f).f32(0.5f).f64(0.75).f64(0.875).f32(1.0f);
  ASSERT_EQ(proc.bytes.size(), 84u);
  auto pv = FromImage<ProcedureValue>(proc.bytes);
  EXPECT_TRUE(pv.IsProfiled);
  EXPECT_FALSE(pv.IsCovered);
  EXPECT_EQ(pv.Hits, 3);
  EXPECT_EQ(pv.HitLines, 2);
  EXPECT_EQ(pv.TotalLines, 4);
  EXPECT_EQ(pv.ChildAverageTime, 4);
  EXPECT_EQ(pv.AverageTimingRank, 0.5f);
  EXPECT_EQ(pv.ChildTotalTimingRank, 0.75);
  EXPECT_EQ(pv.ChildAverageTimingRank, 0.875);
  EXPECT_EQ(pv.CoverageRank, 1.0f);

  Image mod;
  mod.i16(0).i16(-1).i32(5).i32(10).f64(0.5).i32(1).i32(2).f64(0.5).f64(9.5).i32(3).i32(4);
  mod.f32(0.125f).f32(0.625f);
  ASSERT_EQ(mod.bytes.size(), 60u);
  auto mv = FromImage<ModuleValue>(mod.bytes);
  EXPECT_FALSE(mv.IsProfiled);
  EXPECT_TRUE(mv.IsCovered);
  EXPECT_EQ(mv.TotalLines, 10);
  EXPECT_EQ(mv.TotalProcedures, 2);
  EXPECT_EQ(mv.TotalTime, 9.5);
  EXPECT_EQ(mv.CriticalTotalLines, 4);
  EXPECT_EQ(mv.CoverageRank, 0.625f);

  Image flow;
  flow.i32(1).i32(2).i32(42).f64(0.001);
  ASSERT_EQ(flow.bytes.size(), 20u);
  EXPECT_EQ(FromImage<FlowPair>(flow.bytes), (FlowPair{1, 2, 42, 0.001}));
}

TEST(RecordImages, RoundTripIsByteIdenticalEvenForOddBooleans) {
  // A true stored as 1 by another writer must come back as 1, not -1.
  Image proc;
  proc.i16(1).i16(-1).i32(-5).i32(0).i32(2147483647).f64(-0.0).f64(1e-300).f64(3).f64(4).f64(5);
  proc.f32(-1.5f).f32(2.5f).f64(6).f64(7).f32(8);
  EXPECT_EQ(ToImage(FromImage<ProcedureValue>(proc.bytes)), proc.bytes);

  Image mod;
  mod.i16(2).i16(0).i32(1).i32(2).f64(3).i32(4).i32(5).f64(6).f64(7).i32(8).i32(9).f32(10).f32(11);
  EXPECT_EQ(ToImage(FromImage<ModuleValue>(mod.bytes)), mod.bytes);

  CodeLineValue clv{3, 0.1, 0.2, 0.3, 0.4};
  EXPECT_EQ(FromImage<CodeLineValue>(ToImage(clv)), clv);
}

TEST(RecordImages, ArrayBlocksMustMatchTheirCount) {
  Array1<FlowPair> pairs;
  pairs.ReDim(2);
  pairs(1) = {1, 2, 3, 0.5};
  pairs(2) = {2, 1, 1, 0.25};
  std::string block = ArrayToImage(pairs, 2);
  ASSERT_EQ(block.size(), 40u);

  Array1<FlowPair> back;
  back.ReDim(2);
  ArrayFromImage(block, back, 2);
  EXPECT_EQ(back, pairs);

  EXPECT_THROW(ArrayFromImage(block.substr(0, 39), back, 2), TruncatedData);
  EXPECT_THROW(ArrayFromImage(block + "x", back, 2), TruncatedData);
}

TEST(VBArray, KeepsItsFirstIndexAndRejectsBadIds) {
  Array1<int> a;
  EXPECT_FALSE(a.IsDimensioned());
  EXPECT_EQ(a.UBound(), 0);
  EXPECT_THROW(a(1), BoundsError);
  a.ReDim(3);
  a(1) = 10;
  a(3) = 30;
  EXPECT_THROW(a(0), BoundsError);
  EXPECT_THROW(a(4), BoundsError);
  a.ReDimPreserve(5);
  EXPECT_EQ(a(1), 10);
  EXPECT_EQ(a(3), 30);
  EXPECT_EQ(a(5), 0);
  a.ReDim(2);
  EXPECT_EQ(a(1), 0);

  Array0<int> z;
  z.ReDim(0);
  EXPECT_EQ(z.Count(), 1);
  EXPECT_NO_THROW(z(0));
  EXPECT_THROW(z(-1), BoundsError);
}

}  // namespace
}  // namespace zol
