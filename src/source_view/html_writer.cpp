#include "source_view/html_writer.h"

#include "base/files.h"
#include "base/text.h"
#include "base/version.h"

namespace zol {

namespace {

constexpr std::string_view kCrLf = "\r\n";

void WriteLine(CConcatString& cc, std::string_view text) {
  cc.Append(text);
  cc.Append(kCrLf);
}

}  // namespace

void HtmlWriteHeader(CConcatString& cc, std::string_view title) {
  WriteLine(cc, "<HTML>");
  WriteLine(cc, "<HEAD>");
  WriteLine(cc, R"(<meta http-equiv="Content-Type" content="text/html; charset=iso-8859-1">)");
  std::string generator = R"(<meta name="GENERATOR" content=")";
  generator += kAppTitle;
  generator += ' ';
  generator += std::to_string(kAppMajor) + "." + std::to_string(kAppMinor) + "." +
               std::to_string(kAppRevision);
  generator += "\">";
  WriteLine(cc, generator);
  cc.Append("<TITLE>");
  cc.Append(title);
  WriteLine(cc, "</TITLE>");
  WriteLine(cc, "</HEAD>");
  WriteLine(cc, "");
}

void HtmlWriteStyle(CConcatString& cc, std::string_view style) {
  WriteLine(cc, R"( <STYLE TYPE="text/css">)");
  WriteLine(cc, style);
  WriteLine(cc, "</STYLE>");
  WriteLine(cc, "");
}

void HtmlWriteBody(CConcatString& cc, std::string_view attrs) {
  cc.Append("<BODY ");
  cc.Append(attrs);
  WriteLine(cc, ">");
}

void HtmlWriteEnd(CConcatString& cc) {
  WriteLine(cc, "</BODY>");
  WriteLine(cc, "</HTML>");
}

void HtmlWriteString(CConcatString& cc, std::string_view text, int indent) {
  cc.Append(StringEx(indent, "   "));
  WriteLine(cc, text);
}

// One pass: what a replacement writes is never looked at again, as when the
// ampersands are replaced first and the line ends last.
std::string HtmlPrepareString(std::string_view text) {
  std::string s;
  s.reserve(text.size() + text.size() / 8);
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (const char c = text[i]) {
      case '&':
        s += "&amp;";
        break;
      case '"':
        s += "&quot;";
        break;
      case '<':
        s += "&lt;";
        break;
      case '>':
        s += "&gt;";
        break;
      case '\r':
        if (i + 1 < text.size() && text[i + 1] == '\n') {
          s += "<BR>";
          ++i;
        } else {
          s += c;
        }
        break;
      default:
        s += c;
    }
  }
  return s;
}

void HtmlOutputTofile(const CConcatString& cc, const std::string& file) {
  std::string bytes(cc.View());
  bytes += kCrLf;
  WriteFile(file, bytes);
}

TextTable::TextTable(int firstColumn, int lastColumn, int firstRow, int lastRow)
    : firstColumn_(firstColumn), lastColumn_(lastColumn), firstRow_(firstRow), lastRow_(lastRow) {
  if (lastColumn < firstColumn - 1 || lastRow < firstRow - 1) {
    throw BoundsError("table bounds (" + std::to_string(firstColumn) + " To " +
                      std::to_string(lastColumn) + ", " + std::to_string(firstRow) + " To " +
                      std::to_string(lastRow) + ") are reversed");
  }
  cells_.resize(static_cast<std::size_t>(lastColumn - firstColumn + 1) *
                static_cast<std::size_t>(lastRow - firstRow + 1));
}

std::size_t TextTable::Offset(int column, int row) const {
  if (column < firstColumn_ || column > lastColumn_ || row < firstRow_ || row > lastRow_) {
    throw BoundsError("cell (" + std::to_string(column) + ", " + std::to_string(row) +
                      ") out of range");
  }
  const auto width = static_cast<std::size_t>(lastColumn_ - firstColumn_ + 1);
  return static_cast<std::size_t>(row - firstRow_) * width +
         static_cast<std::size_t>(column - firstColumn_);
}

std::string& TextTable::operator()(int column, int row) {
  return cells_[Offset(column, row)];
}

const std::string& TextTable::operator()(int column, int row) const {
  return cells_[Offset(column, row)];
}

std::string HtmlGetArray(const TextTable& array, std::string_view pageTitle) {
  CConcatString rows;
  for (int i = array.LBoundRow(); i <= array.UBoundRow(); ++i) {
    const bool head = i == 0;
    WriteLine(rows, head ? "<TR BGCOLOR=666666>" : "<TR>");
    for (int j = array.LBoundColumn(); j <= array.UBoundColumn(); ++j) {
      rows.Append(head ? R"(<TD CLASS="alcenter">)" : "<TD>");
      rows.Append(array(j, i));
      WriteLine(rows, "</TD>");
    }
    WriteLine(rows, "</TR>");
  }

  CConcatString table;
  WriteLine(table, "<TABLE CELLPADDING=2 CELLSPACING=0 BORDER=1 RULES=COLS BGCOLOR=D9D9D9>");
  if (!pageTitle.empty()) {
    // The title row has no line end of its own; the first row follows on.
    table.Append(R"(<TR BGCOLOR=000000><TD  CLASS="alcenter" COLSPAN=)");
    table.Append(std::to_string(array.UBoundColumn()));
    table.Append("><FONT COLOR=white><B>");
    table.Append(pageTitle);
    table.Append("</B></FONT></TD></TR>");
  }
  table.Append(rows.View());
  WriteLine(table, "</TABLE>");
  return table.Value();
}

}  // namespace zol
