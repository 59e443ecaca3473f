#pragma once

// Writing a grid out as a comma-separated (".csv") or tab-separated (".txt")
// file, the columns in the order they are shown, without the bars.

#include <cstdint>
#include <string>
#include <vector>

#include "grid/table.h"
#include "session/prompter.h"

namespace zol {

inline constexpr char kEmptyTableMessage[] = "The table is empty !";
inline constexpr char kExportFilter[] =
    "Text, Comma delimited (*.csv)|*.csv|Text, Tab delimited (*.txt)|*.txt";

// The file type of an export: 1 for a name ending in ".csv" (any case), 0
// otherwise.
std::int32_t ExportFileType(const std::string& path);

// The file's text: a line of headers, then a line for each row, the total row
// included, lines ending in CR LF. A cell "-" is written "0", except in the
// first column, which is the row's text as it stands. With a comma every cell
// but the first column's is put in double quotes (inner quotes doubled); the
// first column's is quoted only when it holds a comma, a quote or a line
// break. With a tab, tabs and line breaks inside a cell become blanks, so
// that every line keeps its columns. `replaceComma` (a locale with decimal
// commas) turns the commas of every cell but the "Line" column into ".".
std::string ExportText(const Table& table, bool commaSeparated, bool replaceComma = false);
// The same text with only the rows `rows` (from 1, in that order) below the
// headers: what a copy of chosen rows puts on the clipboard.
std::string ExportText(const Table& table, const std::vector<int>& rows, bool commaSeparated,
                       bool replaceComma = false);

// Writes `table` to `path` as CSV (`commaSeparated`) or tab-separated text.
// An empty table shows "The table is empty !" and writes nothing; returns
// whether the file was written. Throws FileError when it can't be written.
bool ExportTable(const Table& table, const std::string& path, bool commaSeparated,
                 Prompter& prompter);

// Writes `table` to `path`: CSV for a name ending in ".csv",
// tab-separated otherwise; a name without "." gets ".txt". An empty table
// shows "The table is empty !" and writes nothing. Returns the name written
// (empty when nothing was) and sets `LastExportFileType`. Throws FileError
// when the file can't be written.
std::string ExportGridToFile(const Table& table, std::string path, Prompter& prompter,
                             std::int32_t& LastExportFileType);

}  // namespace zol
