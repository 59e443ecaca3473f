#include "project/scan_line.h"

#include <cmath>
#include <limits>
#include <stdexcept>

#include "base/numbers.h"
#include "base/text.h"

namespace zol {

namespace {

bool StartsWith(std::string_view s, std::string_view prefix) {
  return s.substr(0, prefix.size()) == prefix;
}

bool EndsWith(std::string_view s, std::string_view suffix) {
  return s.size() >= suffix.size() && s.substr(s.size() - suffix.size()) == suffix;
}

std::int32_t LeadingNumber(std::string_view text) {
  const double v = RoundHalfEven(Val(text));
  if (!(v >= std::numeric_limits<std::int32_t>::min() &&
        v <= std::numeric_limits<std::int32_t>::max())) {
    throw std::range_error("probe number " + Abbreviated(Trim(text)) + " is out of range");
  }
  return static_cast<std::int32_t>(v);
}

std::int32_t NumberBehind(std::string_view s, std::string_view probe) {
  return LeadingNumber(s.substr(probe.size()));
}

ScanLine Entry(ScanLineKind kind, std::string_view s, std::string_view probe) {
  ScanLine line{kind, NumberBehind(s, probe)};
  line.critical = InStr(1, s, "'C") > 0;
  line.dead = InStr(1, s, "'D") > 0;
  return line;
}

}  // namespace

ScanLine ClassifyScanLine(std::string_view firstLine, std::string_view sourceLine,
                          std::string_view appPrefix) {
  const std::string_view s = sourceLine;
  if (EndsWith(firstLine, "'ID")) return {ScanLineKind::AddedLine};

  const std::string lineProbe = std::string(appPrefix) + "zolExecuteLine ";
  if (StartsWith(s, lineProbe)) {
    ScanLine line{ScanLineKind::LineProbe, NumberBehind(s, lineProbe)};
    line.behind = EndsWith(s, "'B");
    return line;
  }
  if (StartsWith(s, std::string(appPrefix) + "zolProcOut ")) return {ScanLineKind::ExitProbe};
  const std::string entryProbe = std::string(appPrefix) + "zolProcIn ";
  if (StartsWith(s, entryProbe)) return Entry(ScanLineKind::EntryProbe, s, entryProbe);

  if (StartsWith(s, "'zolLine ")) {
    const int colon = InStr(1, s, ":");
    if (colon == 0) {
      throw std::invalid_argument("marker " + std::string(s) + " has no \":\"");
    }
    // The number stands between the marker word and the ":".
    return {ScanLineKind::RewrittenLine, LeadingNumber(Mid(s, 10, colon - 10))};
  }
  if (StartsWith(s, "'zolProcIn ")) return Entry(ScanLineKind::UntimedEntry, s, "'zolProcIn ");
  if (StartsWith(s, "Attribute ")) return {ScanLineKind::Attribute};
  return {ScanLineKind::Code};
}

std::string RewrittenOriginal(std::string_view originalLine) {
  const int colon = InStr(1, originalLine, ":");
  return TrimEx(Mid(originalLine, colon + 1), "\r\n");
}

}  // namespace zol
