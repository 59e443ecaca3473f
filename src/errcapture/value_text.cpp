#include "errcapture/value_text.h"

#include <cmath>
#include <cstdio>
#include <typeinfo>

namespace zol {

std::string ValueText(std::string_view v) {
  return std::string(v);
}

std::string ValueText(double v) {
  if (std::isnan(v)) return "NaN";
  if (std::isinf(v)) return v > 0 ? "Infinity" : "-Infinity";
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.15g", v);
  return buf;
}

std::string ValueText(float v) {
  if (!std::isfinite(v)) return ValueText(static_cast<double>(v));
  char buf[32];
  std::snprintf(buf, sizeof buf, "%.7g", static_cast<double>(v));
  return buf;
}

std::string ValueText(bool v) {
  return v ? "True" : "False";
}

std::string ValueText(std::int64_t v) {
  return std::to_string(v);
}

const char* TypeName(std::string_view) {
  return "String";
}
const char* TypeName(double) {
  return "Double";
}
const char* TypeName(float) {
  return "Single";
}
const char* TypeName(bool) {
  return "Boolean";
}

std::string zolParamToText(std::string_view name, const ArrayShape& shape) {
  std::string text(name);
  if (shape.bounds.empty()) return text + "(Undimensioned Array)";
  text += "(";
  for (const auto& [lower, upper] : shape.bounds) {
    text += std::to_string(lower) + " To " + std::to_string(upper) + ", ";
  }
  text.resize(text.size() - 2);
  return text + ")";
}

std::string zolParamToText(std::string_view name, const std::exception& e) {
  return std::string(typeid(e).name()) + " " + std::string(name) + " = " + e.what();
}

std::string zolParamsText(std::initializer_list<std::string> params) {
  if (params.size() == 0) return "()";
  std::string text = "(";
  for (const std::string& p : params) {
    if (text.size() > 1) text += ", ";
    text += p;
  }
  return text + ") ";
}

}  // namespace zol
