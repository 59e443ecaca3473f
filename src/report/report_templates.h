#pragma once

// The static parts of a report's pages: the page heads with their style sheet
// and the scripts of the collapsible sections, and the plus sign that marks a
// section's title.

#include <string>
#include <string_view>

namespace zol {

// The contents page: head, style, a title, "%BODY%" where the session tables
// go, and the footer; the caller closes it with HtmlWriteEnd.
inline constexpr std::string_view kTemplateContents = "GARDE";
// A plain page of the report (the source code contents) up to its BODY tag.
inline constexpr std::string_view kTemplateHeader = "HEADER";
// The summary page up to its BODY tag, with the scripts fnFlash,
// fnCollapseAll, fnExpandAll, fnSave and fnLoad.
inline constexpr std::string_view kTemplateSummary = "SUMMARY";

// The template `name` with "%TITLE%" replaced by `title` (already HTML text)
// and the program's name and version filled in. Lines end in CR LF. An
// unknown name gives an empty text.
std::string LoadResMultiline(std::string_view name, std::string_view title);

// The line at the foot of every page, naming this program and its version.
std::string ReportFooter();

// The opening of a collapsible section, "TITLE" replaced by `title`.
std::string SectionHead(std::string_view title);

// "more.gif": the 11 by 11 two-colour plus sign of the section titles, 55
// bytes beginning with "GIF89a", made from its hexadecimal text.
std::string MoreGifBytes();
// The hexadecimal text itself (110 characters).
std::string_view MoreGifHex();

}  // namespace zol
