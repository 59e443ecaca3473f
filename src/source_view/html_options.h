#pragma once

// The settings of the source page per measure: which numeric columns it shows
// and how it colours its rows. Stored in section "Profiler" of the settings
// file as "HtmlColumn<measure><column>" ("True"/"False") and
// "ColorScheme<measure>" (1, 2 or 3), measures 0 to 4.

#include <cstdint>
#include <string>

#include "session/workspace.h"

namespace zol {

// Column indices of HtmlPageOptions::Column, in page order.
enum HtmlColumnIndex : int {
  kColumnHits = 0,
  kColumnAverageTime = 1,
  kColumnTotalTime = 2,
  kColumnChildAverageTime = 3,
  kColumnChildTotalTime = 4,
};

// Hits and the measure's own time column (hits alone for coverage), coloured
// by value.
HtmlPageOptions DefaultOptionsHtml(std::int32_t measure);

// Fills OptionsHtml(0) to OptionsHtml(4) from the settings file, each key
// falling back on the default when it is missing or unreadable.
void LoadOptionsHtml(Workspace& ws, const std::string& iniFile);
void SaveOptionsHtml(const Workspace& ws, const std::string& iniFile);
// The same on the settings file of the workspace's application folder.
void LoadOptionsHtml(Workspace& ws);
void SaveOptionsHtml(const Workspace& ws);

}  // namespace zol
