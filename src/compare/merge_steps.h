#pragma once

// The steps of MakeMergedAndCompareSessions, each over the listed sessions.
// Internal to the merge engine.

#include <cstdint>
#include <string>
#include <tuple>
#include <utility>

#include "base/vbarray.h"
#include "session/workspace.h"

namespace zol::merge_detail {

// The keys by which runs of different projects line up: a module by name and
// type, a procedure by its module's name and type and its own name and type.
using ModuleKey = std::pair<std::string, std::int32_t>;
using QualifiedProcedureKey = std::tuple<std::string, std::int32_t, std::string, std::int32_t>;

ModuleKey KeyOf(const Module& m);
QualifiedProcedureKey KeyOf(const Project& p, const Procedure& proc);

// Heterogeneous frame: the modules and procedures of every listed session's
// project united by name into Project(mp), and, unless `group`, each
// project's lines appended once as a block of their own, with the line values
// of all its listed sessions summed into Session(MergeIndex).
void UniteProjects(Workspace& ws, std::int32_t mp, std::int32_t MergeIndex,
                   const Array1<std::int32_t>& list, bool group, bool keepTrackOfOriginalProject);

// Each listed session's module and procedure values, renumbered to
// Project(mp), into its slot of CompareSession (sized 1 to nSession).
void FillCompareSessions(Workspace& ws, std::int32_t mp, const Array1<std::int32_t>& list,
                         Array1<Session>& CompareSession);

// The raw sums of the listed sessions into Session(MergeIndex): lines,
// procedures and call pairs by ID when homogeneous, procedures from
// CompareSession otherwise.
void SumSessions(Workspace& ws, std::int32_t MergeIndex, bool fHomogeneous,
                 const Array1<std::int32_t>& list, const Array1<Session>& CompareSession);

// Floors, averages, coverage, module and session totals and ranks of
// Session(MergeIndex). The workspace's counts must be those of its project.
void DeriveMergedValues(Workspace& ws, std::int32_t MergeIndex, bool fHomogeneous,
                        const Array1<std::int32_t>& list, const Array1<Session>& CompareSession);

}  // namespace zol::merge_detail
