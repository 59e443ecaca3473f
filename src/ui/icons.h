#pragma once

// The program's own icons, drawn in code: the image keys of the project tree
// and the title strip ("SESSION", "GROUP", "MERGE", "COMPARE", "TYPE" and a
// module type, "PROC" and a procedure type, "GRAPHMORE") and the toolbar's
// buttons by their keys. Each is drawn on a 16 by 16 grid and rendered at
// the sizes a view asks for, so it stays sharp at any scale.

#include <QIcon>
#include <QStringList>
#include <string>

namespace zol {

// The icon of `key`; an empty icon for a key without a drawing.
QIcon zolIcon(const std::string& key);

// Whether `key` has a drawing of its own.
bool hasZolIcon(const std::string& key);

// Every key with a drawing, for the icon sheet.
QStringList zolIconKeys();

}  // namespace zol
