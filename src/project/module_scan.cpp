#include "project/module_scan.h"

#include <array>

#include "base/text.h"
#include "project/code_parse.h"
#include "project/project_info.h"
#include "project/scan_line.h"

namespace zol {

namespace {

constexpr std::string_view kLineBreak = "\r\n";

// The statements that leave a procedure, by their first 7 characters.
bool IsProcedureExitText(std::string_view text) {
  static constexpr std::array<std::string_view, 6> kExits{"End Sub", "End Fun", "Exit Su",
                                                          "Exit Fu", "End Pro", "Exit Pr"};
  const std::string_view head = text.substr(0, 7);
  for (std::string_view e : kExits) {
    if (head == e) return true;
  }
  return false;
}

void CheckId(std::int32_t id, const char* what) {
  if (id < 1 || id > kMaxScanId) {
    throw std::out_of_range(std::string(what) + " ID " + std::to_string(id) + " is outside 1.." +
                            std::to_string(kMaxScanId));
  }
}

// Item `id` of a table that grows with the IDs met: where `id` is past
// `count`, the table is extended to it and `count` follows.
template <typename T>
T& GrowTo(Array1<T>& items, std::int32_t& count, std::int32_t id) {
  if (id > count) {
    count = id;
    items.ReDimPreserve(id);
  }
  return items(id);
}

}  // namespace

// The physical lines of a text, split at LF with a CR before it dropped, so
// that files with CR LF and with LF alone read the same.
class ProjectScan::Lines {
 public:
  explicit Lines(std::string_view text) : text_(text) {}

  bool AtEnd() const { return pos_ >= text_.size(); }

  std::string Next() {
    ++number_;
    const std::size_t lf = text_.find('\n', pos_);
    std::string_view line = text_.substr(pos_, lf == std::string_view::npos ? lf : lf - pos_);
    pos_ = lf == std::string_view::npos ? text_.size() : lf + 1;
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    return std::string(line);
  }

  // 1-based number of the line Next() returned last.
  int Number() const { return number_; }

