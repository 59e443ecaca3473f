#include "grid/compared_grid.h"

#include "compare/global_sessions.h"
#include "compare/group_merge.h"
#include "grid/chart_arrays.h"
#include "grid/grid_frame.h"

namespace zol {

ComparedGrid::ComparedGrid(const Workspace& ws, const Selection& sel,
                           const std::vector<std::string>& leading,
                           const std::vector<std::string>& run)
    : ws_(ws),
      sel_(sel),
      leading_(static_cast<int>(leading.size())),
      perSession_(static_cast<int>(run.size())) {
  GetComparedSessions(ws, sel.project, list_);

  Table& t = build_.Grid;
  t.ImageList = ImageListKind::Nothing;
  for (const std::string& h : leading) t.AddColumn(h, Alignment::Left, 50);
  FakeHeaders& headers = build_.Headers;
  headers.FirstColumn = leading_;
  headers.NumberOfColumnsPerSession = perSession_;
  for (int k = 0; k < SessionCount(); ++k) {
    for (const std::string& h : run) t.AddColumn(h, Alignment::Right, 50);
    const Session& s = Own(k);
    headers.SessionNames.push_back(ws.fOnlyGroups && ws.SessionGroup.InRange(s.Group)
                                       ? ws.SessionGroup(s.Group).Name
                                       : s.Name);
  }
  build_.Arrays.LegendText = headers.SessionNames;
}

bool ComparedGrid::Needed(std::int32_t id, std::int32_t Obj) const {
  return IsNeeded(ws_, id, Obj, list_);
}

const Session& ComparedGrid::Values(int k) const {
  const std::int32_t s = list_(k + 1);
  if (ws_.fHomogeneous || !ws_.CompareSession.InRange(s)) return ws_.Session(s);
  return ws_.CompareSession(s);
}

const ProcedureValue* ComparedGrid::Procedure(int k, std::int32_t id) const {
  const Session& s = Values(k);
  return s.ProcedureValue.InRange(id) ? &s.ProcedureValue(id) : nullptr;
}

const ModuleValue* ComparedGrid::Module(int k, std::int32_t id) const {
  const Session& s = Values(k);
  return s.ModuleValue.InRange(id) ? &s.ModuleValue(id) : nullptr;
}

const CodeLineValue* ComparedGrid::Line(int k, std::int32_t id) const {
  const Session& s = Own(k);
  return s.CodeLineValue.InRange(id) ? &s.CodeLineValue(id) : nullptr;
}

RowRef ComparedGrid::AddRow(std::string_view text, std::string_view icon) {
  return build_.Grid.AddRow("", text, icon);
}

RowRef ComparedGrid::AddTotalRow(int totalColumn, std::string_view icon) {
  return zol::AddTotalRow(build_.Grid, totalColumn, icon);
}

GridBuild ComparedGrid::Finish(const std::string& title, bool pieUnavailable) {
  Table& t = build_.Grid;
  for (int r = 1; r <= t.RowCount(); ++r) {
    RowRef row = t.EditRow(r);
    for (int k = 0; k < SessionCount(); ++k) {
      for (int j = 0; j < perSession_; ++j) {
        row.SetColor(RunColumn(k, j), j == 0 ? kColorGreen : kColorDarkRed);
      }
    }
    if (t.Key(r) == kTotalKey) {
      for (int c = 1; c <= t.ColumnCount(); ++c) {
        row.SetBold(c, true);
        if (t.StoredText(row.CellAt(c)) == kTotalKey) row.SetColor(c, kColorBlue);
      }
    }
  }
  FitColumnWidths(t);
  t.SelectedRow = t.RowCount() > 0 ? 1 : 0;
  ChartArrays& chart = build_.Arrays;
  chart.ChartArrayPie.clear();
  chart.SetTitles(title, title);
  if (pieUnavailable) chart.PieCaption = kComparedPieCaption;
  build_.Chart = ChartUpdate::Draw;
  return std::move(build_);
}

}  // namespace zol
