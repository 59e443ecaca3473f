#pragma once

// A table as aligned text for the console: the columns in the order they are
// shown, each as wide as its widest text, right-aligned columns to the right.

#include <string>

#include "grid/table.h"

namespace zol {

// One line of headers, then one line per row, each ending in "\n"; columns
// are separated by two blanks and trailing blanks are cut. Texts stay bytes
// of the code page.
std::string TableAsText(const Table& table);

}  // namespace zol
