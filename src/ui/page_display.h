#pragma once

// The source page as the view shows it. The page file is kept to the byte as
// it is written (reports and other browsers read the same text), but the
// view's rich-text engine reads some of it otherwise than a web browser:
//   - colours written as bare hex digits (bgcolor=DDDDDD, COLOR=666666,
//     "color : 0000FF;") are ignored unless they begin with "#";
//   - the begin marker of the style stands right before the PRE rule, which
//     then reads as part of a selector and is dropped;
//   - a line height below the font's size makes continued statements overlap.
// The display copy therefore gets "#" before bare colours, loses the two
// markers and the line heights. Nothing else changes.

#include <string>
#include <string_view>

namespace zol {

std::string PageForDisplay(std::string_view page);

}  // namespace zol
