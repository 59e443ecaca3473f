#include "session/record_images.h"

#include "session/record_fields.h"

namespace zol {

namespace {

// The sizes of the images are binding: they are counted here from the field
// list, so a field added or retyped in records.h fails the build.
static_assert(CountImageBytes<CodeLineValue>() == kCodeLineValueImageSize);
static_assert(CountImageBytes<ProcedureValue>() == kProcedureValueImageSize);
static_assert(CountImageBytes<ModuleValue>() == kModuleValueImageSize);
static_assert(CountImageBytes<FlowPair>() == kFlowPairImageSize);

void Put(ByteWriter& w, VBBool b) {
  w.I16(b.Raw());
}
void Put(ByteWriter& w, std::int32_t v) {
  w.I32(v);
}
void Put(ByteWriter& w, float v) {
  w.F32(v);
}
void Put(ByteWriter& w, double v) {
  w.F64(v);
}

void Get(ByteReader& r, VBBool& b) {
  b = VBBool::FromRaw(r.I16());
}
void Get(ByteReader& r, std::int32_t& v) {
  v = r.I32();
}
void Get(ByteReader& r, float& v) {
  v = r.F32();
}
void Get(ByteReader& r, double& v) {
  v = r.F64();
}

template <typename R>
void WriteFields(ByteWriter& w, const R& v) {
  VisitFields(v, [&w](std::string_view, const auto& field) { Put(w, field); });
}

template <typename R>
void ReadFields(ByteReader& r, R& v) {
  VisitFields(v, [&r](std::string_view, auto& field) { Get(r, field); });
}

}  // namespace

void WriteImage(ByteWriter& w, const CodeLineValue& v) {
  WriteFields(w, v);
}
void WriteImage(ByteWriter& w, const ProcedureValue& v) {
  WriteFields(w, v);
}
void WriteImage(ByteWriter& w, const ModuleValue& v) {
  WriteFields(w, v);
}
void WriteImage(ByteWriter& w, const FlowPair& v) {
  WriteFields(w, v);
}

void ReadImage(ByteReader& r, CodeLineValue& v) {
  ReadFields(r, v);
}
void ReadImage(ByteReader& r, ProcedureValue& v) {
  ReadFields(r, v);
}
void ReadImage(ByteReader& r, ModuleValue& v) {
  ReadFields(r, v);
}
void ReadImage(ByteReader& r, FlowPair& v) {
  ReadFields(r, v);
}

}  // namespace zol
