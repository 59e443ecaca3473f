#pragma once

// How the core talks to the user: messages, Yes/No questions, and the progress
// area of a long operation. The GUI shows message boxes and a progress bar that
// lets events run; zolprof prints to stderr and answers by its flags; tests use
// RecordingPrompter and assert the exact texts.

#include <string>
#include <vector>

namespace zol {

enum class MessageKind { Information, Exclamation, Critical, Question };

enum class Answer { Yes, No, Cancel };

// The reply to a question that the user may choose never to see again.
struct DontShowReply {
  Answer answer = Answer::Yes;
  bool dontShowAgain = false;  // the "don't show this message again" box was ticked
};

class Prompter {
 public:
  virtual ~Prompter() = default;

  virtual void ShowMessage(const std::string& text, MessageKind kind) = 0;
  // A question with Yes and No (and Cancel when `withCancel`).
  virtual Answer Ask(const std::string& text, bool withCancel = false) = 0;
  // A question whose Yes deletes a file of the user's. Kept apart from Ask so
  // that an automatic "yes to everything" never reaches it; by default it is
  // asked like any other.
  virtual Answer AskToDelete(const std::string& text) { return Ask(text); }
  // A Yes/No question under `title` with a box "don't show this message
  // again". Whether it is shown at all is the caller's business (see the
  // catalogue's MsgBoxDontShow). By default: Ask(text), the box left clear.
  virtual DontShowReply AskDontShowAgain(const std::string& /*title*/, const std::string& text) {
    return {Ask(text), false};
  }

  // The progress area: a label, a bar with a maximum and value.
  virtual void ShowProgress(bool visible) = 0;
  virtual void SetProgressText(const std::string& text) = 0;
  virtual void SetProgressMax(long max) = 0;
  virtual void SetProgressValue(long value) = 0;
  // Lets pending events run; a GUI may set Workspace::abort from here.
  virtual void DoEvents() = 0;
};

// Says nothing, answers Yes, shows no progress.
class SilentPrompter : public Prompter {
 public:
  void ShowMessage(const std::string&, MessageKind) override {}
  Answer Ask(const std::string&, bool = false) override { return Answer::Yes; }
  void ShowProgress(bool) override {}
  void SetProgressText(const std::string&) override {}
  void SetProgressMax(long) override {}
  void SetProgressValue(long) override {}
  void DoEvents() override {}
};

// Keeps everything it is told, and answers from a queue (Yes when it runs out).
class RecordingPrompter : public Prompter {
 public:
  struct Message {
    std::string text;
    MessageKind kind;
  };

  void ShowMessage(const std::string& text, MessageKind kind) override {
    messages.push_back({text, kind});
  }
  Answer Ask(const std::string& text, bool = false) override {
    questions.push_back(text);
    if (answers.empty()) return Answer::Yes;
    Answer a = answers.front();
    answers.erase(answers.begin());
    return a;
  }
  void ShowProgress(bool visible) override { progressVisible = visible; }
  void SetProgressText(const std::string& text) override { progressTexts.push_back(text); }
  void SetProgressMax(long max) override { progressMax = max; }
  void SetProgressValue(long value) override { progressValue = value; }
  void DoEvents() override { ++doEventsCalls; }

  std::vector<Message> messages;
  std::vector<std::string> questions;
  std::vector<Answer> answers;
  std::vector<std::string> progressTexts;
  bool progressVisible = false;
  long progressMax = 0;
  long progressValue = 0;
  int doEventsCalls = 0;
};

}  // namespace zol
