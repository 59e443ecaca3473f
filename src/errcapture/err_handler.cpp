#include "errcapture/err_handler.h"

#include <cstdio>
#include <filesystem>

#include "base/files.h"
#include "base/paths.h"
#include "base/version.h"
#include "errcapture/dump.h"
#include "errcapture/fatal_signal.h"
#include "errcapture/report_files.h"
#include "errcapture/trace.h"

namespace zol {

namespace {

constexpr const char* kReportFolder = "Error Report Files";
constexpr const char* kReportFiles[] = {"Screenshot.bmp", "System.txt", "Version.txt",  "Error.txt",
                                        "Trace.txt",      "Stack.txt",  "Variables.txt"};

std::string VersionText() {
  return std::to_string(kAppMajor) + "." + std::to_string(kAppMinor) + "." +
         std::to_string(kAppRevision);
}

// Runs one step of the report; a step that fails leaves the others to do
// what they can.
template <typename F>
void Quietly(F&& step) {
  try {
    step();
  } catch (...) {
  }
}

}  // namespace

std::string ErrorMessageText(const ErrorInfo& e) {
  return "An unexpected error has occurred in this application: \r\n\r\nError " +
         std::to_string(e.Number) + "\r\nDescription: " + e.Description +
         "\r\nProject: " + e.Project + "\r\nModule: " + e.Module + "\r\nProcedure: " + e.Procedure +
         "\r\nLine: " + std::to_string(e.Line) + "\r\nVersion: " + VersionText() + "\r\n";
}

std::string ErrorKey(const std::string& module, std::int32_t number, std::int32_t line) {
  std::string key(1, '\0');
  key += module;
  key += '\x01';
  key += std::to_string(number);
  key += '\x01';
  key += std::to_string(line);
  key += '\0';
  return key;
}

std::string ErrorReportSubject() {
  return std::string("Error report for ") + kAppTitle + " " + VersionText();
}

ErrHandler::ErrHandler(ErrorPrompter& prompter, std::string appFolder)
    : prompter_(prompter), appFolder_(std::move(appFolder)) {}

std::string ErrHandler::ArchiveFile() const {
  return JoinPath(JoinPath(appFolder_, kReportFolder), std::string(kReportFolder) + ".zip");
}

ErrorDecision ErrHandler::zolErrHandler(std::int32_t Number, const std::string& Description,
                                        const std::string& Project, const std::string& Module,
                                        const std::string& Procedure, std::int32_t Line) {
  zolRetCode_ = ErrorDecision::None;
  if (Number == kReportedErrorNumber) {
    FinishReport();
    return ShowAndDecide();
  }
  currentKey_ = ErrorKey(Module, Number, Line);
  if (ignoreList_.find(currentKey_) != std::string::npos) {
    zolRetCode_ = ErrorDecision::Ignore;
    return zolRetCode_;
  }
  return FirstEntry({Number, Description, Project, Module, Procedure, Line});
}

ErrorDecision ErrHandler::FirstEntry(const ErrorInfo& e) {
  prompter_.StopTimers();
  timersStopped_ = true;
  zolMessageString_ = ErrorMessageText(e);
  zolfHasReported_ = false;
  faultStack_.clear();
  return ShowAndDecide();
}

// Shows the dialog and acts on its answer: a report is started (and the
// failing operation is told to dump its state), any other answer is final.
ErrorDecision ErrHandler::ShowAndDecide() {
  const ErrorDialogReply reply =
      prompter_.ShowErrorDialog({zolMessageString_, zolfHasReported_, zolCircumstancesString_});
  zolRetCode_ = reply.decision;
  if (zolRetCode_ == ErrorDecision::Report) {
    if (zolfHasReported_) {
      // One report per error: the dialog offers no second one.
      zolRetCode_ = ErrorDecision::Ignore;
    } else {
      zolCircumstancesString_ = reply.circumstances;
      StartReport();
      return zolRetCode_;
    }
  }
  if (zolRetCode_ == ErrorDecision::AlwaysIgnore) {
    ignoreList_ += currentKey_;
    zolRetCode_ = ErrorDecision::Ignore;
  }
  if (zolRetCode_ != ErrorDecision::Abort && timersStopped_) {
    prompter_.RestartTimers();
    timersStopped_ = false;
  }
  return zolRetCode_;
}

// A new, empty report folder, and the dump pointed into it.
void ErrHandler::StartReport() {
  zolErrorPath_ = JoinPath(appFolder_, kReportFolder) + "/";
  Quietly([&] {
    std::error_code ec;
    std::filesystem::remove_all(std::filesystem::path(zolErrorPath_), ec);
    MakeDir(zolErrorPath_);
  });
  zolSetDumpFile(zolErrorPath_ + "Variables.txt");
  zolfHasReported_ = true;
}

void ErrHandler::FinishReport() {
  const ProtectorSettings& settings = CurrentProtectorSettings();
  zolCloseDumpFile();
  Quietly([&] {
    if (!faultStack_.empty()) {
      WriteFile(zolErrorPath_ + "Stack.txt", faultStack_);
    } else if (settings.zolTraceProc && settings.zolCallStack) {
      WriteFile(zolErrorPath_ + "Stack.txt", zolGetStack());
    }
  });
  Quietly([&] {
    if (settings.zolLogTraceToFile && FileExist(settings.zolLogFile)) {
      WriteFile(zolErrorPath_ + "Trace.txt", LoadFile(settings.zolLogFile));
    }
  });
  Quietly([&] {
    WriteFile(zolErrorPath_ + "Error.txt",
              zolMessageString_ + "\r\n\r\nCircumstances:\r\n" + zolCircumstancesString_);
  });
  if (settings.zolSystemInfo) {
    Quietly([&] { WriteFile(zolErrorPath_ + "Version.txt", GetVersionInfo()); });
    Quietly(
        [&] { WriteFile(zolErrorPath_ + "System.txt", GetSystemInfo(prompter_.DisplayInfo())); });
  }
  if (settings.zolScreenshot) {
    Quietly([&] { prompter_.SaveScreenshot(zolErrorPath_ + "Screenshot.bmp"); });
  }
  std::vector<std::string> files;
  for (const char* name : kReportFiles) files.push_back(zolErrorPath_ + name);
  const std::string archive = ArchiveFile();
  bool archived = false;
  Quietly([&] { archived = ZipFiles(archive, files); });
  Quietly([&] { SendReport(archive, archived); });
  // The archive holds them all now.
  if (archived) {
    for (const std::string& f : files) std::remove(f.c_str());
  }
  zolSetDumpFile(CurrentProtectorSettings().zolDumpFile);
}

void ErrHandler::SendReport(const std::string& archive, bool archived) {
  const ProtectorSettings& settings = CurrentProtectorSettings();
  const std::string address = settings.zolEmailRecipientAdress;
  const std::string subject = ErrorReportSubject();
  const std::string archiveName = archive.substr(0, archive.size() - 4);  // without ".zip"
  std::error_code ec;
  const auto bytes = archived ? std::filesystem::file_size(archive, ec) : 0;
  const std::string kb = std::to_string(ec ? 0 : (bytes + 1023) / 1024);
  const std::string attach =
      "(Please attach: " + archiveName + ".zip - Size: " + kb + " Kb to this message.)";
  const std::string body =
      zolMessageString_ + "\r\n\r\nCircumstances:" + zolCircumstancesString_ + "\r\n\r\n" + attach;
  const std::string mailto =
      "mailto:" + address + "?subject=" + MailtoEncode(subject) + "&body=" + MailtoEncode(body);

  if (archived) {
    bool sent = false;
    if (prompter_.OpenMail(mailto)) {
      sent = prompter_.Ask(
                 "An email message should be displayed on your computer now, ready for "
                 "sending.\r\nHave you been able to attach the required file and send "
                 "the message successfully ?") == Answer::Yes;
    }
    if (!sent) {
      const std::string manual =
          "Impossible to send the error report automatically !\r\n\r\nPlease open your email "
          "messenger and send a message with the following parameters:\r\nAddress: " +
          address + "\r\nSubject: " + subject +
          "\r\nMessage: Please open the attached file.\r\nAttached file: " + archiveName +
          ".zip (Size: " + kb + " Kb)";
      if (prompter_.Ask(manual +
                        "\r\n\r\nWould you like to copy this message to the clipboard ?") ==
          Answer::Yes) {
        CopyToClipboard(manual);
      }
    }
    return;
  }
  // No archive: the report travels as text, through the clipboard.
  const std::string report = "Error:\r\n" + LoadFile(zolErrorPath_ + "Error.txt") +
                             "\r\nStack:\r\n" + LoadFile(zolErrorPath_ + "Stack.txt") +
                             "\r\nVariables:\r\n" + LoadFile(zolErrorPath_ + "Variables.txt");
  const std::string instructions =
      "Address: " + address + "\r\nSubject: " + subject + "\r\nMessage: " + report;
  CopyToClipboard(instructions);
  prompter_.OpenMail("mailto:" + address + "?subject=" + MailtoEncode(subject) +
                     "&body=" + MailtoEncode(report));
  prompter_.ShowMessage(
      "Impossible to send the error report automatically !\r\n\r\nPlease send "
      "the message manually.\r\nFull instructions have been copied to the "
      "clipboard.\r\nThank you.");
}

// Some clipboards take a text only on the second or third try.
void ErrHandler::CopyToClipboard(const std::string& text) {
  for (int attempt = 0; attempt < 10; ++attempt) {
    prompter_.ClearClipboard();
    prompter_.SetClipboardText(text);
    if (prompter_.ClipboardText() == text) return;
  }
}

ErrorDecision ErrHandler::OfferCrashReport(const CrashRecord& crash, const std::string& project) {
  const std::size_t dot = crash.procedure.find('.');
  ErrorInfo e;
  e.Number = kFatalFaultNumber;
  e.Description = crash.description;
  e.Project = project;
  e.Module = dot == std::string::npos ? "" : crash.procedure.substr(0, dot);
  e.Procedure = dot == std::string::npos ? crash.procedure : crash.procedure.substr(dot + 1);
  currentKey_ = ErrorKey(e.Module, e.Number, e.Line);
  ErrorDecision d = FirstEntry(e);
  if (d != ErrorDecision::Report) return d;
  // The process that failed is gone: its stack is all there is to dump.
  faultStack_ = crash.stack;
  Quietly([&] {
    zolOpenDumpFile();
    zolReportToFile("The program ended on a fatal fault; its variables could not be saved.");
    zolCloseDumpFile();
  });
  return zolErrHandler(kReportedErrorNumber, "", "", "", "", 0);
}

}  // namespace zol
