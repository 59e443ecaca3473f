#include "grid/grid_click.h"

#include <string>

#include "base/text.h"

namespace zol {

namespace {

std::int32_t FindModule(const Project& project, const std::string& name) {
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    if (project.Module(m).Name == name) return m;
  }
  return 0;
}

ClickTarget ModuleTarget(const Project& project, const Table& table, int row, int moduleColumn) {
  ClickTarget t;
  if (moduleColumn != 0) t.module = FindModule(project, table.Text(row, moduleColumn));
  return t;
}

ClickTarget ProcedureTarget(const Project& project, const Table& table, int row, int moduleColumn,
                            int procedureColumn) {
  ClickTarget t = ModuleTarget(project, table, row, moduleColumn);
  if (t.module == 0) return {};
  const std::string name = table.Text(row, procedureColumn);
  for (std::int32_t p = 1; p <= project.ProceduresNumber; ++p) {
    const Procedure& proc = project.Procedure(p);
    if (proc.BelongToModule == t.module && proc.Name == name) {
      t.procedure = p;
      return t;
    }
  }
  return {};
}

ClickTarget LineTarget(const Project& project, const Table& table, int row, int lineIdColumn) {
  const auto id = ParseNumberText(table.Text(row, lineIdColumn));
  if (!id || !project.CodeLine.InRange(static_cast<std::int64_t>(*id)) ||
      *id != static_cast<std::int32_t>(*id)) {
    return {};
  }
  ClickTarget t;
  t.line = static_cast<std::int32_t>(*id);
  t.procedure = project.CodeLine(t.line).BelongToProcedure;
  if (project.Procedure.InRange(t.procedure))
    t.module = project.Procedure(t.procedure).BelongToModule;
  return t;
}

}  // namespace

ClickTarget ClickedPlace(const Project& project, const Table& table, int row, int column) {
  if (row < 1 || row > table.RowCount() || column < 1 || column > table.ColumnCount()) return {};
  const int moduleColumn = table.FindColumn("Module");
  const int procedureColumn = table.FindColumn("Procedure");
  const int lineIdColumn = table.FindColumn("Line ID");
  const std::string& header = table.ColumnAt(column).Header;

  if (header == "Module") {
    ClickTarget t;
    t.module = FindModule(project, table.Text(row, column));
    return t;
  }
  if (header == "Procedure") return ProcedureTarget(project, table, row, moduleColumn, column);
  if (lineIdColumn != 0) return LineTarget(project, table, row, lineIdColumn);
  if (procedureColumn != 0)
    return ProcedureTarget(project, table, row, moduleColumn, procedureColumn);
  return ModuleTarget(project, table, row, moduleColumn);
}

std::int32_t TabAfterClick(std::int32_t clickKind, std::int32_t activeTab) {
  switch (clickKind) {
    case kSingleClick:
      return activeTab + 1;
    case kDoubleClick:
      return kTabSource;
    default:
      return activeTab;
  }
}

}  // namespace zol