 private:
  std::string_view text_;
  std::size_t pos_ = 0;
  int number_ = 0;
};

ProjectScan::ProjectScan(Workspace& ws, std::int32_t projectIndex, std::string appPrefix)
    : ws_(ws), cp_(projectIndex), AppPrefix(std::move(appPrefix)) {}

std::string ProjectScan::ScanModule(std::int32_t m, std::string_view text,
                                    const std::string& fileName) {
  module_ = m;
  currentPosition = 0;
  cleaned_ = CConcatString();
  Lines lines(text);
  int statementStart = 0;
  try {
    while (!lines.AtEnd()) {
      statementStart = lines.Number() + 1;
      ReadLogicalLine(lines);
      TakeLine();
    }
  } catch (const std::exception& e) {
    throw ScanError("Cannot scan \"" + fileName + "\", line " + std::to_string(statementStart) +
                    ": " + e.what());
  }
  return cleaned_.Value();
}

void ProjectScan::ReadLogicalLine(Lines& lines) {
  for (;;) {
    originalLine.clear();
    sourceLine.clear();
    lastFirstLine = std::move(firstLine);
    firstLine.clear();
    lastLinePosition = linePosition;
    linePosition = currentPosition + 1;
    bool first = true;
    for (;;) {
      std::string line = lines.Next();
      if (!dontWriteNextLine) ++currentPosition;
      if (first) firstLine = line;
      first = false;
      originalLine.append(line).append(kLineBreak);
      sourceLine += Trim(line);
      if (!IsContinued(line)) break;
      sourceLine.pop_back();  // the underscore
      if (lines.AtEnd()) break;
    }
    if (!dontWriteNextLine) return;
    // The rewritten line behind a 'zolLine marker: dropped, and not counted.
    dontWriteNextLine = false;
    if (lines.AtEnd()) {
      originalLine.clear();
      sourceLine.clear();
      firstLine.clear();
      return;
    }
  }
}

void ProjectScan::TakeLine() {
  const ScanLine line = ClassifyScanLine(firstLine, sourceLine, AppPrefix);
  switch (line.kind) {
    case ScanLineKind::AddedLine:
    case ScanLineKind::Attribute:
      --currentPosition;
      break;
    case ScanLineKind::LineProbe:
      TakeLineProbe(line.number, line.behind);
      break;
    case ScanLineKind::ExitProbe:
      TakeExitProbe();
      break;
    case ScanLineKind::EntryProbe:
      TakeEntry(line.number, line.critical, line.dead, true);
      break;
    case ScanLineKind::RewrittenLine:
      TakeRewrittenLine(line.number);
      break;
    case ScanLineKind::UntimedEntry:
      TakeEntry(line.number, line.critical, line.dead, false);
      break;
    case ScanLineKind::Code:
      TakeCode();
      break;
  }
}

void ProjectScan::TakeLineProbe(std::int32_t id, bool behind) {
  CurrentLine = id;
  --currentPosition;
  if (behind) {
    // The probe stands behind its line: the ID belongs to the line before.
    PlaceCodeLine(id, lastFirstLine, lastLinePosition);
  }
  if (currentProc != 0) ws_.Project(cp_).Procedure(currentProc).IsCovered = true;
}

void ProjectScan::TakeExitProbe() {
  --currentPosition;
  Rtf(currentPosition + 1).LineType = kRtfProcedureEnd;
}

void ProjectScan::TakeEntry(std::int32_t id, bool critical, bool dead, bool timed) {
  --currentPosition;
  currentProc = id;
  zol::Procedure& p = GrowProcedure(id);
  p.Name = procName;
  p.Type = procType;
  p.IsCritical = critical;
  p.IsDead = dead;
  p.IsProfiled = timed && !dead;
  p.BelongToModule = module_;
  p.Position = procPosition;
  Project& project = ws_.Project(cp_);
  project.ContainsCritical = project.ContainsCritical || critical;
  Rtf(procPosition) = {kRtfProcedureHead, id};
}

void ProjectScan::TakeRewrittenLine(std::int32_t id) {
  CurrentLine = id;
  const std::string original = RewrittenOriginal(originalLine);
  PlaceCodeLine(id, original, linePosition);
  cleaned_ << original << kLineBreak;
  dontWriteNextLine = true;
}

void ProjectScan::TakeCode() {
  if (CurrentLine > 0) {
    // The line a probe announced.
    CodeLine& c = PlaceCodeLine(CurrentLine, firstLine, linePosition);
    c.IsProcedureExit = IsProcedureExitText(c.Text);
    if (c.IsProcedureExit) Rtf(linePosition).LineType = kRtfProcedureEnd;
  } else {
    TakeProcedureHead();
  }
  cleaned_ << originalLine;
}

void ProjectScan::TakeProcedureHead() {
  NextStructure ns;
  if (!GetNextStructure(sourceLine, 1, ns)) return;
  if (ns.Structure_Type != kStructFunction && ns.Structure_Type != kStructSub &&
      ns.Structure_Type != kStructProperty) {
    return;
  }
  // The name runs from behind the keyword to its parameter list, else to the
  // next blank, else to the end.
  const int start = ns.Structure_Pos + ns.Structure_Len + 1;
  int end = InStr(start, sourceLine, "(");
  if (end == 0) end = InStr(start, sourceLine, " ");
  std::string name = end > 0 ? Mid(sourceLine, start, end - start) : Mid(sourceLine, start);
  ws_.Project(cp_).ListOfProc.append(name).append("\r");
  if (ns.Structure_Type == kStructProperty) {
    name += "[" + Mid(sourceLine, ns.Structure_Pos + 9, 3) + "]";
  }
  procName = std::move(name);
  procType = ns.Structure_Type;
  procPosition = linePosition;
}

CodeLine& ProjectScan::GrowCodeLine(std::int32_t id) {
  CheckId(id, "line");
  return GrowTo(ws_.Project(cp_).CodeLine, ws_.LinesNumber, id);
}

CodeLine& ProjectScan::PlaceCodeLine(std::int32_t id, const std::string& text,
                                     std::int32_t position) {
  CodeLine& c = GrowCodeLine(id);
  c.Text = Trim(text);
  c.BelongToProcedure = currentProc;
  c.Position = position;
  Rtf(position) = {kRtfCodeLine, id};
  CurrentLine = 0;
  return c;
}

zol::Procedure& ProjectScan::GrowProcedure(std::int32_t id) {
  CheckId(id, "procedure");
  return GrowTo(ws_.Project(cp_).Procedure, ws_.ProceduresNumber, id);
}

zol::RTFLine& ProjectScan::Rtf(std::int32_t position) {
  return ws_.Project(cp_).Module(module_).RTFLine(position);
}

}  // namespace zol
