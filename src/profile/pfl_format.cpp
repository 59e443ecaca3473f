#include "profile/pfl_format.h"

#include <charconv>
#include <cmath>

namespace zol::pfl {

std::optional<Header> SplitHeader(std::string_view head) {
  Header h;
  std::size_t pos = 0;
  for (int line = 0; line < kHeaderLines; ++line) {
    const std::size_t end = head.find_first_of("\r\n", pos);
    if (end == std::string_view::npos) return std::nullopt;
    h.Lines[line] = std::string(head.substr(pos, end - pos));
    pos = end + 1;
    if (head[end] == '\r' && pos < head.size() && head[pos] == '\n') ++pos;
  }
  h.DataStart = static_cast<std::int64_t>(pos);
  return h;
}

std::optional<double> ParseLogNumber(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return std::nullopt;
  const std::size_t last = text.find_last_not_of(" \t");
  std::string digits(text.substr(first, last - first + 1));
  if (digits[0] == '+') {
    digits.erase(0, 1);
    if (digits.empty() || digits[0] == '-') return std::nullopt;
  }
  // The logger writes the decimal mark of its machine's locale.
  for (char& c : digits) {
    if (c == ',') c = '.';
  }
  double value = 0;
  const char* begin = digits.data();
  const char* end = begin + digits.size();
  const auto [ptr, ec] = std::from_chars(begin, end, value, std::chars_format::general);
  if (ec != std::errc() || ptr != end || !std::isfinite(value)) return std::nullopt;
  return value;
}

std::optional<std::string_view> TrailerNumberText(std::string_view last25) {
  if (last25.substr(0, kTrailerTag.size()) != kTrailerTag) return std::nullopt;
  return last25.substr(kTrailerTag.size());
}

std::optional<std::uint32_t> ParseBlockLength(std::string_view digits) {
  if (digits.size() != kLengthDigits) return std::nullopt;
  std::uint32_t value = 0;
  for (const char c : digits) {
    int v;
    if (c >= '0' && c <= '9') {
      v = c - '0';
    } else if (c >= 'A' && c <= 'F') {
      v = c - 'A' + 10;
    } else if (c >= 'a' && c <= 'f') {
      v = c - 'a' + 10;
    } else {
      return std::nullopt;
    }
    value = value * 16 + static_cast<std::uint32_t>(v);
  }
  return value;
}

}  // namespace zol::pfl
