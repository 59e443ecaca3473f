// The chart's settings: defaults, bounds, and what is written back.

#include "flow/flow_options.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::ScopedTempDir;

TEST(FlowOptions, MissingKeysGiveTheDefaultsAndValuesAreKeptInBounds) {
  ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  EXPECT_EQ(LoadFlowOptions(ini), FlowOptions{});
  WriteFile(ini,
            "[Profiler]\r\nHorizontalFlow=500\r\nVerticalFlow=1\r\nSizeFlow=abc\r\n"
            "CallDepth0=9\r\nCallDepth1=-3\r\nColorSchemeFlow=0\r\nShowModuleFlow=7\r\n");
  const FlowOptions o = LoadFlowOptions(ini);
  EXPECT_EQ(o.HorizontalFlow, 100);
  EXPECT_EQ(o.VerticalFlow, 5);
  EXPECT_EQ(o.SizeFlow, 8);  // not a number: the default
  EXPECT_EQ(o.CallDepth[0], 5);
  EXPECT_EQ(o.CallDepth[1], 0);
  EXPECT_EQ(o.ColorSchemeFlow, 1);
  EXPECT_EQ(o.ShowModuleFlow, 1);
}

TEST(FlowOptions, SavedValuesReadBackAsDecimalTexts) {
  ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  FlowOptions o;
  o.HorizontalFlow = 70;
  o.VerticalFlow = 12;
  o.SizeFlow = 11;
  o.CallDepth = {2, 0};
  o.ColorSchemeFlow = 2;
  o.ShowModuleFlow = 0;
  SaveFlowOptions(o, ini);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "HorizontalFlow", "", ini), "70");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "CallDepth0", "", ini), "2");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "ShowModuleFlow", "", ini), "0");
  EXPECT_EQ(LoadFlowOptions(ini), o);
  EXPECT_EQ(o.Depths().callers, 2);
}

}  // namespace
}  // namespace zol
