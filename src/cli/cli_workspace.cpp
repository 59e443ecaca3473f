#include "cli/cli_workspace.h"

#include "project/project_info.h"

namespace zol::cli {

void CliPrompter::ShowMessage(const std::string& text, MessageKind) {
  ++messagesShown_;
  std::cerr << "zolprof: " << text << "\n";
}

Answer CliPrompter::Ask(const std::string& text, bool) {
  ++messagesShown_;
  std::cerr << "zolprof: " << text << "\n"
            << "zolprof: answered " << (answer_ == Answer::Yes ? "Yes" : "No") << "\n";
  return answer_;
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
