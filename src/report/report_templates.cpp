#include "report/report_templates.h"

#include "base/text.h"
#include "base/version.h"

namespace zol {

namespace {

// One style sheet for every page of a report: quiet type, grey table heads as
// the grids have them, and section titles that show they can be opened.
constexpr std::string_view kStyle = R"HTML(<STYLE TYPE="text/css">
BODY { font-family: Arial, Helvetica, sans-serif; font-size: 10pt; color: #222222;
       background: #FFFFFF; margin: 16px 24px; }
H1 { font-size: 16pt; color: #333333; border-bottom: 2px solid #666666; padding-bottom: 4px; }
H2 { font-size: 13pt; color: #333333; margin-top: 24px; }
TABLE { border-collapse: collapse; margin: 4px 0 12px 0; }
TD { font-size: 9pt; padding: 2px 6px; text-align: right; vertical-align: top; }
TD.alcenter { text-align: center; }
TR[BGCOLOR="666666"] TD, TR[bgcolor="666666"] TD { color: #FFFFFF; font-weight: bold; }
DIV.text { text-align: left; }
PRE { margin: 0; font-family: "Courier New", monospace; }
A { color: #1F4E9E; }
.tocHead { cursor: pointer; font-weight: bold; font-size: 11pt; color: #1F1F1F;
           padding: 4px 0 4px 18px; margin-top: 6px; border-top: 1px solid #DDDDDD;
           background: url(more.gif) no-repeat 0 50%; }
.tocHead:hover { color: #1F4E9E; }
.tocOpen { color: #1F4E9E; }
.tocItemHide { display: none; }
.tocItemShow { display: block; }
.commands { font-size: 9pt; margin: 8px 0 12px 0; }
.commands A { cursor: pointer; text-decoration: underline; margin-right: 12px; }
.note { color: #666666; font-style: italic; }
.reportFooter { margin-top: 24px; padding-top: 6px; border-top: 1px solid #CCCCCC;
                font-size: 8pt; color: #777777; }
</STYLE>
)HTML";

// A section is its title (DIV.tocHead) and everything after it up to the next
// title or the footer: a table written inside the section's paragraph may be
// set beside it by the browser, so the sections are walked as siblings. The
// open sections are remembered per page in the browser's local storage.
constexpr std::string_view kScript = R"HTML(<SCRIPT TYPE="text/javascript">
function fnHeads() { return document.querySelectorAll("div.tocHead"); }
function fnBlocks(head) {
  var list = [];
  for (var e = head.nextElementSibling; e; e = e.nextElementSibling) {
    if (e.classList.contains("tocHead") || e.classList.contains("reportFooter") ||
        e.classList.contains("sessionHead")) break;
    list.push(e);
  }
  return list;
}
function fnShow(head, open) {
  if (open) head.classList.add("tocOpen"); else head.classList.remove("tocOpen");
  var blocks = fnBlocks(head);
  for (var i = 0; i < blocks.length; i++) {
    blocks[i].classList.remove(open ? "tocItemHide" : "tocItemShow");
    blocks[i].classList.add(open ? "tocItemShow" : "tocItemHide");
  }
}
function fnFlash(head) { fnShow(head, !head.classList.contains("tocOpen")); fnSave(); }
function fnCollapseAll() { var h = fnHeads(); for (var i = 0; i < h.length; i++) fnShow(h[i], false); fnSave(); }
function fnExpandAll() { var h = fnHeads(); for (var i = 0; i < h.length; i++) fnShow(h[i], true); fnSave(); }
function fnKey() { return "zolmark-report:" + location.pathname; }
function fnSave() {
  var open = [], h = fnHeads();
  for (var i = 0; i < h.length; i++) if (h[i].classList.contains("tocOpen")) open.push(i);
  try { window.localStorage.setItem(fnKey(), open.join(",")); } catch (e) {}
}
function fnLoad() {
  var saved = null, h = fnHeads();
  try { saved = window.localStorage.getItem(fnKey()); } catch (e) {}
  var open = saved ? saved.split(",") : [];
  for (var i = 0; i < h.length; i++) fnShow(h[i], open.indexOf(String(i)) >= 0);
}
</SCRIPT>
)HTML";

constexpr std::string_view kHead = R"HTML(<HTML>
<HEAD>
<meta http-equiv="Content-Type" content="text/html; charset=iso-8859-1">
<meta name="GENERATOR" content="%GENERATOR%">
<TITLE>%TITLE%</TITLE>
)HTML";

constexpr std::string_view kContentsBody = R"HTML(</HEAD>
<BODY>
<H1>%TITLE%</H1>
%BODY%
)HTML";

constexpr std::string_view kHeaderBody = R"HTML(</HEAD>
<BODY>
)HTML";

constexpr std::string_view kSummaryBody = R"HTML(</HEAD>
<BODY onload="fnLoad()">
)HTML";

std::string Generator() {
  return std::string(kAppTitle) + " " + std::to_string(kAppMajor) + "." +
         std::to_string(kAppMinor) + "." + std::to_string(kAppRevision);
}

std::string WithCrLf(std::string_view text) {
  std::string out;
  out.reserve(text.size() + text.size() / 30);
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

}  // namespace

std::string LoadResMultiline(std::string_view name, std::string_view title) {
  std::string page;
  if (name == kTemplateContents) {
    page = std::string(kHead) + std::string(kStyle) + std::string(kContentsBody) +
           "<DIV CLASS=\"reportFooter\">%FOOTER%</DIV>\n";
  } else if (name == kTemplateHeader) {
    page = std::string(kHead) + std::string(kStyle) + std::string(kHeaderBody);
  } else if (name == kTemplateSummary) {
    page =
        std::string(kHead) + std::string(kStyle) + std::string(kScript) + std::string(kSummaryBody);
  } else {
    return {};
  }
  page = WithCrLf(page);
  // The title goes in last, so that a title holding a placeholder's text stays as it is.
  page = Replace(page, "%GENERATOR%", Generator());
  page = Replace(page, "%FOOTER%", ReportFooter());
  return Replace(page, "%TITLE%", title);
}

std::string ReportFooter() {
  return "Report written by " + Generator();
}

std::string SectionHead(std::string_view title) {
  return Replace(
      R"HTML(<DIV CLASS="tocHead" onclick="fnFlash(this)" BORDER="0">TITLE</DIV> <P CLASS="tocItemHide">)HTML",
      "TITLE", title);
}

std::string_view MoreGifHex() {
  return "4749463839610B000B00800000FFFFFF3333332C000000000B000B000002168C8F06CBACDDDE0A91BA3A518E"
         "F83A0B6D6146C4C702003B";
}

std::string MoreGifBytes() {
  const std::string_view hex = MoreGifHex();
  std::string bytes;
  bytes.reserve(hex.size() / 2);
  const auto nibble = [](char c) { return c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10; };
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes += static_cast<char>(nibble(hex[i]) * 16 + nibble(hex[i + 1]));
  }
  return bytes;
}

}  // namespace zol
