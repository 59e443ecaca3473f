#pragma once

// The settings that shape how results look, kept in the settings file and
// read by every view: the timing colours, the columns and colour scheme of
// source pages per measure, the page fonts, the colouring of the tree, the
// timing filters and the default instrumentation plan. The window loads them
// once at start and saves them when the user changes them; views only read.

#include <array>
#include <cstdint>
#include <string>

namespace zol {

// Which numeric columns a source page shows, and how it colours its rows, for
// one measure. Column order: hits, average time, total time, average child
// time, total child time. ColorScheme: 1 none, 2 by rank, 3 by value.
struct HtmlPageOptions {
  std::array<bool, 5> Column{};
  std::int32_t ColorScheme = 1;
};

struct ViewSettings {
  std::array<std::int32_t, 12> Colors{};       // packed 0x00BBGGRR
  std::array<std::string, 12> ColorsHtml;      // the same colours as "RRGGBB"
  std::array<HtmlPageOptions, 6> OptionsHtml;  // 0-4 per measure, 5 for reports
  std::string FontHTML = "Courier New";
  std::int32_t FontSizeHTML = 10;
  std::int32_t LineHeightHTML = 8;
  std::int32_t SmallFontSizeHTML = 9;
  bool colored = false;     // the project tree is coloured by rank
  std::string Filters;      // timing filters, separated by CR LF
  std::string DefaultPlan;  // the plan the instrumenter starts with
};

}  // namespace zol
