#pragma once

// Number texts of the grids, pages and exports. Users compare these files
// byte for byte with the ones they saved from earlier runs, and later passes
// read cell texts back as numbers, so the formatting rules are kept exactly:
//
// - The value is first taken to 15 significant decimal digits, and that
//   decimal form is rounded half away from zero: Format(17.65, "0.0") is
//   "17.7" although the double lies just below 17.65.
// - The decimal mark is always ".", whatever the locale, so files never
//   depend on the machine that wrote them.
//
// Patterns: digit placeholders "0" (always a digit) and "#" (a digit only
// where the number has one), one "." as decimal mark, "%" (multiplies by 100
// and stands where written), any other character as a literal, a character
// behind "\" or text in double quotes as a literal too. Literals among the
// integer placeholders are written even left of the first digit, so
// Format(1234567, "### ### ### ### ###") is "  1 234 567" (callers trim).
// An integer part wider than its placeholders puts the extra digits at the
// leftmost placeholder; a pattern's "." is written even with nothing behind
// it (Format(4, "0.") is "4."). A negative value keeps its "-" even when it
// rounds to zero: Format(-0.01, "0.0") is "-0.0". Sections (";"), thousands
// commas and exponents are not patterns this program uses; "," and "E" are
// plain literals here.

#include <string>
#include <string_view>

namespace zol {

std::string Format(double value, std::string_view pattern);

// The plain text form of a number (what string conversion gives): up to 15
// significant digits, no trailing zeros, exponent form outside 1e-5 .. 1e15:
// 0.5 -> "0.5", 1234567 -> "1234567", 0.00001 -> "1E-05", 1e15 -> "1E+15".
std::string CStr(double value);

}  // namespace zol
