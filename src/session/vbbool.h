#pragma once

#include <cstdint>

namespace zol {

// A 16-bit boolean as the file images store it: -1 for true, 0 for false. The
// raw value is kept as read, so an image read and written again is unchanged
// even when a writer used another non-zero value for true.
class VBBool {
 public:
  constexpr VBBool() = default;
  constexpr VBBool(bool b) : raw_(b ? -1 : 0) {}  // NOLINT(google-explicit-constructor)
  static constexpr VBBool FromRaw(std::int16_t raw) {
    VBBool b;
    b.raw_ = raw;
    return b;
  }
  constexpr operator bool() const { return raw_ != 0; }  // NOLINT(google-explicit-constructor)
  constexpr std::int16_t Raw() const { return raw_; }
  friend constexpr bool operator==(VBBool a, VBBool b) { return (a.raw_ != 0) == (b.raw_ != 0); }

 private:
  std::int16_t raw_ = 0;
};

}  // namespace zol
