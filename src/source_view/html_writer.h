#pragma once

// The few routines that write HTML into a CConcatString, so that the source
// view and the reports produce their pages in one shape: fixed tag words, CR LF
// line ends, and indentation by three blanks a level. Texts are single-byte and
// leave the program as they are (the page head declares iso-8859-1).

#include <string>
#include <string_view>
#include <vector>

#include "base/concat_string.h"
#include "base/vbarray.h"

namespace zol {

// "<HTML>", "<HEAD>", the content-type and GENERATOR meta lines (the
// program's title and version), "<TITLE>" `title` "</TITLE>", "</HEAD>" and an
// empty line.
void HtmlWriteHeader(CConcatString& cc, std::string_view title);

// " <STYLE TYPE="text/css">", `style` as it stands, a line end, "</STYLE>" and
// an empty line.
void HtmlWriteStyle(CConcatString& cc, std::string_view style);

// "<BODY " `attrs` ">".
void HtmlWriteBody(CConcatString& cc, std::string_view attrs);

// "</BODY>", "</HTML>".
void HtmlWriteEnd(CConcatString& cc);

// `indent` times three blanks, `text` and a line end.
void HtmlWriteString(CConcatString& cc, std::string_view text, int indent);

// `text` with "&", '"', "<" and ">" escaped and every CR LF turned into
// "<BR>". The ampersand goes first so that the later entities stay intact.
std::string HtmlPrepareString(std::string_view text);

// Replaces `file` by the buffer's value and one line end. Throws FileError.
void HtmlOutputTofile(const CConcatString& cc, const std::string& file);

// A table of texts addressed (column, row), each dimension with its own
// bounds; row 0, when present, is the head row.
class TextTable {
 public:
  TextTable(int firstColumn, int lastColumn, int firstRow, int lastRow);

  int LBoundColumn() const { return firstColumn_; }
  int UBoundColumn() const { return lastColumn_; }
  int LBoundRow() const { return firstRow_; }
  int UBoundRow() const { return lastRow_; }

  // Throws BoundsError outside the bounds.
  std::string& operator()(int column, int row);
  const std::string& operator()(int column, int row) const;

 private:
  std::size_t Offset(int column, int row) const;

  int firstColumn_, lastColumn_, firstRow_, lastRow_;
  std::vector<std::string> cells_;
};

// The table as HTML: an optional black title row spanning the columns, then
// one row per row index, the row 0 grey with centred cells.
std::string HtmlGetArray(const TextTable& array, std::string_view pageTitle);

}  // namespace zol
