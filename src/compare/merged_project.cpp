// The project of a heterogeneous merge. Modules match by name and type,
// procedures by module, type and name; names compare exactly, byte for byte.
// Items are looked up through maps of their keys: every key is entered once,
// so a lookup finds the same item as a scan from the first would.

#include <algorithm>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "compare/global_sessions.h"
#include "compare/merge_steps.h"
#include "profile/gather_info.h"

namespace zol::merge_detail {

namespace {

const Module* ModuleOf(const Project& p, std::int32_t m) {
  return m >= 1 && m <= p.ModulesNumber ? &p.Module(m) : nullptr;
}

// Project M as it grows, with the keys of its modules and procedures.
class ProjectUnion {
 public:
  explicit ProjectUnion(Project& m) : m_(m) {}

  std::int32_t AddModule(const Module& mod, std::int32_t cp, bool keepTrackOfOriginalProject) {
    auto [it, added] = modules_.try_emplace(ModuleKey{mod.Name, mod.Type}, m_.ModulesNumber + 1);
    if (added) {
      m_.Module.ReDimPreserve(++m_.ModulesNumber);
      Module& appended = m_.Module(m_.ModulesNumber);
      appended.Name = mod.Name;
      appended.Type = mod.Type;
      if (keepTrackOfOriginalProject) appended.BelongToProject = cp;
    }
    return it->second;
  }

  // A procedure found again takes the flags of all its projects: profiled or
  // critical in any of them, dead only if dead in all.
  std::int32_t AddProcedure(const Procedure& proc, std::int32_t mModule) {
    auto [it, added] =
        procedures_.try_emplace(std::tuple{mModule, proc.Type, proc.Name}, m_.ProceduresNumber + 1);
    if (added) {
      m_.Procedure.ReDimPreserve(++m_.ProceduresNumber);
      Procedure& appended = m_.Procedure(m_.ProceduresNumber);
      appended.BelongToModule = mModule;
      appended.Name = proc.Name;
      appended.Type = proc.Type;
      appended.IsProfiled = proc.IsProfiled;
      appended.IsCritical = proc.IsCritical;
      appended.IsDead = proc.IsDead;
    } else {
      Procedure& found = m_.Procedure(it->second);
      found.IsProfiled = found.IsProfiled || proc.IsProfiled;
      found.IsCritical = found.IsCritical || proc.IsCritical;
      found.IsDead = found.IsDead && proc.IsDead;
    }
    return it->second;
  }

