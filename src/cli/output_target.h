#pragma once

// Where a zolprof command may write. A command reads its inputs whole before
// it writes, but a mistyped -o must still not cost the user a file: the
// output may not be one of the command's inputs, a log (which exists only
// once), or an existing file of another kind than the command writes, unless
// --force says so.

#include <string>
#include <string_view>
#include <vector>

namespace zol::cli {

struct OutputKind {
  std::string_view name;                     // "a session", "an HTML page"
  std::vector<std::string_view> extensions;  // with the dot, compared in any case
};

inline const OutputKind kSessionOutput{"a session", {".pfd"}};
inline const OutputKind kHtmlOutput{"an HTML page", {".htm", ".html"}};
inline const OutputKind kTableExportOutput{"a table export", {".csv", ".txt"}};
inline const OutputKind kChartOutput{"an SVG or PNG picture", {".svg", ".png"}};

// Why `output` may not be written, or empty when it may. A folder in the way
// is refused even with `force`.
std::string OutputRefusal(const std::string& output, const std::vector<std::string>& inputs,
                          const OutputKind& kind, bool force);

// OutputRefusal, printed to stderr; true when the output may be written.
bool MayWriteOutput(const std::string& output, const std::vector<std::string>& inputs,
                    const OutputKind& kind, bool force);

inline constexpr const char* kForceHelp =
    "write the output even over an input of this command, a log, or a file of another kind";

}  // namespace zol::cli
