#pragma once

// Finding on a Linux disk the files that Windows paths name. Projects, logs and
// session files hold paths such as "C:\Proj\Module1.bas", "..\Shared\util.bas"
// or "Forms\Main.frm", written on a system whose file names ignore case. Every
// lookup of an existing file goes through ResolveExistingFile.
//
// Search order. The path's "\" are read as "/". Candidates, in this order:
//   1. A relative path ("Forms\Main.frm", "..\Shared\util.bas"): the path
//      beside `referenceFolder`; only without a reference folder is it taken
//      relative to the working folder.
//   2. An absolute Linux path ("/home/u/Proj/a.bas"): the path as given.
//   3. A path with a drive ("C:\Proj\Module1.bas"): the part behind the drive
//      as an absolute path ("/Proj/Module1.bas"); a drive-relative "C:a.bas"
//      is read as the relative path "a.bas".
//   4. A UNC path ("\\srv\share\f"): the path as given ("//srv/share/f").
//   5. For every absolute path of 2 to 4, when `referenceFolder` is given: its
//      tails beside `referenceFolder`, longest first and down to the file name
//      alone ("Proj/Module1.bas", then "Module1.bas"), for a project copied
//      away from the folder it was instrumented in.
// Each candidate is first tried exactly, all of them in order; then all of them
// again, in the same order, matching each path component case-insensitively
// against the directory listing ("." and ".." kept as they are). A component
// written in Windows-1252 also matches its UTF-8 spelling on disk. Where a
// folder holds several names that differ only in case, they are tried in byte
// order, going back to the next one when the rest of the path isn't found
// below the first.
//
// The result is the path of the file as found, with "." and ".." folded away
// when that still names the same file.

#include <optional>
#include <string>

namespace zol {

// The existing regular file (or link to one) that `path` names; nothing when
// no candidate exists. `referenceFolder` is a native folder, usually the folder
// of the file that held `path`; empty for none.
std::optional<std::string> ResolveExistingFile(const std::string& path,
                                               const std::string& referenceFolder = "");

// The same search for an existing folder.
std::optional<std::string> ResolveExistingFolder(const std::string& path,
                                                 const std::string& referenceFolder = "");

// Whether ResolveExistingFile finds the file.
bool FileExistResolved(const std::string& path, const std::string& referenceFolder = "");

}  // namespace zol
