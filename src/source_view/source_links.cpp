#include "source_view/source_links.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "base/numbers.h"
#include "base/text.h"

namespace zol {

namespace {

// A link part read as the language reads a number into a whole one: leading
// digits, rounded half to even, and kept within range.
std::int32_t LinkNumber(const std::string& part) {
  double v = 0;
  try {
    v = Val(part);
  } catch (const std::range_error&) {
    return 0;
  }
  return static_cast<std::int32_t>(Clamp(RoundHalfEven(v), INT32_MIN, INT32_MAX));
}

bool IsBrowserUrl(const std::string& url) {
  return TextEquals(Right(url, 4), ".htm") || Right(url, 1) == "/" ||
         url.find('#') != std::string::npos;
}

}  // namespace

LinkDecision DecideLink(const std::string& url) {
  if (IsBrowserUrl(url)) return {};
  LinkDecision d;
  d.cancel = true;
  const std::vector<std::string> parts = Split(url, "|");
  if (parts.size() >= 4) {
    d.module = LinkNumber(parts[1]);
    d.procedure = LinkNumber(parts[2]);
    d.line = LinkNumber(parts[3]);
    d.openMenu = true;
  }
  return d;
}

}  // namespace zol
