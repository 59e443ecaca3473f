#pragma once

// The error capture in the window: the dialog behind the handler's decisions,
// the timers stopped while it is up, the clipboard, the mail program and the
// screenshot of a report; and the guard that every entry point of the window
// runs its work under.

#include <QPointer>
#include <QTimer>
#include <functional>
#include <memory>
#include <source_location>
#include <vector>

#include "errcapture/err_handler.h"

class QWidget;

namespace zol {

class Workspace;
struct CrashRecord;

class GuiErrorPrompter : public ErrorPrompter {
 public:
  // `reportFolder` gives the folder that "Look at report" opens.
  explicit GuiErrorPrompter(std::function<std::string()> reportFolder);

  ErrorDialogReply ShowErrorDialog(const ErrorDialogState& state) override;
  void StopTimers() override;
  void RestartTimers() override;
  bool OpenMail(const std::string& mailtoUrl) override;
  Answer Ask(const std::string& text) override;
  void ShowMessage(const std::string& text) override;
  void ClearClipboard() override;
  void SetClipboardText(const std::string& text) override;
  std::string ClipboardText() override;
  bool SaveScreenshot(const std::string& bmpFile) override;
  std::vector<std::string> DisplayInfo() override;

 private:
  std::function<std::string()> reportFolder_;
  std::vector<QPointer<QTimer>> stopped_;
  QPointer<QWidget> foreground_;  // the window that had the focus when the error struck
};

// The handler of the process's window, which the entry points reach.
class GuiErrorCapture {
 public:
  // `ws` is dumped with a report; `program` names the program in the error.
  GuiErrorCapture(Workspace& ws, std::string appFolder, std::string program);
  ~GuiErrorCapture();
  GuiErrorCapture(const GuiErrorCapture&) = delete;
  GuiErrorCapture& operator=(const GuiErrorCapture&) = delete;

  // The one that runs, or nullptr.
  static GuiErrorCapture* current();

  ErrHandler& handler() { return handler_; }
  Workspace& workspace() { return ws_; }
  const std::string& program() const { return program_; }

  // The crash of an earlier run, offered for a report. False when the answer
  // was to end the program.
  bool offerCrashReport(const CrashRecord& crash);

 private:
  Workspace& ws_;
  std::string program_;
  GuiErrorPrompter prompter_;
  ErrHandler handler_;
};

// Runs `action` as an entry point of the window: a failure that leaves it goes
// to the error dialog, whose answer runs it again, gives it up, or ends the
// program at once. Without a GuiErrorCapture the failure is shown in a
// message box.
void runGuarded(QWidget* parent, const std::function<void()>& action,
                std::source_location where = std::source_location::current());

}  // namespace zol
