#pragma once

// Path texts. Most paths this program meets were written on Windows
// ("C:\Proj\Module1.bas") and stored in projects, logs and session files; others
// are native Linux paths. These routines work on the text alone and take both
// "\" and "/" as a folder separator, the last of either counting.

#include <string>

#include "base/vbarray.h"

namespace zol {

bool IsPathSeparator(char c);

// The text behind the last separator; the whole path when there is none.
std::string GetFileName(const std::string& FilePath);

// GetFileName without its last "." and what follows; the name itself when it
// holds no ".".
std::string GetFileBody(const std::string& FilePath);

// The text before the last separator, without it; empty when there is none.
std::string GetPath(const std::string& FilePath);

// The folders that lead down to `fileName`, each with all its parents and its
// trailing separator, from the root down: "C:\a\b\f.txt" gives "C:\", "C:\a\",
// "C:\a\b\"; "\\srv\share\f" gives "\\srv\", "\\srv\share\"; "/home/u/f" gives
// "/", "/home/", "/home/u/". A path that is not rooted gives one element: empty,
// or the drive ("C:" for "C:f").
Array1<std::string> GetParseDir(const std::string& fileName);

// `relPath` taken relative to the folder `refPath`, which must be absolute and
// end in a separator. Every "..\" (or "../") in `relPath` climbs one folder and
// the first 3 characters per climb are cut from `relPath`:
// "..\..\x\y.frm" against "C:\a\b\c\" gives "C:\a\x\y.frm". Throws BoundsError
// when `relPath` climbs above the root of `refPath`.
std::string ToAbsolutePath(const std::string& relPath, const std::string& refPath);

// The path with every "\" turned into "/", for the system's file calls.
std::string ToNativePath(const std::string& path);

// `folder` and `name` joined by exactly one "/" (just `name` when `folder` is
// empty).
std::string JoinPath(const std::string& folder, const std::string& name);

}  // namespace zol
