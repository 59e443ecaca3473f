#pragma once

// The catalogue of sessions: entering session files into the workspace,
// loading their values, and taking them out again. Adding is cheap (headers
// only); LoadSession does the expensive part once, when a session is first
// needed: scan the project, replay the log or read the .pfd, derive the
// statistics and store a .pfd in place of the log.
//
// Every session entered here and every group has a row in the session list
// (see session_list.h); routines that change the rows, their ticks or the
// tree's sessions return what they changed (a CatalogueChange), for whoever
// shows the list to bring it in step.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "catalogue/catalogue_change.h"
#include "profile/log_reader.h"
#include "session/workspace.h"

namespace zol {

// The text shown when a log can't be used, as its first three lines.
std::string CorruptSessionFileMessage(const std::string& fileName);

// Why the log of Session(cs) can't be replayed: the module files of its
// (scanned) project that couldn't be read, one per line with the reason; empty
// when every module was read. A log is never replayed, stored or deleted
// without all of them: the IDs of an unread module's probes are unknown, so
// its lines would count as nothing and the times would be wrong.
std::string UnreadModulesMessage(const Workspace& ws, std::int32_t cs);

// The message of AddSessionGroup when it finds nothing to add.
inline constexpr const char* kNoSessionToLoadText =
    "Error in loading session or couldn't find any session to load !";

// Enters one .pfl or .pfd file, reading only its header. A .pfl that is gone
// but whose .pfd exists enters the .pfd. A relative or Windows path is looked
// for as ResolveExistingFile does. A session file becomes a new Session slot
// with its project entry assigned, and its run's original project goes to the
// recent projects; a group file becomes a new SessionGroup slot. Returns the
// new Session index, or 0 when no session was entered: a group (then it is
// SessionGroup(nSessionGroup)), or nothing because the file is missing, is
// already entered (under this or another name), is not a session file, or its
// header was refused (the user has been told; the slot of a refused file stays
// counted, blank, and has no row).
std::int32_t AddSession(Workspace& ws, const std::string& fileName);
// The same, returning the row that entered; with `andLoadSession` the row is
// then ticked (TickRow): its values are loaded, or the load is refused.
CatalogueChange AddSession(Workspace& ws, const std::string& fileName, bool andLoadSession);

// Enters all sessions related to `fileName`:
//   .pfl, .pfd  the sessions that the run's settings file lists, if it lists
//               this one; otherwise this file alone;
//   .vbp        the session files in the project's folder, if the project's
//               settings file ("zolOptions_" and its Name, ".ini") has a
//               section "[Profiler Sessions]";
//   .ini        the sessions listed in its section "[Profiler Sessions]".
// A .pfl that is gone counts as its .pfd. Unless `quiet`, tells the user when
// the file is of another version or nothing could be found to add. Returns
// the rows that entered.
CatalogueChange AddSessionGroup(Workspace& ws, const std::string& fileName, bool quiet);

// Enters all sessions of a project group: those of the group's settings file
// ("zol", the .vbg's file name, ".ini", beside it), then those related to
// each project of the group, quietly; the .vbg goes to the recent projects.
CatalogueChange AddSessionFromVBG(Workspace& ws, const std::string& vbgFile);

// Fills the value arrays of Session(cs). For a log: scan the project if need
// be, replay, derive the statistics, write the .pfd whole and only then delete
// the log; SessionFile names the .pfd afterwards. For a .pfd: read it. Returns
// whether the session is loaded; on any failure the user has been told, the
// session stays unloaded with no half-filled values, and no file is lost.
bool LoadSession(Workspace& ws, std::int32_t cs, ReplayKind kind = ReplayKind::Fast);

// Loads the group file of SessionGroup(sg): one Invisible, Loaded member
// session per member, each with its project entry (scanned when not yet
// loaded), the group's merged session, and the run's original project in the
// recent projects. Returns whether the group is loaded; a damaged file or a
// member that can't be read is reported and leaves the tables as they were.
bool LoadSessionGroup(Workspace& ws, std::int32_t sg);

// Ticks (`ticked`) or unticks a row of the session list, as a click on its
// box does. Ticking loads the session (LoadSession) or the group
// (LoadSessionGroup) if need be and, when it is loaded, marks it Selected, a
// group with its members; unticking clears Selected, again with the members.
// Either way the merged data of the former selection is stale, and is
// dropped. Returns what became of the tick; nothing for a key whose slot
// doesn't exist.
std::optional<RowTick> TickRow(Workspace& ws, const RowKey& row, bool ticked);
// Whether ticking `row` loads its session or group first: a row whose values
// are not in yet. A window runs that load elsewhere (BeginSessionLoad or
// BeginGroupLoad, their Run on a worker, their Finish) and then ticks the row
// with TickRowAfterLoad, which comes to what TickRow does; every other tick
// goes through TickRow. False for a key whose slot doesn't exist.
bool TickLoadsRow(const Workspace& ws, const RowKey& row);
// Ticks `row` once a load made elsewhere has ended: `loaded` marks it (a
// group with its members) Selected, otherwise the tick is refused. The merged
// data of the former selection is dropped, as TickRow does.
RowTick TickRowAfterLoad(Workspace& ws, const RowKey& row, bool loaded);

// Takes Session(cs) out; its file stays. A ticked session is reported taken
// out, so that its branch leaves the tree (and the views are cleared when it
// is the one on display). The slot is blanked, not reused: other indices stay
// valid.
CatalogueChange RemoveSession(Workspace& ws, std::int32_t cs);
// Takes SessionGroup(sg) out with its member sessions and merged session; the
// group is reported taken out, ticked or not, and a ticked group's members.
CatalogueChange RemoveSessionGroup(Workspace& ws, std::int32_t sg);
// Deletes the session's file, then RemoveSession. A file that can't be
// deleted is reported; the session is taken out all the same.
CatalogueChange DestroySession(Workspace& ws, std::int32_t cs);
// Deletes the group file, then RemoveSessionGroup.
CatalogueChange DestroySessionGroup(Workspace& ws, std::int32_t sg);
// Empties the catalogue: sessions, groups and projects, and the folder of
// cleaned source text is made afresh. Every view is to be cleared.
CatalogueChange ClearSessions(Workspace& ws);

// The file names that another program of the suite left in the settings file
// (keys "Session0", "Session1", ... of section "Profiler", read from 0 up to
// the first number the file doesn't hold), each key emptied once its name is
// taken. A window that finds names here comes to the front before it enters
// them.
std::vector<std::string> TakeLeftSessionNames(Workspace& ws);
// Enters each name taken with its row ticked, and lists it among the recent
// sessions.
CatalogueChange EnterLeftSessions(Workspace& ws, const std::vector<std::string>& names);

}  // namespace zol
