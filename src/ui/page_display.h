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

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zol {

std::string pageForDisplay(std::string_view page);

// A page cut at the rows of its statement table, so that a long module can be
// shown a few screens of rows at a time: the rich-text engine takes seconds to
// lay out a table of twenty thousand rows, and most of them are never seen.
// `head` runs to the end of the table's caption row, each row is one
// statement ("<TR>" to "</TR>" and its line end), `tail` is the rest from the
// table's end: the legend and the end of the page. Each part is a view into
// the page it was cut from.
struct PageRows {
  std::string_view head;
  std::vector<std::string_view> rows;
  std::string_view tail;

  // A page of rows [first, last): the head, those rows, and the tail when
  // `last` is the last row, otherwise only the end of the table and page.
  std::string slice(std::size_t first, std::size_t last) const;
  // The row holding the link "|module|procedure|line", or nothing.
  std::optional<std::size_t> rowLinkedTo(std::string_view href) const;
  // The row that holds the anchor `name` (any case), or nothing; the legend's
  // anchor stands in the tail, which counts as the place of the last row.
  std::optional<std::size_t> rowNamed(std::string_view name) const;
  // How many lines of text row `i` takes: continued statements take several.
  int linesOf(std::size_t i) const;
};

// The parts of `page`, or nothing for a page without statement rows (a notice,
// an empty module), which is shown whole.
std::optional<PageRows> splitPageRows(std::string_view page);

}  // namespace zol
