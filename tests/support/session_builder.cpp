#include "support/session_builder.h"

#include <utility>

#include "base/paths.h"

namespace zol::testing {

ProjectBuilder::ProjectBuilder(Workspace& ws, std::string projectFile) : ws_(ws) {
  p_.ProjectFile = std::move(projectFile);
  p_.Name = "Test";
}

std::int32_t ProjectBuilder::Module(const std::string& name) {
  const std::int32_t id = ++p_.ModulesNumber;
  p_.Module.ReDimPreserve(id);
  p_.Module(id).Name = name;
  p_.Module(id).FileName = name + ".bas";
  p_.Module(id).Type = kModuleStandard;
  p_.ListOfModule += name + "\r";
  return id;
}

std::int32_t ProjectBuilder::Procedure(std::int32_t module, const std::string& name,
                                       ProcedureFlags flags) {
  const std::int32_t id = ++p_.ProceduresNumber;
  p_.Procedure.ReDimPreserve(id);
  zol::Procedure& proc = p_.Procedure(id);
  proc.BelongToModule = module;
  proc.Name = name;
  proc.IsProfiled = flags.profiled && !flags.dead;
  proc.IsCritical = flags.critical;
  proc.IsDead = flags.dead;
  if (flags.critical) p_.ContainsCritical = true;
  p_.ListOfProc += name + "\r";
  return id;
}

std::int32_t ProjectBuilder::Line(std::int32_t procedure, bool isExit) {
  const std::int32_t id = ++p_.LinesNumber;
  p_.CodeLine.ReDimPreserve(id);
  zol::CodeLine& line = p_.CodeLine(id);
  line.BelongToProcedure = procedure;
  line.Text = isExit ? "End Sub" : "x = " + std::to_string(id);
  line.IsProcedureExit = isExit;
  if (procedure != 0) p_.Procedure(procedure).IsCovered = true;
  return id;
}

std::int32_t ProjectBuilder::Build() {
  p_.Loaded = true;
  const std::int32_t cp = ++ws_.nProject;
  ws_.Project.ReDimPreserve(cp);
  ws_.Project(cp) = p_;
  return cp;
}

std::int32_t AddSessionForProject(Workspace& ws, std::int32_t cp, const std::string& sessionFile) {
  const zol::Project& p = ws.Project(cp);
  const std::int32_t cs = ++ws.nSession;
  zol::Session& s = ws.SessionSlot(cs);
  s.SessionFile = sessionFile;
  s.Name = GetFileBody(sessionFile);
  s.Project = cp;
  s.ProjectFile = p.ProjectFile;
  s.LinesNumber = p.LinesNumber;
  s.ProceduresNumber = p.ProceduresNumber;
  s.ProcedureValue.ReDim(p.ProceduresNumber);
  if (p.LinesNumber != 0) s.CodeLineValue.ReDim(p.LinesNumber);
  return cs;
}

}  // namespace zol::testing
