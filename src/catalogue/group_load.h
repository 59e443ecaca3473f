#pragma once

// Loading a group of sessions in the three steps of a session's load (see
// session_load.h), so that reading its file and scanning its members'
// projects can run on a worker thread:
//
//   BeginGroupLoad   (the catalogue's thread) copies out what the load needs:
//                    the group's slot, the table counts, and the project
//                    entries the members may share (a scanned one by its
//                    name only: the load needs to know it is there);
//   RunGroupLoad     (any thread) reads the group file's members into new
//                    session slots after the catalogue's last one, gives each
//                    its project entry and scans the ones not scanned yet,
//                    all in a workspace of its own;
//   FinishGroupLoad  (the catalogue's thread) puts the members and the
//                    projects the load added or scanned in place, merges the
//                    members into the group's merged session, lists the run's
//                    project among the recent ones, and tells the user what
//                    went wrong, if anything.
//
// The merge runs in the last step: it reports to the call trace, which
// belongs to the catalogue's thread, and works on the projects in place. As
// for a session, the catalogue must not change between the first step and
// the last.

#include <cstdint>
#include <exception>
#include <functional>
#include <string>
#include <vector>

#include "catalogue/session_load.h"
#include "session/workspace.h"

namespace zol {

struct GroupLoad {
  std::int32_t sg = 0;

  // Copied out of the catalogue, then filled by the run.
  SessionGroup group;
  // The catalogue's counts when the load began; the run adds after them.
  std::int32_t sessionCount = 0;
  std::int32_t projectCount = 0;
  // Project entries 1 to the count, as the run leaves them.
  Array0<Project> projects;
  std::string appFolder;
  std::string rtfPath;

  // What the run came to.
  enum class Result {
    Read,     // the members are read and their projects scanned
    Refused,  // the file is of another kind or version; the user was told
    Failed,   // `message` says why; empty when the user stopped the load
  };
  Result result = Result::Failed;
  std::string message;
  // The session slots the run added (members, blanked again on a failure).
  std::vector<Session> sessions;
  // The project entries the run added or scanned, which the catalogue takes.
  std::vector<std::int32_t> projectsTouched;
  // A failure none of the readers expects: raised again by FinishGroupLoad
  // on the catalogue's thread.
  std::exception_ptr unexpected;
  ReaderState reader;
};

// The first step: what loading SessionGroup(sg) needs, copied.
GroupLoad BeginGroupLoad(Workspace& ws, std::int32_t sg);

// The second step; progress, messages and stop requests as for
// RunSessionLoad.
void RunGroupLoad(GroupLoad& load, Prompter& prompter, const std::function<bool()>& stopRequested);

// The last step. Returns whether SessionGroup(load.sg) is loaded; on failure
// the user has been told, and no member is left half-read. Raises the load's
// unexpected failure, if it had one, with the group left unloaded.
bool FinishGroupLoad(Workspace& ws, GroupLoad&& load);

}  // namespace zol
