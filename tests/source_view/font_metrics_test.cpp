#include "source_view/font_metrics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <set>

namespace zol {
namespace {

// A bitmap font that only has a few sizes: any size snaps to the nearest one
// it has, the larger on a tie.
struct SizedFont : FontMetrics {
  std::set<double> sizes{6, 10, 12};
  bool measurable = true;
  std::optional<double> TextHeight(const std::string&, double size,
                                   std::string_view) const override {
    if (!measurable) return std::nullopt;
    return ActualSize("", size) + 5.5;
  }
  double ActualSize(const std::string&, double size) const override {
    double best = *sizes.begin();
    for (double s : sizes) {
      if (std::abs(s - size) <= std::abs(best - size)) best = s;
    }
    return best;
  }
};

TEST(FontMetrics, ScalableDefault) {
  Workspace ws;
  FixedFontMetrics metrics;
  SetFontHTML(ws, metrics, "Courier New", 10);
  EXPECT_EQ(ws.view.LineHeightHTML, 8);
  EXPECT_EQ(ws.view.SmallFontSizeHTML, 9);
  SetFontHTML(ws, metrics, "Courier New", 5);
  EXPECT_EQ(ws.view.SmallFontSizeHTML, 5);
}

TEST(FontMetrics, FixedSizesAndFailedMeasure) {
  Workspace ws;
  SizedFont font;
  ws.view.FontSizeHTML = 10;
  EXPECT_EQ(GetNextSmallerFontHTML(ws, font), 7);  // 9 and 8 still give 10, 7 gives 6
  EXPECT_EQ(GetLineHeightHTML(ws, font), 8);       // 15.5 - 10 + 2 = 7.5, to even
  ws.view.FontSizeHTML = 7;
  EXPECT_EQ(GetNextSmallerFontHTML(ws, font), 5);  // 6 until 5, the floor
  font.measurable = false;
  EXPECT_EQ(GetLineHeightHTML(ws, font), 5);
}

}  // namespace
}  // namespace zol
