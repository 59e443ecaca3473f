#include "source_view/page_header.h"

#include "base/concat_string.h"
#include "base/text.h"
#include "source_view/html_writer.h"

namespace zol {

namespace {

constexpr std::string_view kPreStyle =
    "PRE { font-family : \"FontHTML\", \"Courier New\";\r\n"
    "font-size : FontSizeHTML.0pt;\r\n"
    "text-decoration: none;\r\n"
    "line-height : LineHeightHTML.0pt;\r\n"
    "margin-top : 0.0pt;\r\n"
    "margin-bottom : 1.0pt;\r\n"
    "text-align: left;}\r\n";

constexpr std::string_view kTdStyle =
    "TD { font-family : \"FontHTML\", \"Courier New\";\r\n"
    "font-size : FontSizeHTML.0pt;\r\n"
    "line-height : LineHeightHTML.0pt;\r\n"
    "margin-top : 0.0pt;\r\n"
    "margin-bottom : 1.0pt;\r\n"
    "text-align: right;}\r\n";

constexpr std::string_view kVarStyle =
    "VAR { font-family : \"FontHTML\", \"Courier New\";\r\n"
    "font-size : SmallFontSizeHTML.0pt;\r\n"
    "font-style: normal;\r\n"
    "line-height : LineHeightHTML.0pt;\r\n"
    "margin-top : 0.0pt;\r\n"
    "margin-bottom : 1.0pt;\r\n"
    "color : 0000FF;\r\n"
    "text-align: right;}\r\n";

// The size placeholders go first and the font name last, so a font whose name
// happens to hold a placeholder word stays as it is named.
std::string FillBlock(std::string_view block, std::string_view sizeWord, std::int32_t size,
                      const Workspace& ws) {
  std::string s = Replace(block, sizeWord, std::to_string(size));
  s = Replace(s, "LineHeightHTML", std::to_string(ws.view.LineHeightHTML));
  return Replace(s, "FontHTML", ws.view.FontHTML);
}

}  // namespace

std::string PageStyleBlocks(const Workspace& ws) {
  return FillBlock(kPreStyle, "FontSizeHTML", ws.view.FontSizeHTML, ws) +
         FillBlock(kTdStyle, "FontSizeHTML", ws.view.FontSizeHTML, ws) +
         FillBlock(kVarStyle, "SmallFontSizeHTML", ws.view.SmallFontSizeHTML, ws);
}

std::string GetHeaderCode(const Workspace& ws, std::int32_t session) {
  CConcatString cc;
  HtmlWriteHeader(cc, ws.Session(session).Name);
  std::string style(kBeginStyleMarker);
  style += PageStyleBlocks(ws);
  style += kEndStyleMarker;
  HtmlWriteStyle(cc, style);
  HtmlWriteBody(cc, "BGCOLOR=\"WHITE\"");
  return cc.Value();
}

std::optional<std::string> RestylePage(std::string_view page, const Workspace& ws) {
  const std::size_t begin = page.find(kBeginStyleMarker);
  const std::size_t end = page.find(kEndStyleMarker);
  if (begin == std::string_view::npos || end == std::string_view::npos) return std::nullopt;
  CConcatString cc;
  cc.Append(page.substr(0, begin + kBeginStyleMarker.size()));
  cc.Append(PageStyleBlocks(ws));
  cc.Append(page.substr(end));
  return cc.Value();
}

}  // namespace zol
