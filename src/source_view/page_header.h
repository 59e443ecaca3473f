#pragma once

// The head of a source page: HTML head, the three style blocks of the page
// font between two markers, and the BODY tag. The markers let a page on
// display take a new font without being built again.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "session/workspace.h"

namespace zol {

inline constexpr std::string_view kBeginStyleMarker = "<!-- BEGIN STYLE -->";
inline constexpr std::string_view kEndStyleMarker = "<!-- END STYLE -->";

// The PRE, TD and VAR style blocks with the page font of `ws` filled in, each
// line closed by CR LF.
std::string PageStyleBlocks(const Workspace& ws);

// Everything of the page up to and including the BODY tag, titled with the
// session's name.
std::string GetHeaderCode(const Workspace& ws, std::int32_t sessionId);

// `page` with the text between the style markers replaced by the blocks of the
// current font; nothing when either marker is missing.
std::optional<std::string> RestylePage(std::string_view page, const Workspace& ws);

}  // namespace zol
