#pragma once

// texts at the Qt boundary. The core keeps the single-byte code page of the
// files it reads (Windows-1252); Qt speaks Unicode. Paths are another matter:
// a path names a file on this disk, so it stays in the system's encoding.

#include <QString>
#include <string>
#include <string_view>

namespace zol {

// A Windows-1252 text of the core for display.
QString Q(std::string_view cp1252);

// A text typed by the user, for the core. Characters that the code page lacks
// become "?".
std::string toCp1252(const QString& text);

// A text shown as a tooltip exactly as it stands. Qt reads a tooltip that
// looks like markup ("If a<b Then") as rich text; this one never is.
QString plainToolTip(const QString& text);

// A text for the places that always read rich text (chart titles, axis
// labels, legends): its "<", "&" and ">" shown as themselves, line breaks
// kept.
QString plainForRichText(const QString& text);

// A path of the core for display and for Qt's file calls, and back.
QString QPath(const std::string& path);
std::string fromQPath(const QString& path);

}  // namespace zol
