#include "catalogue/session_load.h"

#include <filesystem>
#include <utility>

#include "base/cp1252.h"
#include "base/files.h"
#include "base/paths.h"
#include "base/text.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_file_lookup.h"
#include "profile/gather_info.h"
#include "profile/session_files.h"
#include "project/project_info.h"

namespace zol {

namespace {

char LastChar(const std::string& s) {
  return s.empty() ? '\0' : LowerCase1252(s.back());
}

// What a load running in a workspace of its own tells the user goes to the
// caller's prompter; when it would let events run, it asks whether the user
// wants to stop, and says so through the workspace's stop request, which the
// readers look at.
class LoadPrompter : public Prompter {
 public:
  LoadPrompter(Prompter& target, const std::function<bool()>& stopRequested, bool& abort)
      : target_(target), stopRequested_(stopRequested), abort_(abort) {}

  void ShowMessage(const std::string& text, MessageKind kind) override {
    target_.ShowMessage(text, kind);
  }
  Answer Ask(const std::string& text, bool withCancel) override {
    return target_.Ask(text, withCancel);
  }
  Answer AskToDelete(const std::string& text) override { return target_.AskToDelete(text); }
  void ShowProgress(bool visible) override { target_.ShowProgress(visible); }
  void SetProgressText(const std::string& text) override { target_.SetProgressText(text); }
  void SetProgressMax(long max) override { target_.SetProgressMax(max); }
  void SetProgressValue(long value) override { target_.SetProgressValue(value); }
  void DoEvents() override {
    target_.DoEvents();
    if (stopRequested_ && stopRequested_()) abort_ = true;
  }

