#include "base/json_writer.h"

#include <charconv>
#include <cmath>

namespace zol {

std::string JsonQuoteLatin1(std::string_view bytes) {
  static const char* kHex = "0123456789abcdef";
  std::string out;
  out.reserve(bytes.size() + 2);
  out.push_back('"');
  for (char ch : bytes) {
    const auto c = static_cast<unsigned char>(ch);
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (c < 0x20) {
          out += "\\u00";
          out.push_back(kHex[c >> 4]);
          out.push_back(kHex[c & 0xF]);
        } else if (c < 0x80) {
          out.push_back(static_cast<char>(c));
        } else {  // U+0080..U+00FF in UTF-8
          out.push_back(static_cast<char>(0xC0 | (c >> 6)));
          out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
  }
  out.push_back('"');
  return out;
}

void JsonWriter::BeforeValue() {
  if (afterKey_) {
    afterKey_ = false;
    return;
  }
  if (!hasElement_.empty()) {
    if (hasElement_.back()) out_.push_back(',');
    hasElement_.back() = true;
  }
}

JsonWriter& JsonWriter::BeginObject() {
  BeforeValue();
  out_.push_back('{');
  hasElement_.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::EndObject() {
  out_.push_back('}');
  hasElement_.pop_back();
  return *this;
}

JsonWriter& JsonWriter::BeginArray() {
  BeforeValue();
  out_.push_back('[');
  hasElement_.push_back(false);
  return *this;
}

JsonWriter& JsonWriter::EndArray() {
  out_.push_back(']');
  hasElement_.pop_back();
  return *this;
}

JsonWriter& JsonWriter::Key(std::string_view key) {
  BeforeValue();
  out_ += JsonQuoteLatin1(key);
  out_.push_back(':');
  afterKey_ = true;
  return *this;
}

JsonWriter& JsonWriter::String(std::string_view bytes) {
  BeforeValue();
  out_ += JsonQuoteLatin1(bytes);
  return *this;
}

JsonWriter& JsonWriter::Int(std::int64_t v) {
  BeforeValue();
  out_ += std::to_string(v);
  return *this;
}

namespace {
template <typename F>
void AppendShortest(std::string& out, F v) {
  if (!std::isfinite(v)) {  // JSON has no NaN or infinity
    out += "null";
    return;
  }
  char buf[64];
  auto res = std::to_chars(buf, buf + sizeof buf, v);
  out.append(buf, res.ptr);
}
}  // namespace

JsonWriter& JsonWriter::Double(double v) {
  BeforeValue();
  AppendShortest(out_, v);
  return *this;
}

JsonWriter& JsonWriter::Single(float v) {
  BeforeValue();
  AppendShortest(out_, v);
  return *this;
}

JsonWriter& JsonWriter::Bool(bool v) {
  BeforeValue();
  out_ += v ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::Null() {
  BeforeValue();
  out_ += "null";
  return *this;
}

}  // namespace zol
