#pragma once

// Values turned into text for the trace (argument lists) and for the dump of
// state that goes into an error report.

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/vbarray.h"
#include "session/vbbool.h"

namespace zol {

// The shape of an array: lower and upper bound per dimension. No dimensions:
// an array that was never dimensioned.
struct ArrayShape {
  std::vector<std::pair<std::int64_t, std::int64_t>> bounds;
};

template <typename T, int First>
ArrayShape ShapeOf(const VBArray<T, First>& a) {
  ArrayShape shape;
  if (a.IsDimensioned()) shape.bounds.push_back({a.LBound(), a.UBound()});
  return shape;
}

// A scalar as text, and the name of its type as a report shows it.
std::string ValueText(std::string_view v);
std::string ValueText(double v);
std::string ValueText(float v);
std::string ValueText(bool v);
std::string ValueText(std::int64_t v);
inline std::string ValueText(const char* v) {
  return ValueText(std::string_view(v));
}
inline std::string ValueText(const std::string& v) {
  return ValueText(std::string_view(v));
}
inline std::string ValueText(VBBool v) {
  return ValueText(static_cast<bool>(v));
}
template <std::integral T>
requires(!std::same_as<T, bool>) std::string ValueText(T v) {
  return ValueText(static_cast<std::int64_t>(v));
}

const char* TypeName(std::string_view);
const char* TypeName(double);
const char* TypeName(float);
const char* TypeName(bool);
inline const char* TypeName(const std::string&) {
  return TypeName(std::string_view());
}
inline const char* TypeName(VBBool) {
  return TypeName(false);
}
template <std::integral T>
requires(!std::same_as<T, bool>) const char* TypeName(T) {
  return sizeof(T) <= 2 ? "Integer" : sizeof(T) <= 4 ? "Long" : "Currency";
}

// "name = value" of one argument.
std::string zolParamToText(std::string_view name, const ArrayShape& shape);
template <typename T>
std::string zolParamToText(std::string_view name, const T& value) {
  return std::string(name) + " = " + ValueText(value);
}
template <typename T, int First>
std::string zolParamToText(std::string_view name, const VBArray<T, First>& a) {
  return zolParamToText(name, ShapeOf(a));
}
// An exception passed as an argument: its kind and message.
std::string zolParamToText(std::string_view name, const std::exception& e);

// The argument list of a trace line: "(a = 1, b = 2) ", or "()" for none.
std::string zolParamsText(std::initializer_list<std::string> params);

}  // namespace zol
