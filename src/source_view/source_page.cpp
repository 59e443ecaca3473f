#include "source_view/source_page.h"

#include <array>
#include <string_view>

#include "base/concat_string.h"
#include "base/files.h"
#include "base/numbers.h"
#include "base/text.h"
#include "project/code_parse.h"
#include "project/project_info.h"
#include "source_view/colour_legend.h"
#include "source_view/html_writer.h"
#include "source_view/timing_colours.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";
constexpr int kColumns = 5;
constexpr std::array<std::string_view, kColumns> kPlaceholders = {"HT", "AT", "TT", "AC", "TC"};
constexpr std::array<std::string_view, kColumns> kCaptions = {"Hits", "Avg.Time", "Tot.Time",
                                                              "Avg.Child", "Tot.Child"};

// Kinds of the statement that goes on over the next physical line.
enum Continued : int {
  kNewStatement = -1,
  kGoesOnPlain = 0,
  kGoesOnHead = 1,
  kGoesOnCode = 2,
  kGoesOnOtherHead = 3,
  kGoesOnComment = 4,
  kGoesOnEnd = 5,  // never set: a continued procedure end is carried as code
};
constexpr std::int32_t kRtfOtherHead = 3;  // a head kind the scan doesn't produce

std::string LegendLink(std::int32_t measure) {
  std::string s = R"(<A HREF="#legend"><B><FONT FACE="Arial" COLOR=666666 SIZE=1>See Color Legend)";
  if (measure != kMeasureCoverage) s += " (based on " + MeasureWord(measure) + ")";
  s += "</FONT></B></A><BR><BR>";
  return s;
}

// One walk over the side file of a module, writing one table row per
// statement. The members are the walk's state; a statement continued over
// several physical lines is gathered in str and written as one row, its last
// physical line deciding the row's kind.
class PageWalk {
 public:
  PageWalk(const Workspace& ws, std::int32_t session, std::int32_t moduleId,
           std::int32_t procedureId, std::int32_t infoType, Measure measure, bool withMenu)
      : ws_(ws),
        session_(ws.Session(session)),
        project_(ws.Project(session_.Project)),
        sessionId_(session),
        module_(moduleId),
        procedure_(procedureId),
        options_(ws.view.OptionsHtml.at(static_cast<std::size_t>(infoType))),
        measure_(IndexOf(measure)),
        withMenu_(withMenu) {}

  void WriteTableHead(CConcatString& cc);
  void WriteRows(CConcatString& cc, std::string_view text);

 private:
  bool Selected(int k) const { return options_.Column[static_cast<std::size_t>(k)]; }
  const std::string& Colour(int entry) const {
    return ws_.view.ColorsHtml[static_cast<std::size_t>(entry)];
  }

  void ClassifyLine(std::int32_t T, const RTFLine& r, const std::string& line);
  void PlainText(const std::string& line);
  void Code(std::int32_t T, const RTFLine& r, const std::string& line);
  void ProcedureHead(std::int32_t T, const RTFLine& r, const std::string& line);

  void SetTexts(std::int32_t hits, double average, double total, double childAverage,
                double childTotal);
  void SetTextsTo(std::string_view text);
  void WriteRow(CConcatString& cc, std::int32_t T);
  std::string NumericCells(std::int32_t T);
  std::string CodeText(std::int32_t T) const;
  bool EndsWantedProcedure(std::int32_t T) const;

  const Workspace& ws_;
  const Session& session_;
  const Project& project_;
  const std::int32_t sessionId_;
  const std::int32_t module_;
  const std::int32_t procedure_;
  const HtmlPageOptions options_;
  const std::int32_t measure_;
  const bool withMenu_;

  std::string str_;
  int ContinuedType_ = kNewStatement;
  std::string FontColour_;
  std::string addPrefix_;
  std::string strMenu_;
  std::int32_t LineID_ = 0;
  std::int32_t ProcID_ = 0;
  bool withinDead_ = false;
  bool insideProcedure_ = false;
  std::string TDStringIni_;
  std::array<std::string, kColumns> texts_;
};

