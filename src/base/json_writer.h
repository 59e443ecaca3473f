#pragma once

// A small streaming JSON writer for zolprof's machine-readable output.
// Texts of this program are single-byte (Windows-1252) and are written by a
// Latin-1 reading: each byte becomes the character of the same code, so the
// output is valid UTF-8 and the original bytes can be recovered exactly.
// Doubles are written in their shortest form that reads back to the same value.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zol {

class JsonWriter {
 public:
  JsonWriter& BeginObject();
  JsonWriter& EndObject();
  JsonWriter& BeginArray();
  JsonWriter& EndArray();
  // The key of the next value inside an object.
  JsonWriter& Key(std::string_view key);

  JsonWriter& String(std::string_view bytes);
  JsonWriter& Int(std::int64_t v);
  JsonWriter& Double(double v);
  JsonWriter& Single(float v);
  JsonWriter& Bool(bool v);
  JsonWriter& Null();

  // Shorthands for a key followed by its value.
  JsonWriter& Field(std::string_view key, const std::string& v) { return Key(key).String(v); }
  JsonWriter& Field(std::string_view key, double v) { return Key(key).Double(v); }
  JsonWriter& Field(std::string_view key, float v) { return Key(key).Single(v); }
  JsonWriter& Field(std::string_view key, std::int32_t v) { return Key(key).Int(v); }
  JsonWriter& Field(std::string_view key, bool v) { return Key(key).Bool(v); }

  const std::string& Text() const { return out_; }

 private:
  void BeforeValue();
  std::string out_;
  // Per open container: true once it holds an element.
  std::vector<bool> hasElement_;
  bool afterKey_ = false;
};

std::string JsonQuoteLatin1(std::string_view bytes);

}  // namespace zol
