#include "grid/table_text.h"

#include <algorithm>
#include <vector>

namespace zol {

namespace {

void AppendAligned(std::string& out, const std::string& text, std::size_t width, Alignment align) {
  const std::size_t pad = width > text.size() ? width - text.size() : 0;
  if (align == Alignment::Right) {
    out.append(pad, ' ').append(text);
  } else if (align == Alignment::Center) {
    out.append(pad / 2, ' ').append(text).append(pad - pad / 2, ' ');
  } else {
    out.append(text).append(pad, ' ');
  }
}

}  // namespace

std::string TableAsText(const Table& table) {
  const std::vector<int>& order = table.GetHeadersPositions();
  std::vector<std::size_t> widths;
  for (const int c : order) {
    std::size_t w = table.ColumnAt(c).Header.size();
    for (int r = 1; r <= table.RowCount(); ++r) w = std::max(w, table.Text(r, c).size());
    widths.push_back(w);
  }
  std::string out;
  const auto writeLine = [&](const auto& textOf) {
    const std::size_t start = out.size();
    for (std::size_t k = 0; k < order.size(); ++k) {
      if (k > 0) out.append("  ");
      AppendAligned(out, textOf(order[k]), widths[k], table.ColumnAt(order[k]).Align);
    }
    const std::size_t end = out.find_last_not_of(' ');
    out.resize(end == std::string::npos || end < start ? start : end + 1);
    out.push_back('\n');
  };
  writeLine([&](int c) { return table.ColumnAt(c).Header; });
  for (int r = 1; r <= table.RowCount(); ++r) {
    writeLine([&](int c) { return table.Text(r, c); });
  }
  return out;
}

}  // namespace zol
