#include "ui/page_display.h"

#include <cctype>

#include "base/text.h"
#include "source_view/page_header.h"

namespace zol {

namespace {

bool IsHex(char c) {
  return std::isxdigit(static_cast<unsigned char>(c)) != 0;
}

bool IsWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

bool EndsWithColorWord(std::string_view text, std::size_t end) {
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
std::string HashBareColours(std::string_view page) {
  std::string out;
  out.reserve(page.size() + page.size() / 16);
  std::size_t copied = 0;
  for (std::size_t i = 0; i < page.size(); ++i) {
    if (page[i] != '=' && page[i] != ':') continue;
    std::size_t before = i;
    while (before > 0 && page[before - 1] == ' ') --before;
    if (!EndsWithColorWord(page, before)) continue;
    std::size_t v = i + 1;
    while (v < page.size() && page[v] == ' ') ++v;
    if (v + 6 > page.size()) continue;
    bool hex = true;
    for (std::size_t k = v; k < v + 6; ++k) hex = hex && IsHex(page[k]);
    if (!hex || (v + 6 < page.size() && IsWordChar(page[v + 6]))) continue;
    out.append(page.substr(copied, v - copied));
    out += '#';
    copied = v;
  }
  out.append(page.substr(copied));
  return out;
}

// Removes every "line-height : ...;" declaration of a style text.
std::string DropLineHeights(std::string_view style) {
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
void AppendText(std::string& out, std::string_view text) {
  std::size_t copied = 0;
  for (std::size_t at = text.find("&nbsp"); at != std::string_view::npos;
       at = text.find("&nbsp", copied)) {
    out.append(text.substr(copied, at + 5 - copied));
    if (at + 5 >= text.size() || text[at + 5] != ';') out += ';';
    copied = at + 5;
  }
  out.append(text.substr(copied));
}

bool OpensTag(std::string_view markup, std::size_t at) {
  if (at + 1 >= markup.size()) return false;
  const char next = markup[at + 1];
  return std::isalpha(static_cast<unsigned char>(next)) != 0 || next == '/' || next == '!';
}

// Rewrites the tags of a stretch of markup and fixes the text between them;
// the source text itself is left as it is.
void AppendMarkup(std::string& out, std::string_view markup) {
  std::size_t copied = 0;
  std::size_t from = 0;
  for (std::size_t open = markup.find('<'); open != std::string_view::npos;
       open = markup.find('<', from)) {
    if (!OpensTag(markup, open)) {
      AppendText(out, markup.substr(copied, open - copied));
      out += "&lt;";
      copied = from = open + 1;
      continue;
    }
    const std::size_t close = markup.find('>', open);
    if (close == std::string_view::npos) break;
    AppendText(out, markup.substr(copied, open - copied));
    out += HashBareColours(markup.substr(open, close + 1 - open));
    copied = from = close + 1;
  }
  AppendText(out, markup.substr(copied));
}

}  // namespace

std::string PageForDisplay(std::string_view page) {
  std::string out;
  out.reserve(page.size() + page.size() / 16);
  const std::size_t styleOpen = page.find("<STYLE");
  const std::size_t styleClose =
      styleOpen == std::string_view::npos ? styleOpen : page.find("</STYLE>", styleOpen);
  if (styleClose == std::string_view::npos) {
    AppendMarkup(out, page);
    return out;
  }
  AppendMarkup(out, page.substr(0, styleOpen));
  std::string style(page.substr(styleOpen, styleClose - styleOpen));
  style = Replace(style, kBeginStyleMarker, "\r\n");
  style = Replace(style, kEndStyleMarker, "\r\n");
  out += HashBareColours(DropLineHeights(style));
  AppendMarkup(out, page.substr(styleClose));
  return out;
}

}  // namespace zol
