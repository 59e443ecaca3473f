#pragma once

// The packed little-endian images of the value records as .pfd files store
// them: fields in order, no padding, booleans as 16 bits.

#include <string>
#include <string_view>

#include "base/byte_io.h"
#include "session/records.h"

namespace zol {

inline constexpr std::size_t kCodeLineValueImageSize = 36;
inline constexpr std::size_t kProcedureValueImageSize = 84;
inline constexpr std::size_t kModuleValueImageSize = 60;
inline constexpr std::size_t kFlowPairImageSize = 20;

void WriteImage(ByteWriter& w, const CodeLineValue& v);
void WriteImage(ByteWriter& w, const ProcedureValue& v);
void WriteImage(ByteWriter& w, const ModuleValue& v);
void WriteImage(ByteWriter& w, const FlowPair& v);

void ReadImage(ByteReader& r, CodeLineValue& v);
void ReadImage(ByteReader& r, ProcedureValue& v);
void ReadImage(ByteReader& r, ModuleValue& v);
void ReadImage(ByteReader& r, FlowPair& v);

template <typename T>
std::size_t ImageSize();
template <>
inline std::size_t ImageSize<CodeLineValue>() {
  return kCodeLineValueImageSize;
}
template <>
inline std::size_t ImageSize<ProcedureValue>() {
  return kProcedureValueImageSize;
}
template <>
inline std::size_t ImageSize<ModuleValue>() {
  return kModuleValueImageSize;
}
template <>
inline std::size_t ImageSize<FlowPair>() {
  return kFlowPairImageSize;
}

// The image of one record as a string of bytes, and back.
template <typename T>
std::string ToImage(const T& v) {
  ByteWriter w;
  WriteImage(w, v);
  return w.Take();
}
template <typename T>
T FromImage(std::string_view bytes) {
  ByteReader r(bytes);
  T v;
  ReadImage(r, v);
  return v;
}

// Images of a whole 1-based array, first element first.
template <typename T>
std::string ArrayToImage(const Array1<T>& a, int count) {
  ByteWriter w;
  for (int i = 1; i <= count; ++i) WriteImage(w, a(i));
  return w.Take();
}

// Fills elements 1..count of `a` from `bytes`, which must hold exactly that
// many images; anything else is a TruncatedData naming the sizes.
template <typename T>
void ArrayFromImage(std::string_view bytes, Array1<T>& a, int count) {
  const std::size_t expected = ImageSize<T>() * static_cast<std::size_t>(count);
  if (bytes.size() != expected) {
    throw TruncatedData("block of " + std::to_string(bytes.size()) + " bytes where " +
                        std::to_string(count) + " records need " + std::to_string(expected));
  }
  ByteReader r(bytes);
  for (int i = 1; i <= count; ++i) ReadImage(r, a(i));
}

}  // namespace zol
