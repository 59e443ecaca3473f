#pragma once

// Modification times of files as dates: days since 30 December 1899, the
// form the project table keeps and compares.

#include <string>

namespace zol {

// The file's modification time in days (UTC); 0 when it can't be read.
double FileModificationDays(const std::string& path);

}  // namespace zol
