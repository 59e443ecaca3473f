#pragma once

// The end of a live run: a session per registered thread, the walk of the
// event store that charges every span to lines and procedures, the
// conversion to seconds, and the sessions saved, listed and grouped.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "compare/merged_selection_view.h"
#include "live/event_store.h"
#include "session/workspace.h"

namespace zol {

// What the end of a run asks of the window around it. The default does the
// data side only (what zolprof and the tests need).
class LiveRunView {
 public:
  virtual ~LiveRunView() = default;
  // The merged and compared branches of the tree are stale.
  virtual void RemoveMergeRoots(Workspace& ws) {}
  // Adds the branch of a loaded session and marks it Selected.
  virtual void SelectSession(Workspace& ws, std::int32_t cs);
  // Adds the group with its members and marks them Selected.
  virtual void SelectSessionGroup(Workspace& ws, std::int32_t sg);
  // Where the merge engine offers the merged and compared roots.
  virtual MergedSelectionView* MergedView() { return nullptr; }
  // The list of sessions and the state that depends on it changed.
  virtual void SessionsChanged(Workspace& ws) {}
  // The status line of the live window.
  virtual void ShowStatus(const std::string& text) {}
};

struct LiveRunOutcome {
  std::vector<std::string> filesWritten;  // .pfd files, then the group file, as written
  std::vector<std::int32_t> sessions;     // the session of each thread that has one
  std::int32_t group = 0;                 // the group made of the run, 0 for none
  std::vector<std::string> faults;        // what went wrong on the way (walk, files)
};

// Makes the session of thread `ID` (numbered nSession) and sets its SessionNr;
// a thread whose project can't be used is told to the user and keeps
// SessionNr 0. `dateTime` is the run's date and time as text.
void CreateSessionFromThread(Workspace& ws, EventStore& store, std::int32_t ID,
                             const std::string& dateTime);

// The walk of the store: raw sums in fixed-point units (counts / 10000) into
// the threads' sessions. Events that fault (an ID beyond its session's
// tables, a thread without session) are passed over; their faults are
// returned, one text each.
std::vector<std::string> WalkEvents(Workspace& ws, const EventStore& store,
                                    const std::function<void(const std::string&)>& status = {});

// Turns the sums of every thread's session into seconds with the store's
// counter frequency; a line's child time comes to include its own time.
void ConvertThreadTimesToSeconds(Workspace& ws, const EventStore& store);

// The whole end of a run: sessions, walk, seconds, files, settings entries,
// history, the group, selection, and the store back to idle (key "ID" of
// section "Profiler" written "1").
LiveRunOutcome ComputeThread(Workspace& ws, EventStore& store, LiveRunView& view);

// "Unable to compute timings for ..." of a thread whose source doesn't match.
std::string UnableToComputeMessage(const std::string& title, const std::string& projectFile);

}  // namespace zol
