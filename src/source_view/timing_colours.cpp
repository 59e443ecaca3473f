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
double LineValue(const Session& v, std::int32_t tLineID, std::int32_t measure, std::int32_t mode) {
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
    return static_cast<double>((((*rank)(tLineID)-unhit) * 100) / hitLines);
  }
  if (mode == kColorByValue) {
    const CodeLineValue& c = v.CodeLineValue(tLineID);
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
double ProcedureValueOf(const Session& v, std::int32_t tProcID, std::int32_t measure,
                        std::int32_t mode) {
  const ProcedureValue& p = v.ProcedureValue(tProcID);
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
int RankEntry(double tValue) {
  if (tValue >= 99) return 11;
  if (tValue >= 98) return 10;
  if (tValue >= 95) return 9;
  if (tValue >= 90) return 8;
  if (tValue >= 80) return 7;
  if (tValue >= 50) return 6;
  return kFastestEntry;
}

// One entry per decade; the slowest starts at 10^tOffset seconds.
int ValueEntry(double tValue, std::int32_t tOffset) {
  const double d = std::floor(Log10(tValue)) - tOffset;
  if (d <= -6) return kFastestEntry;
  if (d >= 0) return kSlowestEntry;
  return static_cast<int>(d) + 11;
}

}  // namespace

const std::array<std::int32_t, 12>& DefaultColors() {
  return kDefaultColors;
}

std::string GetHTMColor(std::int32_t tColor) {
  char hex[16];
  std::snprintf(hex, sizeof hex, "%X", static_cast<std::uint32_t>(tColor));
  std::string s = "000000" + std::string(hex);
  s = s.substr(s.size() - 6);
  return s.substr(4, 2) + s.substr(2, 2) + s.substr(0, 2);
}

void LoadColors(Workspace& ws, bool fForceDefault, const std::string& iniFile) {
  ws.Colors = kDefaultColors;
  if (!fForceDefault) {
    for (int i = 1; i <= 12; ++i) {
      const std::string text = VBGetPrivateProfileString("Profiler", ColourKey(i),
                                                         std::to_string(ws.Colors[i - 1]), iniFile);
      ws.Colors[i - 1] = ColourFromText(text, ws.Colors[i - 1]);
    }
  }
  for (int i = 0; i < 12; ++i) ws.ColorsHtml[i] = GetHTMColor(ws.Colors[i]);
}

void SaveColors(const Workspace& ws, const std::string& iniFile) {
  for (int i = 1; i <= 12; ++i) {
    VBWritePrivateProfileString("Profiler", ColourKey(i), std::to_string(ws.Colors[i - 1]),
                                iniFile);
  }
}

void LoadColors(Workspace& ws, bool fForceDefault) {
  LoadColors(ws, fForceDefault, GetIniFile(ws.appFolder));
}

void SaveColors(const Workspace& ws) {
  SaveColors(ws, GetIniFile(ws.appFolder));
}

std::int32_t DefaultValueOffset(std::int32_t tDisplayInfoType) {
  return tDisplayInfoType == kMeasureTotalTime || tDisplayInfoType == kMeasureChildTotalTime ? 2
                                                                                             : 0;
}

std::string MeasureWord(std::int32_t tDisplayInfoType) {
  switch (tDisplayInfoType) {
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

std::optional<int> TimingColourEntry(const Workspace& ws, std::int32_t tSession,
                                     std::int32_t tProcID, std::int32_t tLineID,
                                     std::int32_t tDisplayInfoType, std::int32_t tColorMode,
                                     std::optional<std::int32_t> tOffset,
                                     std::optional<double> tForcedValue) {
  double tValue = 0;
  if (tLineID != 0) {
    tValue = LineValue(ws.Session(tSession), tLineID, tDisplayInfoType, tColorMode);
  } else if (tProcID != 0) {
    tValue = ProcedureValueOf(ws.Session(tSession), tProcID, tDisplayInfoType, tColorMode);
  } else {
    tValue = tForcedValue.value_or(0);
  }

  if (tValue <= 0) return kFastestEntry;
  if (tColorMode == kColorByRank) return RankEntry(tValue);
  if (tColorMode == kColorByValue) {
    return ValueEntry(tValue, tOffset.value_or(DefaultValueOffset(tDisplayInfoType)));
  }
  return std::nullopt;
}

std::string GetTimingColour(const Workspace& ws, std::int32_t tSession, std::int32_t tProcID,
                            std::int32_t tLineID, std::int32_t tDisplayInfoType,
                            std::int32_t tColorMode, std::optional<std::int32_t> tOffset,
                            std::optional<double> tForcedValue) {
  const auto entry = TimingColourEntry(ws, tSession, tProcID, tLineID, tDisplayInfoType, tColorMode,
                                       tOffset, tForcedValue);
  return entry ? std::to_string(ws.Colors[static_cast<std::size_t>(*entry)]) : std::string();
}

std::string GetTimingColourString(const Workspace& ws, std::int32_t tSession, std::int32_t tProcID,
                                  std::int32_t tLineID, std::int32_t tDisplayInfoType,
                                  std::int32_t tColorMode, std::optional<std::int32_t> tOffset) {
  const auto entry =
      TimingColourEntry(ws, tSession, tProcID, tLineID, tDisplayInfoType, tColorMode, tOffset);
  return entry ? ws.ColorsHtml[static_cast<std::size_t>(*entry)] : std::string();
}

}  // namespace zol
