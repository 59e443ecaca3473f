#include "ui/window_options.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::ScopedTempDir;

std::string Key(const std::string& key, const std::string& ini) {
  return VBGetPrivateProfileString("Profiler", key, "<missing>", ini);
}

TEST(WindowOptions, DefaultsWhenTheSettingsHoldNothing) {
  ScopedTempDir dir;
  const WindowOptions o = loadWindowOptions(dir / "Zolmark.ini", {640, 480});
  EXPECT_DOUBLE_EQ(o.X_ratio, 0.25);
  EXPECT_DOUBLE_EQ(o.Y_ratio, 0.25);
  EXPECT_DOUBLE_EQ(o.Y_ratio_Graph, 0.5);
  EXPECT_EQ(o.DisplayInfoType, 0);
  EXPECT_EQ(o.Active_tbsTab, 3);
  EXPECT_EQ(o.Active_lvwSessions_Column, 1);
  EXPECT_EQ(o.HHCompilerPath, "none");
  EXPECT_EQ(o.Left, 0);
  EXPECT_EQ(o.Width, 640);
  EXPECT_EQ(o.Height, 480);
  EXPECT_EQ(o.WindowState, 0);

  ViewSettings view;
  loadViewSettings(view, dir / "Zolmark.ini");
  EXPECT_TRUE(view.colored);
  EXPECT_EQ(view.Filters, "MsgBox\r\nInputBox");
  EXPECT_EQ(view.DefaultPlan, "Full profiling");
}

TEST(WindowOptions, RatiosAreThousandthsAndLineBreaksAWordOnDisk) {
  ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  WindowOptions o;
  o.X_ratio = 0.3;
  o.Y_ratio = 0.625;
  o.Active_tbsTab = 5;
  o.Width = 812;
  saveWindowOptions(o, ini);
  ViewSettings view;
  view.Filters = "MsgBox\r\nDoEvents\r\nSleep";
  view.colored = false;
  saveViewSettings(view, ini);
  EXPECT_EQ(Key("X_ratio", ini), "300");
  EXPECT_EQ(Key("Y_ratio", ini), "625");
  EXPECT_EQ(Key("Filters", ini), "MsgBox<vbCrLf>DoEvents<vbCrLf>Sleep");
  EXPECT_EQ(Key("fColored", ini), "False");
  // The grid's splitter has a key of its own that the window's save leaves.
  EXPECT_EQ(Key("Y_ratio_Graph", ini), "<missing>");

  const WindowOptions back = loadWindowOptions(ini);
  EXPECT_DOUBLE_EQ(back.X_ratio, 0.3);
  EXPECT_DOUBLE_EQ(back.Y_ratio, 0.625);
  EXPECT_EQ(back.Active_tbsTab, 5);
  EXPECT_EQ(back.Width, 812);
  ViewSettings viewBack;
  loadViewSettings(viewBack, ini);
  EXPECT_EQ(viewBack.Filters, view.Filters);
  EXPECT_FALSE(viewBack.colored);

  saveGraphRatio(0.4, ini);
  EXPECT_EQ(Key("Y_ratio_Graph", ini), "400");
  EXPECT_DOUBLE_EQ(loadWindowOptions(ini).Y_ratio_Graph, 0.4);
}

TEST(WindowOptions, DamagedValuesFallBackAndRatiosStayInside) {
  ScopedTempDir dir;
  const std::string ini = dir.Put("Zolmark.ini",
                                  "[Profiler]\r\nX_ratio=abc\r\nY_ratio=1000\r\n"
                                  "DisplayInfoType=9\r\nfColored=-1\r\nWindowState=7\r\n");
  const WindowOptions o = loadWindowOptions(ini);
  EXPECT_DOUBLE_EQ(o.X_ratio, 0.25);
  // A pane pushed against the edge would be lost for good.
  EXPECT_LT(o.Y_ratio, 1.0);
  EXPECT_EQ(o.DisplayInfoType, 4);
  EXPECT_EQ(o.WindowState, 2);
  ViewSettings view;
  loadViewSettings(view, ini);
  EXPECT_TRUE(view.colored);
}

}  // namespace
}  // namespace zol
