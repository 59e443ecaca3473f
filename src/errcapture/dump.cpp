#include "errcapture/dump.h"

#include <cstdio>

#include "errcapture/trace.h"
#include "session/workspace.h"

namespace zol {

namespace {

struct DumpState {
  std::string file;
  bool fileSet = false;
  std::FILE* out = nullptr;
};

DumpState& State() {
  static DumpState state;
  return state;
}

bool WriteLine(std::FILE* out, std::string_view text) {
  if (out == nullptr) return false;
  std::fwrite(text.data(), 1, text.size(), out);
  std::fwrite("\r\n", 1, 2, out);
  return std::fflush(out) == 0 && std::ferror(out) == 0;
}

template <typename T>
void Field(std::string_view record, const char* field, const T& value, int level) {
  zolDumpVariable(std::string(record) + "." + field, value, level);
}

}  // namespace

void zolSetDumpFile(const std::string& file) {
  zolCloseDumpFile();
  State().file = file;
  State().fileSet = true;
}

const std::string& zolDumpFileName() {
  DumpState& s = State();
  return s.fileSet ? s.file : CurrentProtectorSettings().zolDumpFile;
}

void zolOpenDumpFile() {
  DumpState& s = State();
  if (s.out != nullptr) return;
  const std::string& name = zolDumpFileName();
  if (!name.empty()) s.out = std::fopen(name.c_str(), "ab");
}

void zolCloseDumpFile() {
  DumpState& s = State();
  if (s.out != nullptr) std::fclose(s.out);
  s.out = nullptr;
}

void zolReportToFile(std::string_view text) {
  zolOpenDumpFile();
  if (WriteLine(State().out, text)) return;
  zolCloseDumpFile();
  zolOpenDumpFile();
  WriteLine(State().out, text);
}

void zolDumpString(std::string_view text) {
  zolReportToFile(text);
}

std::string DumpIndent(int level) {
  return std::string(static_cast<std::size_t>(level > 0 ? level : 0), '\t');
}

std::string DumpCut(std::string_view text) {
  const auto max = static_cast<std::size_t>(CurrentProtectorSettings().zolDumpStringMaxLength);
  return std::string(text.substr(0, max));
}

void DumpGuarded(std::string_view name, int level, const std::function<void()>& dump) {
  try {
    dump();
  } catch (...) {
    try {
      zolReportToFile(DumpIndent(level) + std::string(name) + " = {Variable Dumping Error}");
    } catch (...) {
    }
  }
}

bool zolDumpArrayHead(std::string_view name, const ArrayShape& shape, std::string_view elementType,
                      int level) {
  if (shape.bounds.size() > 4) {
    zolReportToFile(DumpIndent(level) + "Array " + std::string(name) +
                    "() not processed: " + std::to_string(shape.bounds.size()) + " dimensions");
    return false;
  }
  zolReportToFile(DumpIndent(level) + "Array " + zolParamToText(name, shape) + " As " +
                  std::string(elementType));
  return true;
}

void DumpRecord(std::string_view n, const Session& v, int level) {
  Field(n, "Name", v.Name, level);
  Field(n, "SessionFile", v.SessionFile, level);
  Field(n, "Number", v.Number, level);
  Field(n, "Project", v.Project, level);
  Field(n, "GroupFile", v.GroupFile, level);
  Field(n, "ProjectFile", v.ProjectFile, level);
  Field(n, "IniFile", v.IniFile, level);
  Field(n, "OriginalProjectFile", v.OriginalProjectFile, level);
  Field(n, "LinesNumber", v.LinesNumber, level);
  Field(n, "ProceduresNumber", v.ProceduresNumber, level);
  Field(n, "DateTime", v.DateTime, level);
  Field(n, "Group", v.Group, level);
  Field(n, "RunType", v.RunType, level);
  Field(n, "Selected", v.Selected, level);
  Field(n, "Loaded", v.Loaded, level);
  Field(n, "Invisible", v.Invisible, level);
  Field(n, "IsMergedGroupSession", v.IsMergedGroupSession, level);
  Field(n, "ProcedureValue", v.ProcedureValue, level);
  Field(n, "ModuleValue", v.ModuleValue, level);
  const std::string sessionValue = std::string(n) + ".SessionValue";
  DumpGuarded(sessionValue, level, [&] { DumpRecord(sessionValue, v.SessionValue, level); });
  Field(n, "FlowPair", v.FlowPair, level);
  Field(n, "nFlowPair", v.nFlowPair, level);
  Field(n, "FirstProc", v.FirstProc, level);
  Field(n, "LastProc", v.LastProc, level);
  Field(n, "ActiveFilters", v.ActiveFilters, level);
  Field(n, "nFilters", v.nFilters, level);
}

void DumpRecord(std::string_view n, const SessionGroup& v, int level) {
  Field(n, "Name", v.Name, level);
  Field(n, "DateTime", v.DateTime, level);
  Field(n, "SessionFile", v.SessionFile, level);
  Field(n, "GroupFile", v.GroupFile, level);
  Field(n, "IniFile", v.IniFile, level);
  Field(n, "Project", v.Project, level);
  Field(n, "Selected", v.Selected, level);
  Field(n, "Loaded", v.Loaded, level);
  Field(n, "nSession", v.nSession, level);
  Field(n, "Sessions", v.Sessions, level);
  Field(n, "GroupMergedSession", v.GroupMergedSession, level);
}

void DumpRecord(std::string_view n, const Module& v, int level) {
  Field(n, "FileName", v.FileName, level);
  Field(n, "Name", v.Name, level);
  Field(n, "Type", v.Type, level);
  Field(n, "BelongToProject", v.BelongToProject, level);
}

void DumpRecord(std::string_view n, const Procedure& v, int level) {
  Field(n, "BelongToModule", v.BelongToModule, level);
  Field(n, "Name", v.Name, level);
  Field(n, "Type", v.Type, level);
  Field(n, "Position", v.Position, level);
  Field(n, "IsProfiled", v.IsProfiled, level);
  Field(n, "IsCovered", v.IsCovered, level);
  Field(n, "IsCritical", v.IsCritical, level);
  Field(n, "IsDead", v.IsDead, level);
}

void DumpRecord(std::string_view n, const Project& v, int level) {
  Field(n, "Loaded", v.Loaded, level);
  Field(n, "ProjectFile", v.ProjectFile, level);
  Field(n, "ProjectFileDateTime", v.ProjectFileDateTime, level);
  Field(n, "Name", v.Name, level);
  Field(n, "Procedure", v.Procedure, level);
  Field(n, "Module", v.Module, level);
  Field(n, "LinesNumber", v.LinesNumber, level);
  Field(n, "ProceduresNumber", v.ProceduresNumber, level);
  Field(n, "ModulesNumber", v.ModulesNumber, level);
  Field(n, "ListOfProc", v.ListOfProc, level);
  Field(n, "ListOfModule", v.ListOfModule, level);
  Field(n, "ContainsCritical", v.ContainsCritical, level);
  for (std::size_t i = 0; i < v.UnreadModules.size(); ++i) {
    const std::string unread = std::string(n) + ".UnreadModules(" + std::to_string(i) + ")";
    Field(unread, "FileName", v.UnreadModules[i].FileName, level);
    Field(unread, "Fault", v.UnreadModules[i].Fault, level);
  }
}

void DumpSelection(const Selection& sel) {
  const std::string_view w = "Selection";
  Field(w, "session.kind", static_cast<std::int32_t>(sel.session.kind()), 0);
  Field(w, "session.sessionIndex", sel.session.sessionIndex(), 0);
  Field(w, "session.groupIndex", sel.session.groupIndex(), 0);
  Field(w, "project", sel.project, 0);
  Field(w, "module", sel.module, 0);
  Field(w, "procedure", sel.procedure, 0);
  Field(w, "line", sel.line, 0);
  Field(w, "tab", IndexOf(sel.tab), 0);
  Field(w, "measure", IndexOf(sel.measure), 0);
}

void DumpWorkspace(const Workspace& ws) {
  zolReportToFile(kGlobalVariablesBox);
  const std::string_view w = "Workspace";
  Field(w, "appFolder", ws.appFolder, 0);
  Field(w, "abort", ws.abort, 0);
  Field(w, "view.DefaultPlan", ws.view.DefaultPlan, 0);
  Field(w, "view.colored", ws.view.colored, 0);
  Field(w, "nSession", ws.nSession, 0);
  Field(w, "fHomogeneous", ws.fHomogeneous, 0);
  Field(w, "fOnlyGroups", ws.fOnlyGroups, 0);
  Field(w, "nSessionGroup", ws.nSessionGroup, 0);
  Field(w, "view.Filters", ws.view.Filters, 0);
  Field(w, "PerformanceFrequency", ws.PerformanceFrequency, 0);
  Field(w, "TraceOverhead", ws.TraceOverhead, 0);
  Field(w, "nProject", ws.nProject, 0);
  Field(w, "LinesNumber", ws.LinesNumber, 0);
  Field(w, "ProceduresNumber", ws.ProceduresNumber, 0);
  Field(w, "ModulesNumber", ws.ModulesNumber, 0);
  Field(w, "RtfPath", ws.RtfPath, 0);
  Field(w, "RtfFile", ws.RtfFile, 0);
  Field(w, "view.FontHTML", ws.view.FontHTML, 0);
  Field(w, "view.FontSizeHTML", ws.view.FontSizeHTML, 0);
  // The counts say how many entries of each table are in use; an entry they
  // name that the table doesn't hold is a fault worth seeing in the dump.
  auto table = [&](const char* name, const auto& array, std::int32_t count) {
    const std::string head = std::string("Workspace.") + name;
    DumpGuarded(head, 0, [&] {
      zolDumpArrayHead(head, ShapeOf(array), "(User Defined Type Array)", 0);
      for (std::int32_t i = array.LBound(); i <= std::max(count, array.UBound()); ++i) {
        const std::string element = head + "(" + std::to_string(i) + ")";
        DumpGuarded(element, 1, [&] { DumpRecord(element, array(i), 1); });
      }
    });
  };
  table("Session", ws.Session, ws.nSession);
  table("CompareSession", ws.CompareSession, 0);
  table("SessionGroup", ws.SessionGroup, ws.nSessionGroup);
  table("Project", ws.Project, ws.nProject);
}

}  // namespace zol
