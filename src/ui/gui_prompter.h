#pragma once

// The core's way of talking to the user, in the window: message boxes with
// the core's exact texts, Yes/No questions, and the progress area of the
// status strip. Long operations run on the one user-interface thread, so the
// progress calls let pending events run: the bar moves, the window repaints,
// and a click on "Stop" (or Esc) sets the workspace's stop request.

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include "session/prompter.h"
#include "ui/status_area.h"

namespace zol {

class GuiPrompter : public Prompter {
 public:
  // `abortFlag` is the workspace's stop request.
  GuiPrompter(QWidget* parent, StatusArea* status, bool* abortFlag);

  void ShowMessage(const std::string& text, MessageKind kind) override;
  Answer Ask(const std::string& text, bool withCancel = false) override;
  DontShowReply AskDontShowAgain(const std::string& title, const std::string& text) override;

  void ShowProgress(bool visible) override;
  void SetProgressText(const std::string& text) override;
  void SetProgressMax(long max) override;
  void SetProgressValue(long value) override;
  void DoEvents() override;

  // The stop button or Esc: the operation under way is asked to stop.
  void requestAbort();

 private:
  // Repaints now and then while a loop moves the bar without letting events
  // run; user input waits for the loop's own DoEvents.
  void pumpPaintsNowAndThen();

  QPointer<QWidget> parent_;
  QPointer<StatusArea> status_;
  bool* abort_;
  QElapsedTimer sincePump_;
};

// The title of the program's message boxes.
inline constexpr char kMessageTitle[] = "Zolmark Profiler";

}  // namespace zol
