#pragma once

// A question that the user may choose never to see again. Once the user has
// ticked "don't show this message again" and answered Yes, the settings file
// (GetIniFile of the workspace's application folder) holds, in section
// "Profiler", the key "DontShow" followed by the message's id with the value
// "True", and the question is no longer shown: the caller goes on as if the
// answer were Yes. A No is never remembered, so that a ticked box can't turn
// a refusal into a silent Yes later on.

#include <string>

#include "session/workspace.h"

namespace zol {

// The settings key that remembers the message `messageId`.
std::string DontShowKey(const std::string& messageId);

// Whether the question `messageId` is still to be shown.
bool MustShow(const Workspace& ws, const std::string& messageId);

// Asks through the prompter unless the user has asked never to see it again.
// Returns whether the caller is to go on: true when not shown, otherwise
// whether the answer was anything but No.
bool MsgBoxDontShow(Workspace& ws, const std::string& messageId, const std::string& title,
                    const std::string& text);

}  // namespace zol