void PageWalk::WriteTableHead(CConcatString& cc) {
  int columnCount = 0;
  for (int k = 0; k < kColumns; ++k) columnCount += Selected(k) ? 1 : 0;

  HtmlWriteString(
      cc,
      R"(<TABLE WIDTH="100%" CELLPADDING="2" CELLSPACING="0" BORDER="1" RULES=COLS bgcolor=F9F9F9>)",
      1);
  HtmlWriteString(cc, "<TR BGCOLOR=666666>", 2);
  int cp = 0;
  for (int k = 0; k < kColumns; ++k) {
    if (!Selected(k)) continue;
    ++cp;
    HtmlWriteString(cc, "<TD>", 3);
    // The second <B> opens rather than closes; pages have always been written so.
    HtmlWriteString(cc,
                    std::string(R"(<P ALIGN=CENTER><B><FONT FACE="Arial" COLOR=FFFFFF>)") +
                        std::string(kCaptions[static_cast<std::size_t>(k)]) + "</FONT><B>",
                    4);
    HtmlWriteString(cc, "</TD>", 3);
    // The last numeric column is always the darker shade; they alternate to its left.
    TDStringIni_ += "<TD bgcolor=";
    TDStringIni_ += cp % 2 == columnCount % 2 ? "DDDDDD" : "EEEEEE";
    TDStringIni_ += ">";
    TDStringIni_ += kPlaceholders[static_cast<std::size_t>(k)];
    TDStringIni_ += "</TD>";
  }
  HtmlWriteString(cc, "<TD>", 3);
  HtmlWriteString(cc, R"(<P ALIGN=LEFT><B><FONT FACE="Arial" COLOR=FFFFFF>Lines</FONT><B>)", 4);
  HtmlWriteString(cc, "</TD>", 3);
  HtmlWriteString(cc, "</TR>", 2);
}

void PageWalk::WriteRows(CConcatString& cc, std::string_view text) {
  const Array1<RTFLine>& rtf = project_.Module(module_).RTFLine;
  const int len = static_cast<int>(text.size());
  int posCrLf = 0;
  int lastPos = -1;
  int lineNumber = 0;
  while (posCrLf < len) {
    addPrefix_.clear();
    FontColour_ = Colour(1);
    const int found = InStr(posCrLf + 1, text, kCrLf);
    posCrLf = found == 0 ? len + 1 : found;
    const std::string line = Mid(text, lastPos + 2, posCrLf - lastPos - 2);
    ++lineNumber;
    if (lineNumber > rtf.UBound()) break;
    const RTFLine& r = rtf(lineNumber);

    // A single-procedure page skips all that stands before the procedure's head.
    if (procedure_ != 0) {
      if (!insideProcedure_ && r.LineType == kRtfProcedureHead && r.RefersTo == procedure_) {
        insideProcedure_ = true;
      }
      if (!insideProcedure_) {
        lastPos = posCrLf;
        continue;
      }
    }
    if (ContinuedType_ == kNewStatement) {
      SetTextsTo("");
      strMenu_.clear();
    }

    ClassifyLine(r.LineType, r, line);

    str_ += line;
    if (ContinuedType_ != kNewStatement) {
      str_ += kCrLf;
      lastPos = posCrLf;
      continue;
    }
    WriteRow(cc, r.LineType);
    if (EndsWantedProcedure(r.LineType)) break;
    str_.clear();
    lastPos = posCrLf;
  }
}

void PageWalk::ClassifyLine(std::int32_t T, const RTFLine& r, const std::string& line) {
  const int ct = ContinuedType_;
  if ((T == kRtfPlain && ct == kNewStatement) || ct == kGoesOnPlain || ct == kGoesOnComment) {
    PlainText(line);
  } else if (T == kRtfCodeLine || ct == kGoesOnCode || T == kRtfProcedureEnd || ct == kGoesOnEnd) {
    Code(T, r, line);
  } else if (T == kRtfProcedureHead || ct == kGoesOnHead || T == kRtfOtherHead ||
             ct == kGoesOnOtherHead) {
    ProcedureHead(T, r, line);
  }
}

