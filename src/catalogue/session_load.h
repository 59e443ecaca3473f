#pragma once

// Loading a session in three steps, so that the long middle one can run on a
// worker thread while the window goes on drawing:
//
//   BeginSessionLoad   (the catalogue's thread) copies out what the load
//                      needs: the session's header and its project entry;
//   RunSessionLoad     (any thread) scans the project if it has not been,
//                      replays the log or reads the .pfd, derives the
//                      statistics and writes the .pfd whole (a temporary
//                      name, then renamed), all in a workspace of its own;
//   FinishSessionLoad  (the catalogue's thread) puts the values in place,
//                      deletes the log once its .pfd is whole, and tells the
//                      user what went wrong, if anything.
//
// RunSessionLoad never touches the catalogue, and nothing of the catalogue
// changes before FinishSessionLoad: a load that is stopped or fails leaves
// the session as it was, its log where it was, and no half-written file.
// The catalogue must not change under a load either: the caller holds off
// every command that would (see MainWindow's loading state).

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "profile/log_reader.h"
#include "session/workspace.h"

namespace zol {

// What the log readers and the scanner keep in the workspace beside the
// catalogue: the clock of the log read last and the counts of the project at
// hand. A load takes them into a workspace of its own and brings them back.
struct ReaderState {
  double performanceFrequency = 0;
  double traceOverhead = 0;
  std::int32_t linesNumber = 0;
  std::int32_t proceduresNumber = 0;
  std::int32_t modulesNumber = 0;

  static ReaderState Of(const Workspace& ws);
  void PutInto(Workspace& ws) const;
};

struct SessionLoad {
  std::int32_t cs = 0;
  ReplayKind kind = ReplayKind::Fast;

  // Copied out of the catalogue, then filled by the run.
  Session session;
  std::int32_t projectIndex = 0;
  Project project;
  std::int32_t projectCount = 0;
  std::string appFolder;
  std::string rtfPath;

  // What the run came to.
  enum class Result {
    Loaded,    // values filled
    Unusable,  // no project, an empty one, or counts that don't match it
    Failed,    // `message` says why; empty when the user stopped the load
  };
  Result result = Result::Unusable;
  std::string message;
  bool projectScanned = false;
  // A failure none of the readers expects (a sum past its type, memory
  // exhausted): raised again by FinishSessionLoad on the catalogue's thread,
  // where the error capture takes it as it takes any other.
  std::exception_ptr unexpected;
  // The log that the .pfd now stands for; empty when it must stay.
  std::string logToDelete;
  // The clock of the log and the counts of the project, as a load leaves
  // them in the workspace.
  ReaderState reader;
};

// The first step: what loading Session(cs) needs, copied. Makes the folder of
// cleaned source text if the run has none yet.
SessionLoad BeginSessionLoad(Workspace& ws, std::int32_t cs, ReplayKind kind = ReplayKind::Fast);

// The second step. Progress and messages go to `prompter`, from the thread
// that runs the load; `stopRequested` is asked whenever events would run and
// between the steps, and a true answer ends the load as cancelled. Nothing it
// calls reports to the call trace, which belongs to the window's thread.
void RunSessionLoad(SessionLoad& load, Prompter& prompter,
                    const std::function<bool()>& stopRequested);

// The last step. Returns whether Session(load.cs) is loaded; on failure the
// user has been told (and asked whether to delete a file that can't be used).
// Raises the load's unexpected failure, if it had one, with the session left
// unloaded.
bool FinishSessionLoad(Workspace& ws, SessionLoad&& load);

// For the loads of other kinds, which run in a workspace of their own the
// same way. The prompter of such a workspace: what the load says goes to
// `target`; whenever it would let events run, `stopRequested` is asked, and
// a yes sets the workspace's stop request (`abort`), which the readers look
// at. Both references must outlive the prompter.
std::shared_ptr<Prompter> LoadWorkspacePrompter(Prompter& target,
                                                const std::function<bool()>& stopRequested,
                                                bool& abort);
// Lets events run and ends the load (LogReadCancelled for `file`) when the
// user asked to stop: between the steps, which don't look at the stop
// request themselves.
void LoadStopPoint(Workspace& w, const std::string& file);

// The prompter of a load on a worker thread: it keeps what it is told for the
// window to show. Progress is read by the window as often as it likes;
// messages are shown once the load is finished, in their order. Questions are
// answered No: a worker never decides to delete a user's file.
class LoadProgress : public Prompter {
 public:
  struct State {
    bool visible = false;
    std::string text;
    long max = 0;
    long value = 0;
  };

  void ShowMessage(const std::string& text, MessageKind kind) override;
  Answer Ask(const std::string& text, bool withCancel = false) override;
  void ShowProgress(bool visible) override;
  void SetProgressText(const std::string& text) override;
  void SetProgressMax(long max) override;
  void SetProgressValue(long value) override;
  void DoEvents() override {}

  State Progress() const;
  // Starts over for the next load: no progress, no messages.
  void Reset();
  // The messages told so far, taken out.
  std::vector<std::pair<std::string, MessageKind>> TakeMessages();

 private:
  mutable std::mutex mutex_;
  State state_;
  std::vector<std::pair<std::string, MessageKind>> messages_;
};

}  // namespace zol
