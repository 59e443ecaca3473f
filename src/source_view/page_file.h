#pragma once

// The source view's page file: built whole, written to one reused file in the
// run's folder, and shown by whatever browser the front end offers.

#include <cstdint>
#include <string>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// What the source view needs of the control that shows its pages.
class PageBrowser {
 public:
  virtual ~PageBrowser() = default;
  virtual void Navigate(const std::string& file) = 0;
};

// A whole page: head, body of GetHtmlCode and the closing tags, in the columns
// and colours of `measure`.
std::string BuildSourcePage(const Workspace& ws, std::int32_t session, std::int32_t& moduleId,
                            std::int32_t& procedureId, Measure measure, bool withMenu);

// The view's page file: RtfPath and "code.htm".
std::string SourcePageFile(const Workspace& ws);

// Writes the linked page of the module or procedure for `measure` into it,
// and shows it. Throws FileError when it can't be written.
void ShowSourcePage(Workspace& ws, std::int32_t session, std::int32_t& moduleId,
                    std::int32_t& procedureId, Measure measure, PageBrowser& browser);

// Gives the page on display the current page font without building it again,
// and shows it anew. A page without its style markers is left alone.
void UpdateHtml(const Workspace& ws, PageBrowser& browser);

}  // namespace zol
