#pragma once

// The dump of state that goes into an error report ("Variables.txt"): every
// variable by name, records field by field, arrays element by element. A
// value that can't be read is written as failing and the dump goes on: a dump
// is taken when something is already wrong.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>

#include "errcapture/value_text.h"
#include "session/record_fields.h"
#include "session/records.h"
#include "session/selection.h"

namespace zol {

class Workspace;

inline constexpr std::string_view kLocalVariablesBox =
    "\r\n**************************\r\n* LOCAL LEVEL VARIABLES  "
    "*\r\n**************************\r\n";
inline constexpr std::string_view kModuleVariablesBox =
    "\r\n**************************\r\n* MODULE LEVEL VARIABLES "
    "*\r\n**************************\r\n";
inline constexpr std::string_view kGlobalVariablesBox =
    "\r\n**************************\r\n* GLOBAL LEVEL VARIABLES "
    "*\r\n**************************\r\n";

// The file the dump goes to: the settings' zolDumpFile until the report
// points it into its folder.
void zolSetDumpFile(const std::string& file);
const std::string& zolDumpFileName();

// Opens the dump file for appending (nothing happens when it is open).
void zolOpenDumpFile();
void zolCloseDumpFile();
// Writes `text` and a line end, opening the file when needed; a failed write
// is tried once more on a reopened file, and then given up silently.
void zolReportToFile(std::string_view text);
void zolDumpString(std::string_view text);

// One line per value: indent tabs, name, " = ", value, " (", type, ")".
// Texts are cut to zolDumpStringMaxLength.
template <typename T>
void zolDumpVariable(std::string_view name, const T& value, int level);

// Runs `dump`; if it throws, writes "name = {Variable Dumping Error}" instead.
void DumpGuarded(std::string_view name, int level, const std::function<void()>& dump);

// The head line of an array: "Array name(1 To 3, 0 To 2) As Long", or for
// more than four dimensions "Array name() not processed: 5 dimensions", in
// which case it returns false and the elements are left out.
bool zolDumpArrayHead(std::string_view name, const ArrayShape& shape, std::string_view elementType,
                      int level);

// The records, field by field ("name.Field"). The big per-line tables
// (CodeLine, RTFLine, CodeLineValue and the line ranks) are left out: a
// report of a large project would be mostly those.
template <ValueRecord R>
void DumpRecord(std::string_view name, const R& v, int level);
void DumpRecord(std::string_view name, const Session& v, int level);
void DumpRecord(std::string_view name, const SessionGroup& v, int level);
void DumpRecord(std::string_view name, const Module& v, int level);
void DumpRecord(std::string_view name, const Procedure& v, int level);
void DumpRecord(std::string_view name, const Project& v, int level);

// The whole state of the process: the global box, then every field of the
// Workspace as "Workspace.Name", its tables record by record.
void DumpWorkspace(const Workspace& ws);
// The selection on screen, field by field as "Selection.name".
void DumpSelection(const Selection& sel);

// --- templates ---

// The value records walk the same field list as their file image, so a field
// added to a record shows in the dump without a second list to keep.
template <ValueRecord R>
void DumpRecord(std::string_view name, const R& v, int level) {
  VisitFields(v, [&](std::string_view field, const auto& value) {
    zolDumpVariable(std::string(name) + "." + std::string(field), value, level);
  });
}

std::string DumpIndent(int level);
std::string DumpCut(std::string_view text);

template <typename T>
void zolDumpVariable(std::string_view name, const T& value, int level) {
  DumpGuarded(name, level, [&] {
    if constexpr (std::is_convertible_v<const T&, std::string_view>) {
      zolReportToFile(DumpIndent(level) + std::string(name) + " = " +
                      DumpCut(std::string_view(value)) + " (String)");
    } else {
      zolReportToFile(DumpIndent(level) + std::string(name) + " = " + ValueText(value) + " (" +
                      TypeName(value) + ")");
    }
  });
}

template <typename T, int First>
void zolDumpVariable(std::string_view name, const VBArray<T, First>& a, int level) {
  DumpGuarded(name, level, [&] {
    if (!a.IsDimensioned()) {
      zolReportToFile(DumpIndent(level) + zolParamToText(name, ShapeOf(a)));
      return;
    }
    constexpr bool scalar = std::is_arithmetic_v<T> ||
                            std::is_convertible_v<const T&, std::string_view> ||
                            std::is_same_v<T, VBBool>;
    const char* type = "(User Defined Type Array)";
    if constexpr (scalar) type = TypeName(T{});
    zolDumpArrayHead(name, ShapeOf(a), type, level);
    for (int i = a.LBound(); i <= a.UBound(); ++i) {
      const std::string element = std::string(name) + "(" + std::to_string(i) + ")";
      if constexpr (scalar) {
        zolDumpVariable(element, a(i), level + 1);
      } else {
        DumpGuarded(element, level + 1, [&] { DumpRecord(element, a(i), level + 1); });
      }
    }
  });
}

}  // namespace zol
