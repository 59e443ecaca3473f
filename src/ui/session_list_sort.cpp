#include "ui/session_list_sort.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <string>
#include <variant>

#include "base/cp1252.h"
#include "base/numbers.h"
#include "base/text.h"

namespace zol {

namespace {

using SortKey = std::variant<double, std::string>;  // numbers sort before texts

// "dd/mm/yyyy hh:mm:ss" (logs) or "yyyy-mm-dd hh:mm:ss" (sessions made in
// memory) as one comparable number.
std::optional<double> dateKey(const std::string& text) {
  int a = 0, b = 0, c = 0, h = 0, mi = 0, s = 0;
  char sep1 = 0, sep2 = 0;
  if (std::sscanf(text.c_str(), "%d%c%d%c%d %d:%d:%d", &a, &sep1, &b, &sep2, &c, &h, &mi, &s) < 5) {
    return std::nullopt;
  }
  int year = c, month = b, day = a;
  if (sep1 == '-' && sep2 == '-') {
    year = a;
    day = c;
  } else if (sep1 != '/' || sep2 != '/') {
    return std::nullopt;
  }
  return ((((year * 100.0 + month) * 100 + day) * 100 + h) * 100 + mi) * 100 + s;
}

std::string textKey(const std::string& text) {
  std::string key = text;
  for (char& ch : key) ch = LowerCase1252(ch);
  return key;
}

SortKey KeyOf(const SessionListRow& row, std::int32_t column) {
  const std::string& text = row.Columns[static_cast<std::size_t>(column - 1)];
  switch (column) {
    case 2:
      if (auto d = dateKey(text)) return *d;
      break;
    case 4:
      return VersionToDouble(text);
    case 5: {
      const std::size_t at = text.find(" Kb: ");
      return textKey(at == std::string::npos ? text : text.substr(at + 5));
    }
    default:
      break;
  }
  if (auto n = ParseNumberText(Trim(text))) return *n;
  return textKey(text);
}

}  // namespace

void SessionListSort::click(std::int32_t column) {
  if (column == Column) Descending = !Descending;
  Column =
      std::clamp<std::int32_t>(column, 1, static_cast<std::int32_t>(kSessionListHeaders.size()));
}

void sortSessionRows(std::vector<SessionListRow>& rows, const SessionListSort& sort) {
  const std::int32_t column = std::clamp<std::int32_t>(
      sort.Column, 1, static_cast<std::int32_t>(kSessionListHeaders.size()));
  std::vector<std::pair<SortKey, SessionListRow>> keyed;
  keyed.reserve(rows.size());
  for (SessionListRow& row : rows) keyed.emplace_back(KeyOf(row, column), std::move(row));
  std::stable_sort(keyed.begin(), keyed.end(), [&](const auto& x, const auto& y) {
    return sort.Descending ? y.first < x.first : x.first < y.first;
  });
  rows.clear();
  for (auto& [key, row] : keyed) rows.push_back(std::move(row));
}

}  // namespace zol
