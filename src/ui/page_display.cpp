#include "ui/page_display.h"

#include <algorithm>
#include <cctype>

#include "base/text.h"
#include "source_view/page_header.h"

namespace zol {

namespace {

bool isHex(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

bool IsWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool endsWithColorWord(std::string_view text, std::size_t end) {
  static constexpr std::string_view kWord = "color";
  if (end < kWord.size()) return false;
  for (std::size_t i = 0; i < kWord.size(); ++i) {
    const char c =
        static_cast<char>(std::tolower(static_cast<unsigned char>(text[end - kWord.size() + i])));
    if (c != kWord[i]) return false;
  }
  return true;
}

// Copies `page`, putting "#" before six hex digits that follow "color" (or
// "bgcolor") and "=" or ":", with blanks around the sign allowed.
std::string hashBareColours(std::string_view page) {
  std::string out;
  out.reserve(page.size() + page.size() / 16);
  std::size_t copied = 0;
  for (std::size_t i = 0; i < page.size(); ++i) {
    if (page[i] != '=' && page[i] != ':') continue;
    std::size_t before = i;
    while (before > 0 && page[before - 1] == ' ') --before;
    if (!endsWithColorWord(page, before)) continue;
    std::size_t v = i + 1;
    while (v < page.size() && page[v] == ' ') ++v;
    if (v + 6 > page.size()) continue;
    bool hex = true;
    for (std::size_t k = v; k < v + 6; ++k) hex = hex && isHex(page[k]);
    if (!hex || (v + 6 < page.size() && IsWordChar(page[v + 6]))) continue;
    out.append(page.substr(copied, v - copied));
    out += '#';
    copied = v;
  }
  out.append(page.substr(copied));
  return out;
}

// Removes every "line-height : ...;" declaration of a style text.
std::string dropLineHeights(std::string_view style) {
  static constexpr std::string_view kDeclaration = "line-height";
  std::string out;
  out.reserve(style.size());
  std::size_t copied = 0;
  for (std::size_t at = style.find(kDeclaration); at != std::string_view::npos;
       at = style.find(kDeclaration, copied)) {
    const std::size_t end = style.find(';', at);
    if (end == std::string_view::npos) break;
    out.append(style.substr(copied, at - copied));
    copied = end + 1;
  }
  out.append(style.substr(copied));
  return out;
}

// Text between tags: a "&nbsp" without its ";" (which browsers forgive) gets
// one, and a "<" that opens no tag ("Time < 0.001s" in the legend) is
// escaped, where the view's engine would take it for a broken tag.
void appendText(std::string& out, std::string_view text) {
  std::size_t copied = 0;
  for (std::size_t at = text.find("&nbsp"); at != std::string_view::npos;
       at = text.find("&nbsp", copied)) {
    out.append(text.substr(copied, at + 5 - copied));
    if (at + 5 >= text.size() || text[at + 5] != ';') out += ';';
    copied = at + 5;
  }
  out.append(text.substr(copied));
}

bool opensTag(std::string_view markup, std::size_t at) {
  if (at + 1 >= markup.size()) return false;
  const char next = markup[at + 1];
  return std::isalpha(static_cast<unsigned char>(next)) != 0 || next == '/' || next == '!';
}

// Rewrites the tags of a stretch of markup and fixes the text between them;
// the source text itself is left as it is.
void appendMarkup(std::string& out, std::string_view markup) {
  std::size_t copied = 0;
  std::size_t from = 0;
  for (std::size_t open = markup.find('<'); open != std::string_view::npos;
       open = markup.find('<', from)) {
    if (!opensTag(markup, open)) {
      appendText(out, markup.substr(copied, open - copied));
      out += "&lt;";
      copied = from = open + 1;
      continue;
    }
    const std::size_t close = markup.find('>', open);
    if (close == std::string_view::npos) break;
    appendText(out, markup.substr(copied, open - copied));
    out += hashBareColours(markup.substr(open, close + 1 - open));
    copied = from = close + 1;
  }
  appendText(out, markup.substr(copied));
}

// The page writer indents a statement row's opening tag by three levels, the
// caption row and the rows' closing tags by two, and the table's end by one;
// the code inside a row is joined by "<BR>", so none of these line starts
// can come from the source text.
constexpr std::string_view kRowStart = "\r\n         <TR>";
constexpr std::string_view kRowBoldStart = "\r\n         <TR><B>";
constexpr std::string_view kTableEnd = "\r\n   </TABLE>";
constexpr std::string_view kMiddleEnd = "   </TABLE>\r\n</BODY>\r\n</HTML>\r\n";

bool containsNoCase(std::string_view text, std::string_view what) {
  const auto same = [](char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
  };
  return std::search(text.begin(), text.end(), what.begin(), what.end(), same) != text.end();
}

}  // namespace

std::optional<PageRows> splitPageRows(std::string_view page) {
  static_assert(kRowBoldStart.substr(0, kRowStart.size()) == kRowStart);
  std::size_t at = page.find(kRowStart);
  if (at == std::string_view::npos) return std::nullopt;
  const std::size_t end = page.find(kTableEnd, at);
  if (end == std::string_view::npos) return std::nullopt;
  PageRows parts;
  parts.head = page.substr(0, at + 2);
  while (at != std::string_view::npos && at < end) {
    const std::size_t next = page.find(kRowStart, at + kRowStart.size());
    const std::size_t stop = next == std::string_view::npos || next > end ? end : next;
    parts.rows.push_back(page.substr(at + 2, stop - at));
    at = stop == end ? std::string_view::npos : next;
  }
  parts.tail = page.substr(end + 2);
  return parts;
}

std::string PageRows::slice(std::size_t first, std::size_t last) const {
  last = std::min(last, rows.size());
  first = std::min(first, last);
  std::size_t size = head.size() + std::max(tail.size(), kMiddleEnd.size());
  for (std::size_t i = first; i < last; ++i) size += rows[i].size();
  std::string page;
  page.reserve(size);
  page.append(head);
  for (std::size_t i = first; i < last; ++i) page.append(rows[i]);
  page.append(last == rows.size() ? tail : kMiddleEnd);
  return page;
}

std::optional<std::size_t> PageRows::rowLinkedTo(std::string_view href) const {
  const std::string link = "<A HREF=\"" + std::string(href) + "\">";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i].find(link) != std::string_view::npos) return i;
  }
  return std::nullopt;
}

