#include "cli/cli_workspace.h"

#include "project/project_info.h"

namespace zol::cli {

void CliPrompter::ShowMessage(const std::string& text, MessageKind) {
  ++messagesShown_;
  std::cerr << "zolprof: " << text << "\n";
}

namespace {

const char* AnswerText(Answer a) {
  return a == Answer::Yes ? "Yes" : a == Answer::No ? "No" : "Cancel";
}

}  // namespace

Answer CliPrompter::Ask(const std::string& text, bool) {
  ++messagesShown_;
  std::cerr << "zolprof: " << text << "\n"
            << "zolprof: answered " << AnswerText(answer_) << "\n";
  return answer_;
}

Answer CliPrompter::AskToDelete(const std::string& text) {
  ++messagesShown_;
  std::cerr << "zolprof: " << text << "\n"
            << "zolprof: answered " << AnswerText(deleteAnswer_)
            << (deleteAnswer_ == Answer::Yes ? ""
                : deleteFlag_                ? " (--delete-unreadable deletes it)"
                                             : " (the file is kept)")
            << "\n";
  return deleteAnswer_;
}

DontShowReply CliPrompter::AskDontShowAgain(const std::string& title, const std::string& text) {
  ++messagesShown_;
  std::cerr << "zolprof: " << title << "\n"
            << text << "\n"
            << "zolprof: answered " << AnswerText(confirmAnswer_) << "\n";
  return {confirmAnswer_, false};
}

void CliPrompter::SetProgressText(const std::string& text) {
  if (showProgress_) std::cerr << text << "\n";
}

CliWorkspace::CliWorkspace(std::shared_ptr<CliPrompter> prompter)
    : prompter_(std::move(prompter)), ws_(prompter_) {
  ResetRtfPath(ws_);
}

CliWorkspace::~CliWorkspace() {
  KillRtfPath(ws_);
  ws_.tempFiles.DeleteTempFiles();
}

}  // namespace zol::cli