 private:
  Prompter& target_;
  const std::function<bool()>& stopRequested_;
  bool& abort_;
};

// The probes that ran but that no module of the project holds. The
// instrumenter may leave unused IDs, and such a session is shown (those IDs
// have no rows); but a module replaced after the run (by another version or
// a stub) looks the same, so the log is not deleted: the user may still want
// to replay it with the right sources. Empty when every probe that ran is in
// the sources.
std::string ExecutedOutsideSources(const Workspace& ws, std::int32_t cs) {
  const Session& s = ws.Session(cs);
  const Project& p = ws.Project(s.Project);
  std::int32_t count = 0;
  for (std::int32_t i = 1; i <= s.CodeLineValue.UBound() && i <= p.CodeLine.UBound(); ++i) {
    if (s.CodeLineValue(i).Hits != 0 && p.CodeLine(i).BelongToProcedure == 0) ++count;
  }
  for (std::int32_t i = 1; i <= s.ProcedureValue.UBound() && i <= p.Procedure.UBound(); ++i) {
    if (s.ProcedureValue(i).Hits != 0 && p.Procedure(i).BelongToModule == 0) ++count;
  }
  if (count == 0) return "";
  return "The log:\n" + s.SessionFile + "\nrecords " + std::to_string(count) +
         " line or procedure ID(s) as run that no module of the project " + p.ProjectFile +
         " holds. They are left out of the views; the log is kept beside its session file "
         "in case the module files are not those of the run.";
}

// Replays the log, derives the statistics and writes the .pfd whole. The log
// may then go, unless probes ran that the sources don't hold (the user is
// told, and the log stays).
void LoadFromLog(Workspace& w, SessionLoad& load) {
  const std::string log = w.Session(load.cs).SessionFile;
  PrepareSessionArrays(w, load.cs);
  ReadProfileFile(w, load.cs, load.kind);
  LoadStopPoint(w, log);
  const std::string outside = ExecutedOutsideSources(w, load.cs);
  GatherInfo(w, load.cs);
  LoadStopPoint(w, log);
  SaveSessionInfo(w, load.cs);
  Prompter& p = w.prompter();
  if (outside.empty()) {
    load.logToDelete = log;
  } else {
    p.ShowMessage(outside, MessageKind::Information);
  }
  p.SetProgressValue(0);
  p.DoEvents();
}

bool CountsMatchProject(const Session& s, const Project& p) {
  return s.LinesNumber == p.LinesNumber && s.ProceduresNumber == p.ProceduresNumber;
}

// The steps that fill the values: the project scanned once, then the log
// replayed or the .pfd read.
void LoadValues(Workspace& w, SessionLoad& load) {
  using Result = SessionLoad::Result;
  load.result = Result::Unusable;
  const Session& s = w.Session(load.cs);
  if (s.LinesNumber == 0 && s.ProceduresNumber == 0) return;
  const std::int32_t cp = s.Project;
  if (!w.Project(cp).Loaded) {
    GetProjectInfo(w, load.cs);
    load.projectScanned = true;
    LoadStopPoint(w, s.SessionFile);
  }
  if (w.Project(cp).ModulesNumber == 0) return;
  if (LastChar(s.SessionFile) == 'l') {
    if (std::string unread = UnreadModulesMessage(w, load.cs); !unread.empty()) {
      load.result = Result::Failed;
      load.message = std::move(unread);
      return;
    }
    if (!CountsMatchProject(s, w.Project(cp))) return;
    LoadFromLog(w, load);
  } else if (const std::string file = s.SessionFile; !LoadSessionInfo(w, load.cs, file)) {
    return;
  }
  load.result = Result::Loaded;
}

void AskToDeleteUnloadable(Workspace& ws, const std::string& fileName) {
  const std::string text =
      "Unable to load the session ! The corresponding source code has been removed or "
      "overwritten, or the project you are trying to profile is empty (no procedures) !\n"
      "Would you like to delete the session file ?";
  if (ws.prompter().AskToDelete(text) == Answer::Yes) {
    std::error_code ec;
    std::filesystem::remove(fileName, ec);
  }
}

// Drops whatever a failed load left in the session's value arrays.
void ClearValues(Session& s) {
  Session blank;
  s.CodeLineValue = std::move(blank.CodeLineValue);
  s.ProcedureValue = std::move(blank.ProcedureValue);
  s.ModuleValue = std::move(blank.ModuleValue);
  s.SessionValue = {};
  s.LineTotalTimeRank.Erase();
  s.LineAverageTimeRank.Erase();
  s.LineChildTotalTimeRank.Erase();
  s.LineChildAverageTimeRank.Erase();
  s.FlowPair.Erase();
  s.nFlowPair = 0;
  s.FirstProc = s.LastProc = 0;
  s.Loaded = false;
}

}  // namespace

std::shared_ptr<Prompter> LoadWorkspacePrompter(Prompter& target,
                                                const std::function<bool()>& stopRequested,
                                                bool& abort) {
  return std::make_shared<LoadPrompter>(target, stopRequested, abort);
}

void LoadStopPoint(Workspace& w, const std::string& file) {
  w.prompter().DoEvents();
  if (w.abort) throw LogReadCancelled(file);
}

ReaderState ReaderState::Of(const Workspace& ws) {
  return {ws.PerformanceFrequency, ws.TraceOverhead, ws.LinesNumber, ws.ProceduresNumber,
          ws.ModulesNumber};
}

void ReaderState::PutInto(Workspace& ws) const {
  ws.PerformanceFrequency = performanceFrequency;
  ws.TraceOverhead = traceOverhead;
  ws.LinesNumber = linesNumber;
  ws.ProceduresNumber = proceduresNumber;
  ws.ModulesNumber = modulesNumber;
}

SessionLoad BeginSessionLoad(Workspace& ws, std::int32_t cs, ReplayKind kind) {
  SessionLoad load;
  load.cs = cs;
  load.kind = kind;
  if (ws.RtfPath.empty()) ResetRtfPath(ws);
  load.session = ws.Session(cs);
  load.projectIndex = load.session.Project;
  load.project = ws.Project(load.projectIndex);
  load.projectCount = ws.nProject;
  load.appFolder = ws.appFolder;
  load.rtfPath = ws.RtfPath;
  load.reader = ReaderState::Of(ws);
  return load;
}

void RunSessionLoad(SessionLoad& load, Prompter& prompter,
                    const std::function<bool()>& stopRequested) {
  // A workspace of the load's own, holding its session and its project at
  // their indices in the catalogue, so that the readers and the scanner work
  // as they do on the catalogue itself.
  Workspace w;
  w.SetPrompter(LoadWorkspacePrompter(prompter, stopRequested, w.abort));
  w.appFolder = load.appFolder;
  w.RtfPath = load.rtfPath;
  load.reader.PutInto(w);
  w.nSession = load.cs;
  w.SessionSlot(load.cs) = std::move(load.session);
  w.nProject = load.projectCount;
  if (load.projectIndex > w.Project.UBound()) w.Project.ReDimPreserve(load.projectIndex);
  w.Project(load.projectIndex) = std::move(load.project);
  load.projectScanned = false;

  using Result = SessionLoad::Result;
  const std::string file = w.Session(load.cs).SessionFile;
  try {
    LoadValues(w, load);
  } catch (const LogError& e) {
    load.result = Result::Failed;
    load.message = e.UserMessage();
  } catch (const LogReadCancelled&) {
    load.result = Result::Failed;
    load.message.clear();
  } catch (const ScanError& e) {
    load.result = Result::Failed;
    load.message = e.what();
  } catch (const SessionFileWriteError& e) {
    load.result = Result::Failed;
    load.message = "The session file:\n" + e.file() + "\ncan not be written: " + e.fault() +
                   "\nThe log is kept.";
  } catch (const SessionFileError& e) {
    load.result = Result::Failed;
    load.message = CorruptSessionFileMessage(e.file()) + "\n" + e.fault();
  } catch (...) {
    load.result = Result::Failed;
    load.message.clear();
    load.unexpected = std::current_exception();
  }
  if (load.result != Result::Loaded) load.logToDelete.clear();

  load.session = std::move(w.Session(load.cs));
  load.project = std::move(w.Project(load.projectIndex));
  load.reader = ReaderState::Of(w);
}

bool FinishSessionLoad(Workspace& ws, SessionLoad&& load) {
  ws.prompter().ShowProgress(false);
  load.reader.PutInto(ws);
  // A project scanned by this load takes its place in the catalogue, whatever
  // became of the session: the next session of the project needs no scan.
  if (load.projectScanned && ws.Project.InRange(load.projectIndex)) {
    ws.Project(load.projectIndex) = std::move(load.project);
  }

  Session& s = ws.Session(load.cs);
  if (load.result == SessionLoad::Result::Loaded && FileExist(load.session.ProjectFile) &&
      ws.Project.InRange(load.projectIndex) &&
      CountsMatchProject(load.session, ws.Project(load.projectIndex)) &&
      EndsWithNoCase(load.session.ProjectFile, ".vbp")) {
    // Only the load's own fields: the rest of the slot is the catalogue's.
    load.session.Name = s.Name;
    load.session.Selected = s.Selected;
    load.session.Loaded = true;
    s = std::move(load.session);
    if (!load.logToDelete.empty()) {
      std::error_code ec;
      std::filesystem::remove(load.logToDelete, ec);
    }
    return true;
  }
  ClearValues(s);
  if (load.unexpected) std::rethrow_exception(load.unexpected);
  if (load.result == SessionLoad::Result::Unusable) {
    AskToDeleteUnloadable(ws, s.SessionFile);
  } else if (!load.message.empty()) {
    ws.prompter().ShowMessage(load.message, MessageKind::Exclamation);
  }
  return false;
}

void LoadProgress::ShowMessage(const std::string& text, MessageKind kind) {
  const std::lock_guard lock(mutex_);
  messages_.emplace_back(text, kind);
}

Answer LoadProgress::Ask(const std::string&, bool) {
  return Answer::No;
}

void LoadProgress::ShowProgress(bool visible) {
  const std::lock_guard lock(mutex_);
  state_.visible = visible;
}

void LoadProgress::SetProgressText(const std::string& text) {
  const std::lock_guard lock(mutex_);
  state_.text = text;
}

void LoadProgress::SetProgressMax(long max) {
  const std::lock_guard lock(mutex_);
  state_.max = max;
}

void LoadProgress::SetProgressValue(long value) {
  const std::lock_guard lock(mutex_);
  state_.value = value;
  if (value > 0) state_.visible = true;
}

void LoadProgress::Reset() {
  const std::lock_guard lock(mutex_);
  state_ = {};
  messages_.clear();
}

LoadProgress::State LoadProgress::Progress() const {
  const std::lock_guard lock(mutex_);
  return state_;
}

std::vector<std::pair<std::string, MessageKind>> LoadProgress::TakeMessages() {
  const std::lock_guard lock(mutex_);
  return std::exchange(messages_, {});
}

}  // namespace zol
