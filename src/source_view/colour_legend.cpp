#include "source_view/colour_legend.h"

#include <cmath>

#include "base/vb_format.h"
#include "source_view/timing_colours.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";

void AddRow(std::string& out, const Workspace& ws, int entry, std::string_view text) {
  out += "<TR><TD><P ALIGN=LEFT><FONT COLOR=#";
  out += ws.view.ColorsHtml[static_cast<std::size_t>(entry)];
  out += ">";
  out += text;
  out += "</FONT></P></TD></TR>";
  out += kCrLf;
}

void AddRankRows(std::string& out, const Workspace& ws) {
  AddRow(out, ws, 11, "1% slowest code");
  AddRow(out, ws, 10, "1% to 2% slowest code");
  AddRow(out, ws, 9, "2% to 5% slowest code");
  AddRow(out, ws, 8, "5% to 10% slowest code");
  AddRow(out, ws, 7, "10% to 20% slowest code");
  AddRow(out, ws, 6, "20% to 50% slowest code");
  AddRow(out, ws, 5, "50% fastest code");
}

// One row per decade of seconds, the slowest starting at 10^offset.
void AddValueRows(std::string& out, const Workspace& ws, std::int32_t offset) {
  AddRow(out, ws, 11, "Time > " + CStr(std::pow(10.0, offset)) + "s");
  for (int i = 1; i <= 5; ++i) {
    AddRow(out, ws, 11 - i,
           Format(std::pow(10.0, offset - i), "0.000000") + " To " +
               Format(std::pow(10.0, offset - i + 1), "0.000000") + "s");
  }
  AddRow(out, ws, 5, "Time < " + CStr(std::pow(10.0, offset - 5)) + "s");
}

}  // namespace

std::string GetColorLegend(const Workspace& ws, std::int32_t colorMode,
                           std::int32_t displayInfoType) {
  if (colorMode == kColorNone) return "";
  const bool coverage = displayInfoType == kMeasureCoverage;

  std::string out =
      R"(<A NAME="Legend"></A><BR><TABLE CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>)";
  out += kCrLf;
  out +=
      R"(   <TR BGCOLOR=666666><TD><P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Color legend)";
  if (!coverage) out += " (based on " + MeasureWord(displayInfoType) + ")";
  out += "&nbsp</FONT><B></TD></TR>";
  out += kCrLf;

  AddRow(out, ws, 0, "Comments");
  AddRow(out, ws, 1, coverage ? "Neutral code" : "Neutral/Unexecuted code");
  if (coverage) {
    AddRow(out, ws, 3, "Executed code");
    AddRow(out, ws, 2, "Unexecuted code");
  } else if (colorMode == kColorByRank) {
    AddRankRows(out, ws);
  } else if (colorMode == kColorByValue) {
    AddValueRows(out, ws, DefaultValueOffset(displayInfoType));
  }

  out += "</TABLE><BR>";
  out += kCrLf;
  return out;
}

}  // namespace zol
