#pragma once

// The body of a source page: one module, or one procedure of it, as an HTML
// table with a narrow numeric column per selected measure and one column of
// source text, each statement coloured by how slow, or how covered, it was.
// The same text serves the source view (with links) and the source report
// (without).
//
// The page is built from the cleaned source text that the project scan left
// beside the session (one physical line per text line) and the module's
// RTFLine table, which says what each of those lines stands for.

#include <cstdint>
#include <string>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

// The table and the legend of module `moduleId` of session `sessionId`, or of
// its procedure `procedureId` alone (0: the whole module). `infoType` picks the
// columns and colour scheme among OptionsHtml (a report has a slot of its own);
// `measure` colours the rows and names the legend. With `withMenu` every
// statement links to "|module|procedure|line". A module or procedure beyond
// the project's counts shows the project's first procedure, and `moduleId` and
// `procedureId` say so on return. A missing side file reads as empty. Throws
// BoundsError for indices that the tables don't hold.
std::string GetHtmlCode(const Workspace& ws, std::int32_t sessionId, std::int32_t& moduleId,
                        std::int32_t& procedureId, std::int32_t infoType, Measure measure,
                        bool withMenu);

}  // namespace zol
