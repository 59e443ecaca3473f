#pragma once

// The texts of the project tree's nodes: a name followed by its coverage and
// time, or by the word that says why there is none.

#include <string>

#include "session/records.h"

namespace zol {

// "Name (LC:87.5% - TT:1.2s)"
std::string SessionNodeText(const Session& s);

// "Name (LC:50.0% - TT:0.12s)", with "Not covered", "Not profiled)" or
// "No hits)" in place of the figures that the module lacks.
std::string ModuleNodeText(const Module& m, const ModuleValue& v);

// A procedure of a session's own branch: "Name (Dead code)" for dead code, the
// bare name when its module has neither line probes nor timing, otherwise
// "Name (LC:100% - TT:0.012s - AT:0.004s)" or the words for what it lacks.
std::string ProcedureNodeText(const Procedure& p, const ProcedureValue& v,
                              const ModuleValue& module);

// A procedure of a merged branch: as above but without the dead-code case and
// with the total time to two decimals.
std::string MergedProcedureNodeText(const Procedure& p, const ProcedureValue& v,
                                    const ModuleValue& module);

// An item of a compared branch, which shows no figures: the name, and what
// the item lacks, " (Not covered - Not profiled)", " (Not covered)" or
// " (Not profiled)".
std::string ComparedNodeText(const std::string& name, bool isCovered, bool isProfiled);

// "Merged Sessions (Hom.) (LC:.. - TT:..s)" and "Compared Sessions (Het.) ..."
// for the roots above a merged session.
std::string MergedRootText(const std::string& prefix, bool fHomogeneous, const Session& merged);

}  // namespace zol