// Only a comment in the first column is seen as one: one behind blanks keeps
// the neutral colour.
void PageWalk::PlainText(const std::string& line) {
  if (!line.empty()) {
    if (line[0] == '\'' || ContinuedType_ == kGoesOnComment) {
      FontColour_ = Colour(0);
      ContinuedType_ = IsContinued(line) ? kGoesOnComment : kNewStatement;
    } else {
      ContinuedType_ = IsContinued(line) ? kGoesOnPlain : kNewStatement;
      if (withinDead_) FontColour_ = Colour(4);
    }
  } else if (withinDead_) {
    FontColour_ = Colour(4);
  }
}

void PageWalk::Code(std::int32_t T, const RTFLine& r, const std::string& line) {
  if (ContinuedType_ == kNewStatement) LineID_ = r.RefersTo;
  if (withinDead_) {
    FontColour_ = Colour(4);
  } else if (LineID_ != 0) {
    const CodeLineValue& v = session_.CodeLineValue(LineID_);
    if (v.Hits != 0) {
      FontColour_ =
          measure_ == kMeasureCoverage
              ? Colour(3)
              : GetTimingColourString(ws_, sessionId_, 0, LineID_, measure_, options_.ColorScheme);
      SetTexts(v.Hits, v.AverageTime, v.TotalTime, v.ChildAverageTime, v.ChildTotalTime);
    } else {
      FontColour_ = measure_ == kMeasureCoverage ? Colour(2) : Colour(1);
      SetTextsTo("-");
    }
    // The figures of a line that ends a procedure go in parentheses.
    if (measure_ != kMeasureCoverage && (T == kRtfProcedureEnd || ContinuedType_ == kGoesOnEnd)) {
      for (int k = 0; k < kColumns; ++k) {
        if (Selected(k))
          texts_[static_cast<std::size_t>(k)] = "(" + texts_[static_cast<std::size_t>(k)] + ")";
      }
    }
  }
  ContinuedType_ = IsContinued(line) ? kGoesOnCode : kNewStatement;
  strMenu_ = "<A HREF=\"|" + std::to_string(module_) + "|" + std::to_string(ProcID_) + "|" +
             std::to_string(LineID_) + "\">";
}

void PageWalk::ProcedureHead(std::int32_t T, const RTFLine& r, const std::string& line) {
  LineID_ = 0;
  if (T != kRtfProcedureHead && ContinuedType_ != kGoesOnHead) {
    ContinuedType_ = IsContinued(line) ? kGoesOnOtherHead : kNewStatement;
  } else {
    if (ContinuedType_ == kNewStatement) ProcID_ = r.RefersTo;
    ContinuedType_ = IsContinued(line) ? kGoesOnHead : kNewStatement;
  }

  if (project_.Procedure(ProcID_).IsDead) {
    FontColour_ = Colour(4);
    withinDead_ = true;
  } else {
    withinDead_ = false;
    if (ContinuedType_ == kNewStatement) {
      const ProcedureValue& v = session_.ProcedureValue(ProcID_);
      if (v.Hits != 0) {
        FontColour_ = measure_ == kMeasureCoverage
                          ? Colour(3)
                          : GetTimingColourString(ws_, sessionId_, ProcID_, 0, measure_,
                                                  options_.ColorScheme);
        SetTexts(v.Hits, v.AverageTime, v.TotalTime, v.ChildAverageTime, v.ChildTotalTime);
      } else {
        if (measure_ == kMeasureCoverage) FontColour_ = Colour(2);
        SetTextsTo("-");
      }
    }
  }
  addPrefix_ = "<A NAME=\"P" + std::to_string(ProcID_) + "\"></A>";
  strMenu_ = "<A HREF=\"|" + std::to_string(module_) + "|" + std::to_string(ProcID_) + "|" +
             std::to_string(LineID_) + "\">";
}

void PageWalk::SetTexts(std::int32_t hits, double average, double total, double childAverage,
                        double childTotal) {
  const std::array<double, kColumns> times = {0, average, total, childAverage, childTotal};
  for (int k = 0; k < kColumns; ++k) {
    if (!Selected(k)) continue;
    texts_[static_cast<std::size_t>(k)] =
        k == 0 ? std::to_string(hits)
               : FormatSignificant(times[static_cast<std::size_t>(k)], 7, true);
  }
}

void PageWalk::SetTextsTo(std::string_view text) {
  for (int k = 0; k < kColumns; ++k) {
    if (Selected(k)) texts_[static_cast<std::size_t>(k)] = text;
  }
}

