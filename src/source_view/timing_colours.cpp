#include "source_view/timing_colours.h"

#include <cmath>
#include <cstdint>
#include <cstdio>

#include "base/app_paths.h"
#include "base/ini_file.h"
#include "base/numbers.h"
#include "base/text.h"

namespace zol {

namespace {

constexpr std::int32_t Rgb(int r, int g, int b) {
  return r | (g << 8) | (b << 16);
}

constexpr std::array<std::int32_t, 12> kDefaultColors = {
    Rgb(128, 128, 128),  // comments
    Rgb(0, 0, 255),      // neutral code
    Rgb(255, 0, 0),      // unexecuted code
    Rgb(0, 128, 0),      // executed code
    Rgb(0, 0, 0),        // dead code
    Rgb(0, 128, 0),      // fast code
    Rgb(0, 170, 0),      // less fast code
    Rgb(175, 175, 0),    // less fast code
    Rgb(255, 145, 0),    // average code
    Rgb(255, 100, 0),    // slower code
    Rgb(255, 40, 0),     // slower code
    Rgb(255, 0, 0),      // slow code
};

constexpr int kFastestEntry = 5;
constexpr int kSlowestEntry = 11;

std::string ColourKey(int i) {
  return "Colors" + std::to_string(i);
}

// A stored colour is a decimal number; a text that isn't one, or lies beyond
// the range of a colour, leaves the default in place.
std::int32_t ColourFromText(const std::string& text, std::int32_t fallback) {
  const std::optional<double> value = ParseNumberText(text);
  if (!value || *value < INT32_MIN || *value > INT32_MAX) return fallback;
  return static_cast<std::int32_t>(RoundHalfEven(*value));
}

// The value a line is coloured by. By rank it is the line's place among the
// hit lines as a whole percentage: the ranks run over all lines, the unhit
// ones first, so taking those off leaves a place among the hit ones.
double LineValue(const Session& v, std::int32_t lineID, std::int32_t measure, std::int32_t mode) {
  if (mode == kColorByRank) {
    const Array1<std::int32_t>* rank = nullptr;
    switch (measure) {
      case kMeasureTotalTime:
        rank = &v.LineTotalTimeRank;
        break;
      case kMeasureAverageTime:
        rank = &v.LineAverageTimeRank;
        break;
      case kMeasureChildTotalTime:
        rank = &v.LineChildTotalTimeRank;
        break;
      case kMeasureChildAverageTime:
        rank = &v.LineChildAverageTimeRank;
        break;
      default:
        return 0;
    }
    const std::int64_t hitLines = v.SessionValue.HitLines;
    // A session whose summary counts no hit line has no place to give; such a
    // file is inconsistent, and its lines take the fastest colour.
    if (hitLines == 0) return 0;
    const std::int64_t unhit = v.SessionValue.TotalLines - hitLines;
    return static_cast<double>((((*rank)(lineID)-unhit) * 100) / hitLines);
  }
  if (mode == kColorByValue) {
    const CodeLineValue& c = v.CodeLineValue(lineID);
    switch (measure) {
      case kMeasureTotalTime:
        return c.TotalTime;
      case kMeasureAverageTime:
        return c.AverageTime;
      case kMeasureChildTotalTime:
        return c.ChildTotalTime;
      case kMeasureChildAverageTime:
        return c.ChildAverageTime;
      default:
        return 0;
    }
  }
  return 0;
}

// Ranks of a procedure are fractions; by rank the value is the percentage.
// The products keep the precision of the stored rank (single or double), so
// a rank of 0.99 stored as a single still makes 99.
double ProcedureValueOf(const Session& v, std::int32_t procID, std::int32_t measure,
                        std::int32_t mode) {
  const ProcedureValue& p = v.ProcedureValue(procID);
  if (mode == kColorByRank) {
    switch (measure) {
      case kMeasureTotalTime:
        return p.TotalTimingRank * 100.0F;
      case kMeasureAverageTime:
        return p.AverageTimingRank * 100.0F;
      case kMeasureChildTotalTime:
        return p.ChildTotalTimingRank * 100.0;
      case kMeasureChildAverageTime:
        return p.ChildAverageTimingRank * 100.0;
      default:
        return 0;
    }
  }
  if (mode == kColorByValue) {
    switch (measure) {
      case kMeasureTotalTime:
        return p.TotalTime;
      case kMeasureAverageTime:
        return p.AverageTime;
      case kMeasureChildTotalTime:
        return p.ChildTotalTime;
      case kMeasureChildAverageTime:
        return p.ChildAverageTime;
      default:
        return 0;
    }
  }
  return 0;
}

// Bands tested from the top, so that a bound belongs to the slower band.
int RankEntry(double shownValue) {
  if (shownValue >= 99) return 11;
  if (shownValue >= 98) return 10;
  if (shownValue >= 95) return 9;
  if (shownValue >= 90) return 8;
  if (shownValue >= 80) return 7;
  if (shownValue >= 50) return 6;
  return kFastestEntry;
}

// One entry per decade; the slowest starts at 10^offset seconds.
int ValueEntry(double shownValue, std::int32_t offset) {
  const double d = std::floor(Log10(shownValue)) - offset;
  if (d <= -6) return kFastestEntry;
  if (d >= 0) return kSlowestEntry;
  return static_cast<int>(d) + 11;
}

}  // namespace

const std::array<std::int32_t, 12>& DefaultColors() {
  return kDefaultColors;
}

std::string GetHTMColor(std::int32_t color) {
  char hex[16];
  std::snprintf(hex, sizeof hex, "%X", static_cast<std::uint32_t>(color));
  std::string s = "000000" + std::string(hex);
  s = s.substr(s.size() - 6);
  return s.substr(4, 2) + s.substr(2, 2) + s.substr(0, 2);
}

void LoadColors(Workspace& ws, bool forceDefault, const std::string& iniFile) {
  ws.view.Colors = kDefaultColors;
  if (!forceDefault) {
    for (int i = 1; i <= 12; ++i) {
      const std::string text = VBGetPrivateProfileString(
          "Profiler", ColourKey(i), std::to_string(ws.view.Colors[i - 1]), iniFile);
      ws.view.Colors[i - 1] = ColourFromText(text, ws.view.Colors[i - 1]);
    }
  }
  for (int i = 0; i < 12; ++i) ws.view.ColorsHtml[i] = GetHTMColor(ws.view.Colors[i]);
}

void SaveColors(const Workspace& ws, const std::string& iniFile) {
  for (int i = 1; i <= 12; ++i) {
    VBWritePrivateProfileString("Profiler", ColourKey(i), std::to_string(ws.view.Colors[i - 1]),
                                iniFile);
  }
}

void LoadColors(Workspace& ws, bool forceDefault) {
  LoadColors(ws, forceDefault, GetIniFile(ws.appFolder));
}

void SaveColors(const Workspace& ws) {
  SaveColors(ws, GetIniFile(ws.appFolder));
}

std::int32_t DefaultValueOffset(std::int32_t displayInfoType) {
  return displayInfoType == kMeasureTotalTime || displayInfoType == kMeasureChildTotalTime ? 2 : 0;
}

std::string MeasureWord(std::int32_t displayInfoType) {
  switch (displayInfoType) {
    case kMeasureTotalTime:
      return "total time";
    case kMeasureAverageTime:
      return "average time";
    case kMeasureChildTotalTime:
      return "total children time";
    case kMeasureChildAverageTime:
      return "average children time";
    default:
      return "";
  }
}

std::optional<int> TimingColourEntry(const Workspace& ws, std::int32_t sessionId,
                                     std::int32_t procID, std::int32_t lineID,
                                     std::int32_t displayInfoType, std::int32_t colorMode,
                                     std::optional<std::int32_t> offset,
                                     std::optional<double> forcedValue) {
  double shownValue = 0;
  if (lineID != 0) {
    shownValue = LineValue(ws.Session(sessionId), lineID, displayInfoType, colorMode);
  } else if (procID != 0) {
    shownValue = ProcedureValueOf(ws.Session(sessionId), procID, displayInfoType, colorMode);
  } else {
    shownValue = forcedValue.value_or(0);
  }

  if (shownValue <= 0) return kFastestEntry;
  if (colorMode == kColorByRank) return RankEntry(shownValue);
  if (colorMode == kColorByValue) {
    return ValueEntry(shownValue, offset.value_or(DefaultValueOffset(displayInfoType)));
  }
  return std::nullopt;
}

std::string GetTimingColour(const Workspace& ws, std::int32_t sessionId, std::int32_t procID,
                            std::int32_t lineID, std::int32_t displayInfoType,
                            std::int32_t colorMode, std::optional<std::int32_t> offset,
                            std::optional<double> forcedValue) {
  const auto entry = TimingColourEntry(ws, sessionId, procID, lineID, displayInfoType, colorMode,
                                       offset, forcedValue);
  return entry ? std::to_string(ws.view.Colors[static_cast<std::size_t>(*entry)]) : std::string();
}

std::string GetTimingColourString(const Workspace& ws, std::int32_t sessionId, std::int32_t procID,
                                  std::int32_t lineID, std::int32_t displayInfoType,
                                  std::int32_t colorMode, std::optional<std::int32_t> offset) {
  const auto entry =
      TimingColourEntry(ws, sessionId, procID, lineID, displayInfoType, colorMode, offset);
  return entry ? ws.view.ColorsHtml[static_cast<std::size_t>(*entry)] : std::string();
}

}  // namespace zol
