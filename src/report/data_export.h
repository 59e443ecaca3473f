#pragma once

// A session's numbers as comma-separated text for a spreadsheet: its modules,
// procedures and lines, each as a table. A table is built as texts addressed
// (column, row), row 0 holding the headers and the last row the "TOTAL" row,
// with the same number and time texts as the grids, and written by
// ConvertArrayToCsv.
//
// Which columns a table has follows the data asked for: "Project" and the
// names always; the coverage, time and children-time columns only with their
// data.

#include <array>
#include <cstdint>
#include <string>

#include "session/prompter.h"
#include "session/workspace.h"
#include "source_view/html_writer.h"

namespace zol {

// Data asked for, indexed by ReportData (coverage, time, children time).
using ReportDataFlags = std::array<bool, 3>;

// Where the line export moves the progress bar: from `start` to
// `start + width`, on a bar whose maximum the caller has set.
struct ExportProgress {
  Prompter* prompter = nullptr;
  double start = 0;
  double width = 0;
};

TextTable ModulesExportArray(const Workspace& ws, std::int32_t sessionIndex,
                             const ReportDataFlags& data);
TextTable ProceduresExportArray(const Workspace& ws, std::int32_t sessionIndex,
                                const ReportDataFlags& data);
// With `skipUnexecuted` the lines without hits are left out (the total row
// still counts every line).
TextTable LinesExportArray(const Workspace& ws, std::int32_t sessionIndex,
                           const ReportDataFlags& data, bool skipUnexecuted,
                           const ExportProgress& progress = {});

// The column of a table whose header is `header`, or -1.
int FindExportColumn(const TextTable& table, std::string_view header);

// Whether the user's locale writes decimal commas (the C library's numeric
// locale in force).
bool LocaleWritesDecimalCommas();

// The table as CSV: every cell in double quotes with inner quotes doubled,
// cells joined by commas, rows by CR LF. With `replaceComma` the commas of
// every column but `lineColumn` (the source text) become ".", so that numbers
// written with a decimal comma still read as numbers.
std::string ConvertArrayToCsv(const TextTable& cells, int lineColumn, bool replaceComma);
// The same, the comma rule taken from the locale.
std::string ConvertArrayToCsv(const TextTable& cells, int lineColumn);

// The tables as CSV text, the "Lines" column spared by the comma rule.
std::string ExportModules(const Workspace& ws, std::int32_t sessionIndex,
                          const ReportDataFlags& data);
std::string ExportProcedures(const Workspace& ws, std::int32_t sessionIndex,
                             const ReportDataFlags& data);
std::string ExportLines(const Workspace& ws, std::int32_t sessionIndex, const ReportDataFlags& data,
                        bool skipUnexecuted, const ExportProgress& progress = {});

// Each writes its table to `path`, replacing the file. Throw FileError.
void ExportModulesToFile(const Workspace& ws, std::int32_t sessionIndex,
                         const ReportDataFlags& data, const std::string& path);
void ExportProceduresToFile(const Workspace& ws, std::int32_t sessionIndex,
                            const ReportDataFlags& data, const std::string& path);
void ExportLinesToFile(const Workspace& ws, std::int32_t sessionIndex, const ReportDataFlags& data,
                       bool skipUnexecuted, const std::string& path,
                       const ExportProgress& progress = {});

}  // namespace zol
