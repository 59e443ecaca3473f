#pragma once

// A scanned project as text for a reader: its modules, procedures with their
// flags, and probed lines with the procedure and position they belong to.
// Texts are converted from Windows-1252 to UTF-8 for the terminal.

#include <string>

#include "session/records.h"

namespace zol {

// "Standard", "Class", "Form", "PropertyPage", "UserControl",
// "UserDocument", "Designer", or the code as a number.
std::string ModuleTypeWord(std::int32_t type);

// "Function", "Sub", "Property", or the code as a number.
std::string ProcedureTypeWord(std::int32_t type);

std::string FormatProjectScan(const Project& p);

}  // namespace zol
