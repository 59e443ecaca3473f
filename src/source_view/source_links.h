#pragma once

// Links of the source page. A statement links to "|module|procedure|line";
// the browser asks before following any link, and such a link opens the
// context menu of that statement instead of a page.

#include <string>

#include "session/workspace.h"

namespace zol {

struct LinkDecision {
  bool cancel = false;    // the browser must not follow the link
  bool openMenu = false;  // the statement's context menu opens at the pointer
};

// A URL ending in ".htm" (any case) or "/", or holding "#", is passed on to
// the browser. Any other is cancelled; if it splits at "|" into four parts or
// more, parts 1 to 3 go to cModTmp, cProTmp and cLineTmp and the menu opens.
LinkDecision DecideLink(Workspace& ws, const std::string& url);

}  // namespace zol
