#pragma once

// Finding the session files that users, settings files and project files
// name: paths written on Windows, logs that have become .pfd files since.

#include <optional>
#include <string>
#include <string_view>

namespace zol {

// `path` as ResolveExistingFile finds it (beside `referenceFolder` for a
// relative or Windows path), else the same with its last character changed
// to "d": a log that has already been turned into a session file; made
// absolute. Nothing when neither exists.
std::optional<std::string> FindSessionFile(const std::string& path,
                                           const std::string& referenceFolder = "");

// Both paths name one existing file (through links or other spellings).
bool SameFile(const std::string& a, const std::string& b);

// `s` ends in `suffix`, compared as text (any case).
bool EndsWithNoCase(std::string_view s, std::string_view suffix);

// `s` with its last character changed to "d" (".pfl" to ".pfd").
std::string WithLastCharD(std::string s);

}  // namespace zol
