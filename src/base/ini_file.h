#pragma once

// Settings files in the private-profile format of the Windows world:
//
//   [Section]
//   Key=Value
//   ; comment
//
// Section and key names compare as text (case-insensitively), blanks around
// names and values don't count, and the first section and the first key of a
// name win. Lines that are neither a section nor "name=value" are kept but never
// read. A write changes only the line of its key: other sections, keys,
// comments, blank lines and line ends stay as they were. New lines take the
// line end of the file's first line, CRLF in a new file. Files are replaced
// whole through a temporary file, so a reader never sees half a file.
//
// Reads parse the file afresh on each call; that is quick for settings files of
// a few kilobytes, read a few times a second.

#include <string>

namespace zol {

// The longest value a read returns, in characters.
inline constexpr std::size_t kMaxProfileString = 32767;

// The value of key `lpKeyName` in section `lpApplicationName` of `lpFileName`,
// blanks around it trimmed and one pair of enclosing double or single quotes
// removed. `lpDefault`, with trailing blanks trimmed, when the file, section or
// key is missing or the file can't be read. Cut to kMaxProfileString.
std::string VBGetPrivateProfileString(const std::string& lpApplicationName,
                                      const std::string& lpKeyName, const std::string& lpDefault,
                                      const std::string& lpFileName);

// Sets the key to `lpValue` ("key=" for an empty value). An existing key keeps
// its place and the spelling of its name; a new key goes behind the last
// non-blank line of its section; a new section goes to the end of the file,
// after a blank line; the file is made when missing. Throws FileError, and
// std::invalid_argument for an empty key name.
void VBWritePrivateProfileString(const std::string& lpApplicationName, const std::string& lpKeyName,
                                 const std::string& lpValue, const std::string& lpFileName);

// Removes the line of the key, if the file, section and key exist. Throws
// FileError.
void VBDeletePrivateProfileKey(const std::string& lpApplicationName, const std::string& lpKeyName,
                               const std::string& lpFileName);

// A yes/no setting: "True" or "False" in any case, or a number (non-zero is
// yes); `fallback` when the key is missing, empty or neither.
bool ReadSettingFlag(const std::string& section, const std::string& key, bool fallback,
                     const std::string& file);

}  // namespace zol
