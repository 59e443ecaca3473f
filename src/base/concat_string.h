#pragma once

// The growing text buffer of all page building. Appends run in place; the
// store grows by ccIncrement blanks (or by the appended text's length when
// that is larger) whenever the used length reaches the allocated one, so a
// page of many thousand rows is never copied at every append.

#include <algorithm>
#include <string>
#include <string_view>

namespace zol {

class CConcatString {
 public:
  void Append(std::string_view s) {
    const auto len = static_cast<long>(s.size());
    if (ccOffset_ + len >= StrTempLength_) {
      const long grow = len <= ccIncrement_ ? ccIncrement_ : len;
      StrTemp_.append(static_cast<std::size_t>(grow), ' ');
      StrTempLength_ += grow;
    }
    std::copy(s.begin(), s.end(), StrTemp_.begin() + ccOffset_);
    ccOffset_ += len;
  }
  CConcatString& operator<<(std::string_view s) {
    Append(s);
    return *this;
  }

  std::string Value() const { return StrTemp_.substr(0, static_cast<std::size_t>(ccOffset_)); }
  std::string_view View() const {
    return std::string_view(StrTemp_).substr(0, static_cast<std::size_t>(ccOffset_));
  }
  void SetValue(std::string_view s) {
    StrTemp_.assign(s);
    StrTempLength_ = static_cast<long>(s.size());
    ccOffset_ = StrTempLength_;
  }
  long Length() const { return ccOffset_; }
  void SetIncrement(long increment) { ccIncrement_ = increment; }

 private:
  long ccIncrement_ = 50000;
  long ccOffset_ = 0;
  std::string StrTemp_;
  long StrTempLength_ = 0;
};

}  // namespace zol
