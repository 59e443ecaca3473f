#include "session/record_images.h"

namespace zol {

namespace {

// The sizes of the images are binding: they are counted here from the field
// widths, so a field added or retyped in records.h fails the build.
constexpr std::size_t kBool = 2, kI32 = 4, kF32 = 4, kF64 = 8;
static_assert(kI32 + 4 * kF64 == kCodeLineValueImageSize);
static_assert(2 * kBool + 3 * kI32 + 5 * kF64 + 2 * kF32 + 2 * kF64 + kF32 ==
              kProcedureValueImageSize);
static_assert(2 * kBool + 2 * kI32 + kF64 + 2 * kI32 + kF64 + kF64 + 2 * kI32 + 2 * kF32 ==
              kModuleValueImageSize);
static_assert(3 * kI32 + kF64 == kFlowPairImageSize);

static_assert(sizeof(CodeLineValue::Hits) == kI32 && sizeof(CodeLineValue::TotalTime) == kF64);
static_assert(sizeof(ProcedureValue::IsProfiled) == kBool &&
              sizeof(ProcedureValue::TotalTimingRank) == kF32 &&
              sizeof(ProcedureValue::ChildTotalTimingRank) == kF64 &&
              sizeof(ProcedureValue::CoverageRank) == kF32);
static_assert(sizeof(ModuleValue::IsCovered) == kBool && sizeof(ModuleValue::CoverageRank) == kF32);
static_assert(sizeof(FlowPair::ChildTime) == kF64);

void Bool(ByteWriter& w, VBBool b) {
  w.I16(b.Raw());
}
VBBool Bool(ByteReader& r) {
  return VBBool::FromRaw(r.I16());
}

}  // namespace

void WriteImage(ByteWriter& w, const CodeLineValue& v) {
  w.I32(v.Hits);
  w.F64(v.TotalTime);
  w.F64(v.AverageTime);
  w.F64(v.ChildTotalTime);
  w.F64(v.ChildAverageTime);
}

void ReadImage(ByteReader& r, CodeLineValue& v) {
  v.Hits = r.I32();
  v.TotalTime = r.F64();
  v.AverageTime = r.F64();
  v.ChildTotalTime = r.F64();
  v.ChildAverageTime = r.F64();
}

void WriteImage(ByteWriter& w, const ProcedureValue& v) {
  Bool(w, v.IsProfiled);
  Bool(w, v.IsCovered);
  w.I32(v.Hits);
  w.I32(v.HitLines);
  w.I32(v.TotalLines);
  w.F64(v.Coverage);
  w.F64(v.TotalTime);
  w.F64(v.AverageTime);
  w.F64(v.ChildTotalTime);
  w.F64(v.ChildAverageTime);
  w.F32(v.TotalTimingRank);
  w.F32(v.AverageTimingRank);
  w.F64(v.ChildTotalTimingRank);
  w.F64(v.ChildAverageTimingRank);
  w.F32(v.CoverageRank);
}

void ReadImage(ByteReader& r, ProcedureValue& v) {
  v.IsProfiled = Bool(r);
  v.IsCovered = Bool(r);
  v.Hits = r.I32();
  v.HitLines = r.I32();
  v.TotalLines = r.I32();
  v.Coverage = r.F64();
  v.TotalTime = r.F64();
  v.AverageTime = r.F64();
  v.ChildTotalTime = r.F64();
  v.ChildAverageTime = r.F64();
  v.TotalTimingRank = r.F32();
  v.AverageTimingRank = r.F32();
  v.ChildTotalTimingRank = r.F64();
  v.ChildAverageTimingRank = r.F64();
  v.CoverageRank = r.F32();
}

void WriteImage(ByteWriter& w, const ModuleValue& v) {
  Bool(w, v.IsProfiled);
  Bool(w, v.IsCovered);
  w.I32(v.HitLines);
  w.I32(v.TotalLines);
  w.F64(v.LineCoverage);
  w.I32(v.HitProcedures);
  w.I32(v.TotalProcedures);
  w.F64(v.ProcedureCoverage);
  w.F64(v.TotalTime);
  w.I32(v.CriticalHitLines);
  w.I32(v.CriticalTotalLines);
  w.F32(v.TotalTimingRank);
  w.F32(v.CoverageRank);
}

void ReadImage(ByteReader& r, ModuleValue& v) {
  v.IsProfiled = Bool(r);
  v.IsCovered = Bool(r);
  v.HitLines = r.I32();
  v.TotalLines = r.I32();
  v.LineCoverage = r.F64();
  v.HitProcedures = r.I32();
  v.TotalProcedures = r.I32();
  v.ProcedureCoverage = r.F64();
  v.TotalTime = r.F64();
  v.CriticalHitLines = r.I32();
  v.CriticalTotalLines = r.I32();
  v.TotalTimingRank = r.F32();
  v.CoverageRank = r.F32();
}

void WriteImage(ByteWriter& w, const FlowPair& v) {
  w.I32(v.FromProc);
  w.I32(v.ToProc);
  w.I32(v.Hits);
  w.F64(v.ChildTime);
}

void ReadImage(ByteReader& r, FlowPair& v) {
  v.FromProc = r.I32();
  v.ToProc = r.I32();
  v.Hits = r.I32();
  v.ChildTime = r.F64();
}

}  // namespace zol
