#pragma once

// Reading a .pfl profile log into a session: the log's events are replayed
// into hits and own time per line, time per procedure, time with children and
// the caller-callee pairs of Session(cs). Times end in seconds.

#include <cstdint>

#include "profile/log_error.h"
#include "profile/pfl_blocks.h"  // DecompressString
#include "session/workspace.h"

namespace zol {

enum class ReplayKind {
  // Every rule applied as it stands, blocks inflated by zlib: the reference.
  Literal,
  // The same values (times up to rounding) without per-event walks over the
  // call stack or the pair list, blocks inflated on a worker thread.
  Fast,
};

// Sizes Session(cs).ProcedureValue to the project's ProceduresNumber and
// CodeLineValue to its LinesNumber (left empty when the project has no lines),
// all values zero, and empties the pairs: a fresh session ready for
// ReadProfileFile.
void PrepareSessionArrays(Workspace& ws, std::int32_t cs);

// Replays the log Session(cs).SessionFile into the session's value arrays,
// FlowPair, FirstProc and LastProc, on top of what they hold, and sets
// ws.PerformanceFrequency and ws.TraceOverhead. Needs the session's Project
// scanned and the arrays prepared (PrepareSessionArrays). Shows progress
// through ws.prompter() and leaves the progress area visible.
//
// A log that can't be read whole throws LogError naming the file and the fault.
// ws.abort is cleared at the start; when it is set while events run between
// blocks, the read stops with LogReadCancelled. Either way the session's values, pairs, FirstProc
// and LastProc are cleared, so nothing half-read remains.
void ReadProfileFile(Workspace& ws, std::int32_t cs, ReplayKind kind = ReplayKind::Fast);

// Add to Hits, or to ChildTime, of the pair (FromProc, ToProc) of Session(cs),
// found by a scan in order of creation and made at the end if it is new.
void AddFlowHit(Workspace& ws, std::int32_t cs, std::int32_t FromProc, std::int32_t ToProc,
                std::int32_t hits);
void AddFlowTime(Workspace& ws, std::int32_t cs, std::int32_t FromProc, std::int32_t ToProc,
                 double ttime);

}  // namespace zol
