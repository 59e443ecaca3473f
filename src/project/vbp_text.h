#pragma once

// Reading the texts of a project: the module lines of a .vbp file, and a
// module's name with the part of its source that the IDE shows.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zol {

struct VbpModule {
  std::string FileName;   // as the .vbp gives it, often relative: "..\Common\Util.bas"
  std::int32_t Type = 0;  // module type code
};

// The modules of a project file, in the order of their lines. A module line
// starts (behind blanks, in any case) with "Class=", "Form=", "Module=",
// "Designer=", "UserDocument=", "UserControl=" or "PropertyPage="; the file
// name is the trimmed text behind the later of its first "=" and first ";".
// Lines that mention the instrumenter's own modules ("zolProfile",
// "zolDebugger") are left out.
std::vector<VbpModule> ReadVbpModules(std::string_view vbpText);

struct ModuleSource {
  std::string Name;  // from "Attribute VB_Name = "...", else the file's body
  std::string text;  // what follows the name attribute's line; the whole source without one
};

// Splits a module's source at its name attribute. Lines before it (a form's
// or class's description block) are no part of the shown text.
ModuleSource SplitModuleSource(std::string_view source, const std::string& fileName);

// The number of line breaks in a text (LF, alone or after CR).
int CountLineBreaks(std::string_view text);

}  // namespace zol
