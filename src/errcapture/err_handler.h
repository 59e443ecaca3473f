#pragma once

// What happens when an operation fails: the error dialog decides whether the
// operation is retried, skipped, ignored for good or the program ends, and
// the user may first make a report (a folder of text files, an archive, a
// mail). The decision flow lives here, without a window: the dialog, the
// timers, the clipboard and the mail program are behind ErrorPrompter.

#include <cstdint>
#include <string>
#include <vector>

#include "session/prompter.h"

namespace zol {

struct CrashRecord;

// The decisions, with the codes the failing operation acts on.
enum class ErrorDecision : std::int32_t {
  None = 0,
  Abort = 3,         // end the program at once
  Retry = 4,         // run the failing operation again
  Ignore = 5,        // go on after it
  AlwaysIgnore = 6,  // only inside the handler; becomes Ignore
  Report = 8,        // dump the state, then call the handler again with -1
};

// The error number of the second entry, after the state has been dumped.
inline constexpr std::int32_t kReportedErrorNumber = -1;

// The dialog's texts.
inline constexpr const char* kErrorDialogReportText =
    "We are very sorry for this inconvenience and we would like to provide a fix for this error. "
    "You may help us a great deal by reporting this error via email. "
    "If you allow this, please fill the text box below and press the Report Error button. "
    "Thanks for your time.";
inline constexpr const char* kErrorDialogReportedText =
    "Thanks for having reported this error !\r\nPlease select a continuation below...";
inline constexpr const char* kErrorDialogDescribePrompt =
    "< Please describe here what you were doing exactly when this error occurred >\r\n";
inline constexpr const char* kErrorReportNotice =
    "This application will now retrieve some data needed to fix this error, open your email "
    "messenger and prepare a message to send. Then please press the \"Send Message\" button.\r\n"
    "This may take from a few seconds up to a few minutes depending on the amount of data to "
    "retrieve.\r\nDuring this time, you should normally notice hard drive and floppy drive "
    "activity.";

// What the dialog is shown with, and what it gives back.
struct ErrorDialogState {
  std::string message;        // zolMessageString
  bool hasReported = false;   // the second showing, after a report
  std::string circumstances;  // zolCircumstancesString
};
struct ErrorDialogReply {
  ErrorDecision decision = ErrorDecision::Abort;
  std::string circumstances;  // the text of the description box
};

class ErrorPrompter {
 public:
  virtual ~ErrorPrompter() = default;
  // Shows the dialog modally, on top of every window.
  virtual ErrorDialogReply ShowErrorDialog(const ErrorDialogState& state) = 0;
  // Stops every running timer so that no handler runs behind the dialog, and
  // starts again those it stopped.
  virtual void StopTimers() = 0;
  virtual void RestartTimers() = 0;
  // Hands a mailto: link to the desktop's mail program; false if none took it.
  virtual bool OpenMail(const std::string& mailtoUrl) = 0;
  virtual Answer Ask(const std::string& text) = 0;
  virtual void ShowMessage(const std::string& text) = 0;
  virtual void ClearClipboard() = 0;
  virtual void SetClipboardText(const std::string& text) = 0;
  virtual std::string ClipboardText() = 0;
  // Saves a picture of the window that had the focus when the error struck.
  virtual bool SaveScreenshot(const std::string& bmpFile) = 0;
  // Lines about the display for "System.txt" (toolkit version, screens).
  virtual std::vector<std::string> DisplayInfo() = 0;
};

// The place and kind of an error.
struct ErrorInfo {
  std::int32_t Number = 0;
  std::string Description;
  std::string Project;
  std::string Module;
  std::string Procedure;
  std::int32_t Line = 0;
};

// "An unexpected error has occurred in this application: " and the lines of
// the error, the text the dialog and the report show, and zolprof prints.
std::string ErrorMessageText(const ErrorInfo& e);

// NUL, module, 0x01, number, 0x01, line, NUL.
std::string ErrorKey(const std::string& module, std::int32_t number, std::int32_t line);

// "Error report for <title> <major.minor.revision>".
std::string ErrorReportSubject();

class ErrHandler {
 public:
  // The report folder is "Error Report Files" in `appFolder`.
  ErrHandler(ErrorPrompter& prompter, std::string appFolder);

  // The decision for one error. Number kReportedErrorNumber is the second
  // entry, after Report and the dump: the report's files are made, then the
  // dialog is shown again for the final decision.
  ErrorDecision zolErrHandler(std::int32_t Number, const std::string& Description,
                              const std::string& Project, const std::string& Module,
                              const std::string& Procedure, std::int32_t Line);

  // The stack where the error struck, for "Stack.txt"; by default the stack
  // at the second entry (zolGetStack).
  void SetFaultStack(std::string stack) { faultStack_ = std::move(stack); }

  // A fault of an earlier run: the dialog with its text, and on Report the
  // report with its stack. Returns the final decision.
  ErrorDecision OfferCrashReport(const CrashRecord& crash, const std::string& project);

  const std::string& zolErrorPath() const { return zolErrorPath_; }
  // The archive of the last report ("<folder>/Error Report Files.zip").
  std::string ArchiveFile() const;
  const std::string& zolMessageString() const { return zolMessageString_; }
  const std::string& ignoreList() const { return ignoreList_; }

 private:
  ErrorDecision FirstEntry(const ErrorInfo& e);
  ErrorDecision ShowAndDecide();
  void StartReport();
  void FinishReport();
  void SendReport(const std::string& archive, bool archived);
  void CopyToClipboard(const std::string& text);

  ErrorPrompter& prompter_;
  std::string appFolder_;
  ErrorDecision zolRetCode_ = ErrorDecision::None;
  std::string zolMessageString_;
  std::string zolCircumstancesString_;
  std::string zolErrorPath_;
  bool zolfHasReported_ = false;
  std::string ignoreList_;
  std::string currentKey_;
  bool timersStopped_ = false;
  std::string faultStack_;
};

}  // namespace zol