 private:
  Project& m_;
  std::map<ModuleKey, std::int32_t> modules_;
  std::map<std::tuple<std::int32_t, std::int32_t, std::string>, std::int32_t> procedures_;
};

void AddLineValue(CodeLineValue& to, const CodeLineValue& from) {
  AddCount(to.Hits, from.Hits, "Hits of a merged line");
  to.TotalTime += from.TotalTime;
  to.ChildTotalTime += from.ChildTotalTime;
}

// Appends the lines of project `cp` to M, each line's procedure renumbered
// through `procedureInM`, and sums into that block the line values of every
// listed session of `cp` from position `from` of the list on.
void AppendLineBlock(Workspace& ws, Project& m, std::int32_t cp,
                     const std::vector<std::int32_t>& procedureInM, std::int32_t MergeIndex,
                     const Array1<std::int32_t>& list, std::int32_t from) {
  const Project& p = ws.Project(cp);
  const std::int32_t offset = m.LinesNumber;
  m.LinesNumber += p.LinesNumber;
  m.CodeLine.ReDimPreserve(m.LinesNumber);
  Session& merged = ws.Session(MergeIndex);
  merged.CodeLineValue.ReDimPreserve(m.LinesNumber);
  for (std::int32_t id = 1; id <= p.LinesNumber; ++id) {
    CodeLine line = p.CodeLine(id);
    const std::int32_t proc = line.BelongToProcedure;
    line.BelongToProcedure =
        proc >= 1 && proc <= p.ProceduresNumber ? procedureInM[static_cast<std::size_t>(proc)] : 0;
    m.CodeLine(offset + id) = std::move(line);
  }
  for (std::int32_t k = from; k <= list.UBound(); ++k) {
    const Session& s = ws.Session(list(k));
    if (s.Project != cp) continue;
    for (std::int32_t id = 1; id <= p.LinesNumber; ++id) {
      AddLineValue(merged.CodeLineValue(offset + id), s.CodeLineValue(id));
    }
  }
}

}  // namespace

ModuleKey KeyOf(const Module& m) {
  return {m.Name, m.Type};
}

QualifiedProcedureKey KeyOf(const Project& p, const Procedure& proc) {
  const Module* m = ModuleOf(p, proc.BelongToModule);
  return {m ? m->Name : std::string(), m ? m->Type : 0, proc.Name, proc.Type};
}

void UniteProjects(Workspace& ws, std::int32_t mp, std::int32_t MergeIndex,
                   const Array1<std::int32_t>& list, bool group, bool keepTrackOfOriginalProject) {
  Project& m = ws.Project(mp);
  ProjectUnion merged(m);
  std::vector<std::int32_t> projectsWithLines;
  for (std::int32_t k = 1; k <= list.UBound(); ++k) {
    const std::int32_t cp = ws.Session(list(k)).Project;
    if (cp == mp) throw MergeError("a merged session can't be merged into its own project");
    const Project& p = ws.Project(cp);
    m.ContainsCritical = m.ContainsCritical || p.ContainsCritical;

    std::vector<std::int32_t> moduleInM(static_cast<std::size_t>(p.ModulesNumber) + 1, 0);
    for (std::int32_t j = 1; j <= p.ModulesNumber; ++j) {
      moduleInM[static_cast<std::size_t>(j)] =
          merged.AddModule(p.Module(j), cp, keepTrackOfOriginalProject);
    }
    std::vector<std::int32_t> procedureInM(static_cast<std::size_t>(p.ProceduresNumber) + 1, 0);
    for (std::int32_t id = 1; id <= p.ProceduresNumber; ++id) {
      const Procedure& proc = p.Procedure(id);
      const std::int32_t mModule = ModuleOf(p, proc.BelongToModule)
                                       ? moduleInM[static_cast<std::size_t>(proc.BelongToModule)]
                                       : 0;
      procedureInM[static_cast<std::size_t>(id)] = merged.AddProcedure(proc, mModule);
    }

    // A project listed more than once gets one block, which all its sessions
    // fill.
    if (group || p.LinesNumber == 0 ||
        std::find(projectsWithLines.begin(), projectsWithLines.end(), cp) !=
            projectsWithLines.end()) {
      continue;
    }
    projectsWithLines.push_back(cp);
    AppendLineBlock(ws, m, cp, procedureInM, MergeIndex, list, k);
  }
}

void FillCompareSessions(Workspace& ws, std::int32_t mp, const Array1<std::int32_t>& list,
                         Array1<Session>& CompareSession) {
  const Project& m = ws.Project(mp);
  CompareSession.ReDim(ws.nSession);
  for (std::int32_t k = 1; k <= list.UBound(); ++k) {
    const std::int32_t cs = list(k);
    const Session& s = ws.Session(cs);
    const Project& p = ws.Project(s.Project);

    // The first item of each key in the session's own project.
    std::map<ModuleKey, std::int32_t> moduleOf;
    for (std::int32_t j = p.ModulesNumber; j >= 1; --j) {
      moduleOf[KeyOf(p.Module(j))] = j;
    }
    std::map<QualifiedProcedureKey, std::int32_t> procedureOf;
    for (std::int32_t id = p.ProceduresNumber; id >= 1; --id) {
      procedureOf[KeyOf(p, p.Procedure(id))] = id;
    }

    Session& c = CompareSession(cs);
    c.ModuleValue.ReDim(m.ModulesNumber);
    c.ProcedureValue.ReDim(m.ProceduresNumber);
    for (std::int32_t j = 1; j <= m.ModulesNumber; ++j) {
      auto it = moduleOf.find(KeyOf(m.Module(j)));
      if (it != moduleOf.end()) c.ModuleValue(j) = s.ModuleValue(it->second);
    }
    for (std::int32_t id = 1; id <= m.ProceduresNumber; ++id) {
      auto it = procedureOf.find(KeyOf(m, m.Procedure(id)));
      if (it != procedureOf.end()) c.ProcedureValue(id) = s.ProcedureValue(it->second);
    }
  }
}

}  // namespace zol::merge_detail