std::string PageWalk::NumericCells(std::int32_t T) {
  std::string td = TDStringIni_;
  if (T == kRtfProcedureHead) {
    td = Replace(td, "DDDDDD", "CCCCCC");
    td = Replace(td, "EEEEEE", "CCCCCC");
  }
  for (int k = 0; k < kColumns; ++k) {
    if (Selected(k)) {
      td = Replace(td, kPlaceholders[static_cast<std::size_t>(k)],
                   texts_[static_cast<std::size_t>(k)]);
    }
  }
  // A line that ends a procedure shows its figures small, and its text neutral
  // unless it is dead.
  if (T == kRtfProcedureEnd) {
    td = Replace(td, "(", "<VAR>(");
    td = Replace(td, ")", ")</VAR>");
    if (FontColour_ != Colour(4)) FontColour_ = Colour(1);
  }
  return td;
}

std::string PageWalk::CodeText(std::int32_t T) const {
  const std::string prepared = HtmlPrepareString(str_.empty() ? std::string(" ") : str_);
  const std::string L = withMenu_ ? strMenu_ : std::string();
  // A plain-text row has no link to open, yet with links on it still closes one.
  const std::string E = withMenu_ ? "</A>" : "";
  const bool bold = T == kRtfProcedureHead;
  std::string s = addPrefix_ + L;
  if (options_.ColorScheme == kColorNone) {
    s += "<PRE>";
  } else {
    s += "<FONT COLOR=#" + FontColour_ + "><PRE>";
  }
  if (bold) s += "<B>";
  s += prepared;
  if (bold) s += "</B>";
  s += options_.ColorScheme == kColorNone ? "</PRE>" : "</PRE></FONT>";
  return s + E;
}

void PageWalk::WriteRow(CConcatString& cc, std::int32_t T) {
  HtmlWriteString(cc, T == kRtfProcedureHead ? "<TR><B>" : "<TR>", 3);
  HtmlWriteString(cc, NumericCells(T), 3);
  HtmlWriteString(cc, "<TD>", 3);
  HtmlWriteString(cc, CodeText(T), 4);
  HtmlWriteString(cc, "</TD>", 3);
  HtmlWriteString(cc, "</TR>", 2);
}

// A single-procedure page ends with the End statement of its procedure; an
// Exit statement, which the scan marks the same way, goes on.
bool PageWalk::EndsWantedProcedure(std::int32_t T) const {
  if (procedure_ == 0 || T != kRtfProcedureEnd) return false;
  const std::string joined = Replace(str_, " _\r\n", "");
  NextStructure ns;
  while (GetNextStructure(joined, ns.Structure_Pos + ns.Structure_Len + 1, ns)) {
    if (ns.Structure_Type == kStructEndFunction || ns.Structure_Type == kStructEndSub ||
        ns.Structure_Type == kStructEndProperty) {
      return true;
    }
  }
  return false;
}

}  // namespace

std::string GetHtmlCode(const Workspace& ws, std::int32_t session, std::int32_t& moduleId,
                        std::int32_t& procedureId, std::int32_t infoType, Measure measure,
                        bool withMenu) {
  const HtmlPageOptions& options = ws.view.OptionsHtml.at(static_cast<std::size_t>(infoType));
  CConcatString cc;
  if (options.ColorScheme != kColorNone) HtmlWriteString(cc, LegendLink(IndexOf(measure)), 0);

  const std::int32_t p = ws.Session(session).Project;
  const Project& project = ws.Project(p);
  if (moduleId > project.ModulesNumber || procedureId > project.ProceduresNumber) {
    procedureId = 1;
    moduleId = project.Procedure(1).BelongToModule;
  }

  PageWalk walk(ws, session, moduleId, procedureId, infoType, measure, withMenu);
  walk.WriteTableHead(cc);
  walk.WriteRows(cc, LoadFile(RtfFileName(ws, p, moduleId)));

  HtmlWriteString(cc, "</TABLE>", 1);
  HtmlWriteString(cc, GetColorLegend(ws, options.ColorScheme, IndexOf(measure)), 0);
  return cc.Value();
}

}  // namespace zol
