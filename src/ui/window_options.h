#pragma once

// The main window's settings in section "Profiler" of the settings file: the
// splitter ratios, the measure and tab last shown, the session list's sort
// column, the last export type and the window's place; beside them, the view
// settings of that section (colouring, timing filters, instrumentation plan). Ratios are fractions
// in memory and thousandths on disk; the window's place is kept in thousandths of the screen's
// size, so that it survives a change of resolution.

#include <cstdint>
#include <string>

#include "session/view_settings.h"

namespace zol {

struct WindowOptions {
  double X_ratio = 0.25;       // width of the left pane
  double Y_ratio = 0.25;       // height of the tree in the left pane
  double Y_ratio_Graph = 0.5;  // height of the grid above the chart
  std::int32_t DisplayInfoType = 0;
  std::int32_t Active_tbsTab = 3;
  std::int32_t Active_lvwSessions_Column = 1;
  std::int32_t LastExportFileType = 0;
  std::string HHCompilerPath = "none";
  // thousandths of the screen's width and height.
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  std::int32_t WindowState = 0;  // 0 normal, 1 minimised, 2 maximised
};

// The window's present size in thousandths of the screen, the default of
// Width and Height when the settings hold none.
struct WindowSizeDefault {
  std::int32_t Width = 750;
  std::int32_t Height = 750;
};

// Reads the keys, each falling back on its default when missing or not a
// number. "<vbCrLf>" in Filters stands for a line break. A boolean reads as
// true from "True" or any number but 0.
WindowOptions loadWindowOptions(const std::string& iniFile, WindowSizeDefault size = {});

// Writes the keys back (ratios times 1000, line breaks of Filters as
// "<vbCrLf>", booleans as "True" and "False"), all but Y_ratio_Graph, which
// only the grid's own splitter changes (saveGraphRatio). Throws FileError.
void saveWindowOptions(const WindowOptions& options, const std::string& iniFile);
void saveGraphRatio(double Y_ratio_Graph, const std::string& iniFile);

// The view settings kept in the same section: the tree's colouring
// ("fColored", true by default), the timing filters and the default
// instrumentation plan. Loading leaves the other fields as they are.
void loadViewSettings(ViewSettings& view, const std::string& iniFile);
void saveViewSettings(const ViewSettings& view, const std::string& iniFile);

// A ratio kept away from the edges, so that no pane can vanish for good.
double clampRatio(double ratio);

}  // namespace zol
