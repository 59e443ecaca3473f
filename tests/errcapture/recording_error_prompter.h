#pragma once

// An ErrorPrompter that answers the dialog from a queue and keeps everything
// else it is asked to do, for the tests of the decision flow.

#include <deque>
#include <string>
#include <vector>

#include "errcapture/err_handler.h"

namespace zol::testing {

class RecordingErrorPrompter : public ErrorPrompter {
 public:
  ErrorDialogReply ShowErrorDialog(const ErrorDialogState& state) override {
    dialogs.push_back(state);
    if (replies.empty()) return {ErrorDecision::Ignore, state.circumstances};
    ErrorDialogReply r = replies.front();
    replies.pop_front();
    return r;
  }
  void StopTimers() override {
    ++timerStops;
    timersRunning = false;
  }
  void RestartTimers() override {
    ++timerRestarts;
    timersRunning = true;
  }
  bool OpenMail(const std::string& url) override {
    mails.push_back(url);
    return mailWorks;
  }
  Answer Ask(const std::string& text) override {
    questions.push_back(text);
    if (answers.empty()) return Answer::Yes;
    Answer a = answers.front();
    answers.pop_front();
    return a;
  }
  void ShowMessage(const std::string& text) override { messages.push_back(text); }
  void ClearClipboard() override { clipboard.clear(); }
  void SetClipboardText(const std::string& text) override {
    ++clipboardSets;
    // A busy clipboard drops the first texts it is given.
    if (clipboardSets > clipboardDrops) clipboard = text;
  }
  std::string ClipboardText() override { return clipboard; }
  bool SaveScreenshot(const std::string& file) override {
    screenshots.push_back(file);
    return false;
  }
  std::vector<std::string> DisplayInfo() override { return {"Screen: test 800x600"}; }

  std::deque<ErrorDialogReply> replies;
  std::deque<Answer> answers;
  std::vector<ErrorDialogState> dialogs;
  std::vector<std::string> mails, questions, messages, screenshots;
  std::string clipboard;
  int clipboardSets = 0;
  int clipboardDrops = 0;
  bool mailWorks = true;
  int timerStops = 0;
  int timerRestarts = 0;
  bool timersRunning = true;
};

inline ErrorDialogReply Reply(ErrorDecision d, std::string circumstances = "") {
  return {d, std::move(circumstances)};
}

}  // namespace zol::testing
