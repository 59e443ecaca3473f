#include "source_view/timing_colours.h"

#include <gtest/gtest.h>

#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"
#include "source_view/colour_legend.h"

namespace zol {
namespace {

TEST(TimingColours, HtmlFormSwapsRedAndBlue) {
  EXPECT_EQ(GetHTMColor(255), "FF0000");
  EXPECT_EQ(GetHTMColor(0x00A1B2C3), "C3B2A1");
  EXPECT_EQ(GetHTMColor(0), "000000");
}

TEST(TimingColours, LoadFromSettingsFallsBackOnDefaults) {
  testing::ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  Workspace ws;
  LoadColors(ws, false, ini);  // no file at all
  EXPECT_EQ(ws.view.ColorsHtml[0], "808080");
  EXPECT_EQ(ws.view.ColorsHtml[7], "AFAF00");
  EXPECT_EQ(ws.view.ColorsHtml[11], "FF0000");

  ws.view.Colors[3] = 0x00123456;
  SaveColors(ws, ini);
  VBWritePrivateProfileString("Profiler", "Colors5", "not a colour", ini);
  Workspace again;
  LoadColors(again, false, ini);
  EXPECT_EQ(again.view.ColorsHtml[3], "563412");
  EXPECT_EQ(again.view.ColorsHtml[4], "000000");
  LoadColors(again, true, ini);
  EXPECT_EQ(again.view.ColorsHtml[3], "008000");
}

// A session whose 100 lines are all hit, so that a line's rank is its
// percentage.
class Bands : public ::testing::Test {
 protected:
  void SetUp() override {
    LoadColors(ws, true, "");
    Session& s = ws.SessionSlot(1);
    s.SessionValue.TotalLines = s.SessionValue.HitLines = 100;
    s.LineTotalTimeRank.ReDim(100);
    for (int i = 1; i <= 100; ++i) s.LineTotalTimeRank(i) = i;
    s.CodeLineValue.ReDim(1);
    s.ProcedureValue.ReDim(1);
  }
  int Entry(std::int32_t proc, std::int32_t line, std::int32_t measure, std::int32_t mode) {
    return TimingColourEntry(ws, 1, proc, line, measure, mode).value_or(-1);
  }
  int ForcedEntry(double v, std::int32_t measure, std::optional<std::int32_t> offset = {}) {
    return TimingColourEntry(ws, 0, 0, 0, measure, kColorByValue, offset, v).value_or(-1);
  }
  Workspace ws;
};

TEST_F(Bands, RankBoundsFallToTheSlowerBand) {
  EXPECT_EQ(Entry(0, 100, 0, kColorByRank), 11);
  EXPECT_EQ(Entry(0, 99, 0, kColorByRank), 11);
  EXPECT_EQ(Entry(0, 98, 0, kColorByRank), 10);
  EXPECT_EQ(Entry(0, 97, 0, kColorByRank), 9);
  EXPECT_EQ(Entry(0, 95, 0, kColorByRank), 9);
  EXPECT_EQ(Entry(0, 90, 0, kColorByRank), 8);
  EXPECT_EQ(Entry(0, 80, 0, kColorByRank), 7);
  EXPECT_EQ(Entry(0, 50, 0, kColorByRank), 6);
  EXPECT_EQ(Entry(0, 49, 0, kColorByRank), 5);
}

TEST_F(Bands, RankOfALineCountsOnlyHitLines) {
  // 40 of 100 lines unhit: rank 70 is place 30 of 60, so 50%.
  ws.Session(1).SessionValue.HitLines = 60;
  EXPECT_EQ(Entry(0, 70, 0, kColorByRank), 6);
  EXPECT_EQ(Entry(0, 69, 0, kColorByRank), 5);
}

TEST_F(Bands, ProcedureRanksAreFractionsInTheirOwnPrecision) {
  ProcedureValue& p = ws.Session(1).ProcedureValue(1);
  p.TotalTimingRank = 0.95F;  // just below 0.95 as a single, yet 95 once scaled
  p.ChildTotalTimingRank = 0.98;
  EXPECT_EQ(Entry(1, 0, 0, kColorByRank), 9);
  EXPECT_EQ(Entry(1, 0, 2, kColorByRank), 10);
}

TEST_F(Bands, ValueDecades) {
  EXPECT_EQ(ForcedEntry(100, 0), 11);
  EXPECT_EQ(ForcedEntry(99.9, 0), 10);
  EXPECT_EQ(ForcedEntry(1, 2), 9);
  EXPECT_EQ(ForcedEntry(0.001, 0), 6);
  EXPECT_EQ(ForcedEntry(0.0000999, 0), 5);
  EXPECT_EQ(ForcedEntry(1, 1), 11);  // averages: the slowest starts at 1 s
  EXPECT_EQ(ForcedEntry(0.5, 3), 10);
  EXPECT_EQ(ForcedEntry(0.5, 0, 0), 10);  // an offset given wins
  EXPECT_EQ(ForcedEntry(0, 0), 5);
}

TEST_F(Bands, LineValueAndModeWithoutColour) {
  ws.Session(1).CodeLineValue(1).TotalTime = 150;
  EXPECT_EQ(Entry(0, 1, 0, kColorByValue), 11);
  EXPECT_EQ(Entry(0, 1, 1, kColorByValue), 5);  // average is 0
  EXPECT_EQ(Entry(0, 1, 4, kColorByValue), 5);  // no value for coverage
  EXPECT_EQ(GetTimingColourString(ws, 1, 0, 1, 0, kColorByValue), "FF0000");
  EXPECT_EQ(GetTimingColour(ws, 1, 0, 1, 0, kColorByValue), "255");
  // Without a colour mode a value above 0 has no colour; 0 still has the fastest.
  EXPECT_EQ(GetTimingColour(ws, 0, 0, 0, 0, kColorNone, std::nullopt, 2.0), "");
  EXPECT_EQ(GetTimingColour(ws, 0, 0, 0, 0, kColorNone, std::nullopt, 0.0), "32768");
}

TEST(ColourLegend, RowsPerModeAndMeasure) {
  Workspace ws;
  LoadColors(ws, true, "");
  EXPECT_EQ(GetColorLegend(ws, kColorNone, 0), "");

  const std::string head =
      "<A NAME=\"Legend\"></A><BR><TABLE CELLPADDING=\"2\" CELLSPACING=\"0\" BORDER=\"1\" "
      "RULES=COLS bgcolor=F9F9F9>\r\n   <TR BGCOLOR=666666><TD><P ALIGN=LEFT><B><FONT "
      "FACE=\"Arial\" COLOR=FFFFFF>Color legend";
  auto row = [](const std::string& colour, const std::string& text) {
    return "<TR><TD><P ALIGN=LEFT><FONT COLOR=#" + colour + ">" + text +
           "</FONT></P></TD></TR>\r\n";
  };
  const std::string first = row("808080", "Comments");
  EXPECT_EQ(GetColorLegend(ws, kColorByValue, 3),
            head + " (based on average children time)&nbsp</FONT><B></TD></TR>\r\n" + first +
                row("0000FF", "Neutral/Unexecuted code") + row("FF0000", "Time > 1s") +
                row("FF2800", "0.100000 To 1.000000s") + row("FF6400", "0.010000 To 0.100000s") +
                row("FF9100", "0.001000 To 0.010000s") + row("AFAF00", "0.000100 To 0.001000s") +
                row("00AA00", "0.000010 To 0.000100s") + row("008000", "Time < 1E-05s") +
                "</TABLE><BR>\r\n");
  // Coverage shows four rows in any mode; an unknown mode only the first two.
  const std::string coverage = GetColorLegend(ws, kColorByRank, 4);
  EXPECT_EQ(coverage, head + "&nbsp</FONT><B></TD></TR>\r\n" + first +
                          row("0000FF", "Neutral code") + row("008000", "Executed code") +
                          row("FF0000", "Unexecuted code") + "</TABLE><BR>\r\n");
  EXPECT_EQ(GetColorLegend(ws, kColorByValue, 4), coverage);
  EXPECT_EQ(GetColorLegend(ws, 7, 2),
            head + " (based on total children time)&nbsp</FONT><B></TD></TR>\r\n" + first +
                row("0000FF", "Neutral/Unexecuted code") + "</TABLE><BR>\r\n");
}

}  // namespace
}  // namespace zol