std::optional<std::size_t> PageRows::rowNamed(std::string_view name) const {
  const std::string anchor = "<A NAME=\"" + std::string(name) + "\">";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (containsNoCase(rows[i], anchor)) return i;
  }
  if (!rows.empty() && containsNoCase(tail, anchor)) return rows.size() - 1;
  return std::nullopt;
}

int PageRows::linesOf(std::size_t i) const {
  int lines = 1;
  for (std::size_t at = rows[i].find("<BR>"); at != std::string_view::npos;
       at = rows[i].find("<BR>", at + 4)) {
    ++lines;
  }
  return lines;
}

std::string pageForDisplay(std::string_view page) {
  std::string out;
  out.reserve(page.size() + page.size() / 16);
  const std::size_t styleOpen = page.find("<STYLE");
  const std::size_t styleClose =
      styleOpen == std::string_view::npos ? styleOpen : page.find("</STYLE>", styleOpen);
  if (styleClose == std::string_view::npos) {
    appendMarkup(out, page);
    return out;
  }
  appendMarkup(out, page.substr(0, styleOpen));
  std::string style(page.substr(styleOpen, styleClose - styleOpen));
  style = Replace(style, kBeginStyleMarker, "\r\n");
  style = Replace(style, kEndStyleMarker, "\r\n");
  out += hashBareColours(dropLineHeights(style));
  appendMarkup(out, page.substr(styleClose));
  return out;
}

}  // namespace zol
