#pragma once

// Links of the source page. A statement links to "|module|procedure|line";
// the browser asks before following any link, and such a link opens the
// context menu of that statement instead of a page.

#include <cstdint>
#include <string>

namespace zol {

struct LinkDecision {
  bool cancel = false;    // the browser must not follow the link
  bool openMenu = false;  // the statement's context menu opens at the pointer
  // The statement the menu is about (when it opens).
  std::int32_t module = 0;
  std::int32_t procedure = 0;
  std::int32_t line = 0;
};

// A URL ending in ".htm" (any case) or "/", or holding "#", is passed on to
// the browser. Any other is cancelled; if it splits at "|" into four parts or
// more, parts 1 to 3 are the statement's module, procedure and line, and the
// menu opens.
LinkDecision DecideLink(const std::string& url);

}  // namespace zol
