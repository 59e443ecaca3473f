#include "catalogue/dont_show_dialog.h"

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/text.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";

}  // namespace

std::string DontShowKey(const std::string& messageId) {
  return "DontShow" + messageId;
}

bool MustShow(const Workspace& ws, const std::string& messageId) {
  const std::string value = VBGetPrivateProfileString(kSection, DontShowKey(messageId), "False",
                                                      GetIniFile(ws.appFolder));
  return !TextEquals(value, "True");
}

bool MsgBoxDontShow(Workspace& ws, const std::string& messageId, const std::string& title,
                    const std::string& text) {
  if (!MustShow(ws, messageId)) return true;
  const DontShowReply reply = ws.prompter().AskDontShowAgain(title, text);
  if (reply.answer == Answer::No) return false;
  if (reply.dontShowAgain) {
    try {
      VBWritePrivateProfileString(kSection, DontShowKey(messageId), "True",
                                  GetIniFile(ws.appFolder));
    } catch (const FileError&) {
      // Not remembered: the question comes again next time, which is harmless.
    }
  }
  return true;
}

}  // namespace zol
