#include "source_view/page_file.h"

#include "base/concat_string.h"
#include "base/files.h"
#include "source_view/html_writer.h"
#include "source_view/page_header.h"
#include "source_view/source_page.h"

namespace zol {

namespace {

// The page's columns and colours are those of its own measure.
void WriteSourcePage(CConcatString& cc, const Workspace& ws, std::int32_t session,
                     std::int32_t& module, std::int32_t& procedure, Measure measure,
                     bool withMenu) {
  cc.SetValue(GetHeaderCode(ws, session));
  cc.Append(GetHtmlCode(ws, session, module, procedure, IndexOf(measure), measure, withMenu));
  HtmlWriteEnd(cc);
}

}  // namespace

std::string BuildSourcePage(const Workspace& ws, std::int32_t session, std::int32_t& module,
                            std::int32_t& procedure, Measure measure, bool withMenu) {
  CConcatString cc;
  WriteSourcePage(cc, ws, session, module, procedure, measure, withMenu);
  return cc.Value();
}

std::string SourcePageFile(const Workspace& ws) {
  return ws.RtfPath + "code.htm";
}

void ShowSourcePage(Workspace& ws, std::int32_t session, std::int32_t& module,
                    std::int32_t& procedure, Measure measure, PageBrowser& browser) {
  const std::string file = SourcePageFile(ws);
  CConcatString cc;
  WriteSourcePage(cc, ws, session, module, procedure, measure, true);
  HtmlOutputTofile(cc, file);
  browser.Navigate(file);
}

void UpdateHtml(const Workspace& ws, PageBrowser& browser) {
  const std::string file = SourcePageFile(ws);
  const std::optional<std::string> page = RestylePage(LoadFile(file), ws);
  if (!page) return;
  CConcatString cc;
  cc.SetValue(*page);
  HtmlOutputTofile(cc, file);
  browser.Navigate(file);
}

}  // namespace zol
