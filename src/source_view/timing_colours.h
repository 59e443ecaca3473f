#pragma once

// The twelve colours of the source view, the source report and the flow
// chart, and the rule that turns a time into one of them. The rule colours
// either by rank (how a line stands among the executed lines of its session)
// or by value (one colour per decade of seconds).
//
// Table entries: 0 comments, 1 neutral code, 2 unexecuted, 3 executed,
// 4 dead code, 5 to 11 from fast to slow.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "session/workspace.h"

namespace zol {

// Colour modes, as OptionsHtml.ColorScheme and the flow chart's scheme hold them.
enum ColorMode : std::int32_t {
  kColorNone = 1,
  kColorByRank = 2,
  kColorByValue = 3,
};

// Measures, by their index (IndexOf(Measure)).
enum DisplayMeasure : std::int32_t {
  kMeasureTotalTime = 0,
  kMeasureAverageTime = 1,
  kMeasureChildTotalTime = 2,
  kMeasureChildAverageTime = 3,
  kMeasureCoverage = 4,
};

// The factory colours, packed 0x00BBGGRR.
const std::array<std::int32_t, 12>& DefaultColors();

// Fills Colors and ColorsHtml: the defaults, then, unless `forceDefault`, keys
// "Colors1" to "Colors12" of section "Profiler" of the settings file.
void LoadColors(Workspace& ws, bool forceDefault, const std::string& iniFile);
// Writes Colors to those keys as decimal texts.
void SaveColors(const Workspace& ws, const std::string& iniFile);
// The same on the settings file of the workspace's application folder.
void LoadColors(Workspace& ws, bool forceDefault);
void SaveColors(const Workspace& ws);

// A packed colour as "RRGGBB": 255 gives "FF0000".
std::string GetHTMColor(std::int32_t color);

// The entry of the table for a line (`lineID` not 0), else a procedure
// (`procID` not 0), else `forcedValue`, by measure and mode. Empty when the
// mode is neither rank nor value and the value is above 0. `rankOffset` shifts
// the decades of the value mode; missing, it is 2 for the total measures and
// 0 for the averages.
std::optional<int> TimingColourEntry(const Workspace& ws, std::int32_t sessionId,
                                     std::int32_t procID, std::int32_t lineID,
                                     std::int32_t displayInfoType, std::int32_t colorMode,
                                     std::optional<std::int32_t> rankOffset = std::nullopt,
                                     std::optional<double> forcedValue = std::nullopt);

// That entry of Colors as decimal text (empty when there is none).
std::string GetTimingColour(const Workspace& ws, std::int32_t sessionId, std::int32_t procID,
                            std::int32_t lineID, std::int32_t displayInfoType,
                            std::int32_t colorMode,
                            std::optional<std::int32_t> rankOffset = std::nullopt,
                            std::optional<double> forcedValue = std::nullopt);

// That entry of ColorsHtml (empty when there is none).
std::string GetTimingColourString(const Workspace& ws, std::int32_t sessionId, std::int32_t procID,
                                  std::int32_t lineID, std::int32_t displayInfoType,
                                  std::int32_t colorMode,
                                  std::optional<std::int32_t> rankOffset = std::nullopt);

// The decade offset of the value mode when none is given: 2 for the total
// measures, 0 otherwise.
std::int32_t DefaultValueOffset(std::int32_t displayInfoType);

// "total time", "average time", "total children time", "average children
// time" for measures 0 to 3; empty otherwise.
std::string MeasureWord(std::int32_t displayInfoType);

}  // namespace zol
