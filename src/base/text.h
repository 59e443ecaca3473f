#pragma once

// Text routines with the conventions of the profiled language, because the
// sources, logs and settings this program reads are stated in those terms
// (column and line positions from 1): positions are 1-based, 0 means "not found", and a Mid/Left/
// Right past the end simply yields less text. Texts are single-byte
// (Windows-1252) and kept as bytes. Positions below 1 are taken as 1 rather
// than failing.
//
// Case-insensitive comparison (CompareMethod::Text) and LCase/UCase fold only
// the ASCII letters A-Z / a-z: the program compares keywords, file names and
// extensions with them, never accented words.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zol {

enum class CompareMethod { Binary = 0, Text = 1 };

// Position of `find` in `text` at or after `start`, 0 if absent. An empty
// `find` gives `start` (if start <= length + 1); an empty `text` gives 0.
int InStr(int start, std::string_view text, std::string_view find,
          CompareMethod compare = CompareMethod::Binary);
int InStr(std::string_view text, std::string_view find);

// Position of the last `find` lying wholly within the first `start`
// characters (start -1: the whole text); 0 if absent or start beyond the end.
int InStrRev(std::string_view text, std::string_view find, int start = -1,
             CompareMethod compare = CompareMethod::Binary);

// `length` characters from `start` (1-based); length -1: to the end.
std::string Mid(std::string_view s, int start, int length = -1);
std::string Left(std::string_view s, int n);
std::string Right(std::string_view s, int n);
std::string LCase(std::string_view s);
std::string UCase(std::string_view s);
// Blanks (spaces only) removed at the left, right or both ends.
std::string LTrim(std::string_view s);
std::string RTrim(std::string_view s);
std::string Trim(std::string_view s);
// Every occurrence of `find`, left to right without overlap; an empty `find`
// leaves `s` as it is.
std::string Replace(std::string_view s, std::string_view find, std::string_view repl);
// Parts between the delimiters. An empty text gives no parts at all; an empty
// delimiter gives the whole text as one part.
std::vector<std::string> Split(std::string_view s, std::string_view delim);
// A text read from a file, for a message: at most `max` characters, then "..."
// when it was longer. A damaged file can hold megabytes where a number should
// be, and the message must stay readable.
std::string Abbreviated(std::string_view text, std::size_t max = 40);

// Case-sensitive or ASCII-case-insensitive equality.
bool TextEquals(std::string_view a, std::string_view b,
                CompareMethod compare = CompareMethod::Text);

// The leading number of a text: blanks, tabs and line feeds are ignored
// wherever they stand (so "1 2" reads 12), then an optional sign, digits, an
// optional "." and digits, an optional exponent (E or D). Anything else ends
// the number; a text that does not begin with one reads 0. Throws
// std::range_error for a number beyond the range of a double.
double Val(std::string_view text);

// A whole text as a number, with "." or "," as decimal mark (logs and cells
// written under any locale), blanks allowed around it, optional sign and
// exponent. ParseNumberText gives nothing for anything else; CDblText throws
// std::invalid_argument naming the text.
std::optional<double> ParseNumberText(std::string_view text);
double CDblText(std::string_view text);

// Scans `text` from `start` (1-based) for the next word; sets `word` and
// returns its position, or 0 and an empty `word` if there is none. Word
// characters are 0-9, A-Z, "_", a-z and the letters 192-214, 216-246, 248-255.
int Parse(int start, std::string_view text, std::string& word);

// `s` without any repeats of `t` at both ends (TrimEx) or at the right end.
std::string TrimEx(std::string_view s, std::string_view t);
std::string RTrimEx(std::string_view s, std::string_view t);

// `s` repeated `n` times.
std::string StringEx(int n, std::string_view s);

// Occurrences of `find` from `start`; overlapping ones count ("aaa" holds
// "aa" twice). An empty `find` counts 0.
int StrCount(std::string_view text, std::string_view find, int start = 1,
             CompareMethod compare = CompareMethod::Binary);

// `s` cut to its first `n` characters and "..." if it is longer than n + 3.
std::string TruncateString(std::string_view s, int n);

// The line that starts at `pos` (1-based), up to the next CR LF. `pos` moves
// behind the CR LF, or to 0 when there is none (the last line); with `pos` 0
// the result is empty. A text ending in CR LF so yields a last, empty line.
std::string GetLine(int& pos, std::string_view text);

}  // namespace zol
