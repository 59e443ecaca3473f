#pragma once

// Generated Visual Basic 6 source projects for the tests: a .vbp file and
// modules of every kind (.bas, .cls, .frm, .ctl, .pag, .dob, .dsr), written as
// the IDE writes them (Windows-1252, CR LF, a description block before the
// name attribute in forms and classes). A seed picks the shape: how many
// modules of each kind, their order in the .vbp, the procedures (subs,
// functions, property accessors, continued declarations) and their bodies
// (comments with ' and Rem, strings that hold keywords, Select Case, single-line
// Ifs with Exit, continued statements, error handlers, accented comments).
// The same seed always gives the same bytes.
//
// Layout below the root folder:
//   <Project>/<Project>.vbp     the project file
//   <Project>/Forms/...         some forms ("Form=Forms\frmMain.frm")
//   <Project>/...               the other modules
//   Common/...                  a shared module ("Module=Util; ..\Common\Util.bas"),
//                               written on disk in another case than the .vbp says
//                               for some seeds

#include <cstdint>
#include <string>
#include <vector>

namespace zol::fixture {

struct VbSourceFile {
  std::int32_t Type = 0;  // module type code
  std::string Name;       // its VB_Name
  std::string vbpPath;    // the path its .vbp line names: "..\Common\Util.bas"
  std::string diskPath;   // where it lies below the root folder: "Common/util.bas"
  std::string text;       // the file's bytes
};

struct VbProjectFiles {
  std::string Name;         // the project's name, also its file name body
  std::string vbpDiskPath;  // below the root folder: "Orders/Orders.vbp"
  std::string vbpText;
  std::vector<VbSourceFile> files;  // in the order of their .vbp lines
};

struct FixtureOptions {
  bool lfOnly = false;  // line ends LF alone instead of CR LF
};

VbProjectFiles GenerateVbProject(std::uint32_t seed, const FixtureOptions& options = {});

// Writes every file below `root` (folders made as needed) and returns the
// path of the .vbp file.
std::string WriteVbProject(const VbProjectFiles& project, const std::string& root);

}  // namespace zol::fixture
