#pragma once

// The workspace a zolprof command runs in: messages go to stderr, questions
// are answered by the command's flags (never "delete" unless a flag names it), and the
// run's folder of cleaned source text is made at the start and removed, with
// every temporary file, at the end.

#include <iostream>
#include <memory>
#include <string>

#include "session/prompter.h"
#include "session/workspace.h"

namespace zol::cli {

class CliPrompter : public Prompter {
 public:
  explicit CliPrompter(Answer answer = Answer::No, bool showProgress = false)
      : answer_(answer), confirmAnswer_(answer), showProgress_(showProgress) {}

  void ShowMessage(const std::string& text, MessageKind kind) override;
  Answer Ask(const std::string& text, bool withCancel = false) override;
  // Printed with its title and answered by SetConfirmAnswer; the box "don't
  // show again" is never ticked from the command line.
  DontShowReply AskDontShowAgain(const std::string& title, const std::string& text) override;

  // The answer to questions that only confirm what the command was asked to
  // do (such as "Apply Filters ?"); the same as other questions unless set.
  void SetConfirmAnswer(Answer answer) { confirmAnswer_ = answer; }
  // Printed and answered No, unless the command's flag that names the
  // deletion (--delete-unreadable) allowed it.
  Answer AskToDelete(const std::string& text) override;
  // For a command that has --delete-unreadable: whether it was given.
  void SetDeleteUnreadable(bool given) {
    deleteAnswer_ = given ? Answer::Yes : Answer::No;
    deleteFlag_ = true;
  }
  void ShowProgress(bool) override {}
  void SetProgressText(const std::string& text) override;
  void SetProgressMax(long) override {}
  void SetProgressValue(long) override {}
  void DoEvents() override {}

  int messagesShown() const { return messagesShown_; }

 private:
  Answer answer_;
  Answer confirmAnswer_;
  Answer deleteAnswer_ = Answer::No;
  bool deleteFlag_ = false;  // the command has --delete-unreadable
  bool showProgress_;
  int messagesShown_ = 0;
};

// Owns the Workspace for the length of one command.
class CliWorkspace {
 public:
  explicit CliWorkspace(std::shared_ptr<CliPrompter> prompter = std::make_shared<CliPrompter>());
  ~CliWorkspace();
  CliWorkspace(const CliWorkspace&) = delete;
  CliWorkspace& operator=(const CliWorkspace&) = delete;

  Workspace& ws() { return ws_; }
  const Workspace& ws() const { return ws_; }
  CliPrompter& prompter() { return *prompter_; }

 private:
  std::shared_ptr<CliPrompter> prompter_;
  Workspace ws_;
};

}  // namespace zol::cli
