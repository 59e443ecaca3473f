#include "session/workspace.h"

namespace zol {

zol::Session& Catalogue::SessionSlot(std::int32_t i) {
  if (i > Session.UBound()) Session.ReDimPreserve(i);
  return Session(i);
}

void Catalogue::ClearCatalogue() {
  Session.ReDim(0);
  SessionGroup.ReDim(0);
  Project.ReDim(0);
  CompareSession.Erase();
  nSession = nSessionGroup = nProject = 0;
}

Workspace::Workspace() : Workspace(std::make_shared<SilentPrompter>()) {}

Workspace::Workspace(std::shared_ptr<Prompter> prompter) : prompter_(std::move(prompter)) {
  ClearTables();
}

void Workspace::LoadProjectCounts(std::int32_t projectIndex) {
  const zol::Project& p = Project(projectIndex);
  LinesNumber = p.LinesNumber;
  ProceduresNumber = p.ProceduresNumber;
  ModulesNumber = p.ModulesNumber;
}

void Workspace::ClearTables() {
  ClearCatalogue();
}

}  // namespace zol
