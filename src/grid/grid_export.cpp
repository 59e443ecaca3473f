#include "grid/grid_export.h"

#include <string_view>

#include "base/files.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/vb_format.h"

namespace zol {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool IsBarsColumn(const Column& column) {
  return column.Header.find("Bars") != std::string::npos;
}

bool NeedsQuotes(std::string_view text) {
  return text.find_first_of(",\"\r\n") != std::string_view::npos;
}

std::string Quoted(std::string_view text) {
  return "\"" + Replace(text, "\"", "\"\"") + "\"";
}

std::string WithoutTabs(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c == '\t' || c == '\r' || c == '\n') c = ' ';
  }
  return out;
}

// One cell as written. `firstColumn`: the row's own text, which stands as it
// is; `lineColumn`: the source text, whose commas are never numbers.
std::string ExportCell(const std::string& text, bool commaSeparated, bool firstColumn,
                       bool lineColumn, bool replaceComma) {
  if (!commaSeparated) {
    if (!firstColumn && text == "-") return "0";
    return WithoutTabs(text);
  }
  if (firstColumn) return NeedsQuotes(text) ? Quoted(text) : text;
  if (text == "-") return Quoted("0");
  return Quoted(replaceComma && !lineColumn ? Replace(text, ",", ".") : text);
}

}  // namespace

std::int32_t ExportFileType(const std::string& file) {
  return TextEquals(Right(file, 4), ".csv") ? 1 : 0;
}

std::string ExportText(const Table& table, bool commaSeparated, bool replaceComma) {
  std::vector<int> rows(static_cast<std::size_t>(table.RowCount()));
  for (std::size_t r = 0; r < rows.size(); ++r) rows[r] = static_cast<int>(r) + 1;
  return ExportText(table, rows, commaSeparated, replaceComma);
}

std::string ExportText(const Table& table, const std::vector<int>& rows, bool commaSeparated,
                       bool replaceComma) {
  std::vector<int> columns;
  for (const int c : table.GetHeadersPositions()) {
    if (!IsBarsColumn(table.ColumnAt(c))) columns.push_back(c);
  }
  const int lineCol = replaceComma ? table.FindColumn("Line") : 0;
  const std::string_view separator = commaSeparated ? "," : "\t";

  std::string out;
  const auto writeLine = [&](const auto& textOf) {
    for (std::size_t k = 0; k < columns.size(); ++k) {
      if (k > 0) out.append(separator);
      const int c = columns[k];
      out.append(ExportCell(textOf(c), commaSeparated, c == 1, c == lineCol, replaceComma));
    }
    out.append(kLineEnd);
  };
  writeLine([&](int c) { return table.ColumnAt(c).Header; });
  for (const int r : rows) {
    if (r < 1 || r > table.RowCount()) continue;
    writeLine([&](int c) { return table.Text(r, c); });
  }
  return out;
}

bool ExportTable(const Table& table, const std::string& file, bool commaSeparated,
                 Prompter& prompter) {
  if (table.RowCount() == 0) {
    prompter.ShowMessage(kEmptyTableMessage, MessageKind::Exclamation);
    return false;
  }
  // A locale that writes decimal commas would put commas into number cells.
  const bool replaceComma = CStr(1.0 / 3).find(',') != std::string::npos;
  WriteFile(file, ExportText(table, commaSeparated, replaceComma));
  return true;
}

std::string ExportGridToFile(const Table& table, std::string file, Prompter& prompter,
                             std::int32_t& LastExportFileType) {
  const std::int32_t fileType = ExportFileType(file);
  if (GetFileName(file).find('.') == std::string::npos) file += ".txt";
  if (!ExportTable(table, file, fileType == 1, prompter)) return {};
  LastExportFileType = fileType;
  return file;
}

}  // namespace zol
