#pragma once

// Windows-1252 helpers. Texts in this program are the single-byte code page of
// the files it reads; names on a Linux disk are usually UTF-8. Comparing the
// two, and comparing names "as text" (case-insensitively, the way the settings
// files and Windows file names compare), needs these few routines.

#include <optional>
#include <string>
#include <string_view>

namespace zol {

// The lower-case form of one Windows-1252 character: A-Z, the accented capitals
// 0xC0-0xDE (but 0xD7, the multiplication sign) and the four capitals of the
// 0x80-0x9F block (S caron, OE, Z caron, Y diaeresis). Others are unchanged.
char LowerCase1252(char c);

// Equal when compared as text: ignoring the case of Windows-1252 letters.
bool EqualsNoCase1252(std::string_view a, std::string_view b);

// Windows-1252 text to UTF-8. The five undefined codes 0x81, 0x8D, 0x8F, 0x90
// and 0x9D map to the control characters of the same number.
std::string Cp1252ToUtf8(std::string_view text);

// UTF-8 text to Windows-1252, or nothing when the text is not valid UTF-8 or
// holds a character that the code page lacks.
std::optional<std::string> Utf8ToCp1252(std::string_view text);

}  // namespace zol
