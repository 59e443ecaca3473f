#pragma once

// What one logical line of an instrumented module is to the scanner: a probe,
// a marker, a line the instrumenter added, a hidden attribute, or code.

#include <cstdint>
#include <string>
#include <string_view>

namespace zol {

enum class ScanLineKind {
  AddedLine,      // ends in 'ID
  LineProbe,      // zolExecuteLine N
  ExitProbe,      // zolProcOut
  EntryProbe,     // zolProcIn N
  RewrittenLine,  // 'zolLine N:original
  UntimedEntry,   // 'zolProcIn N
  Attribute,      // Attribute ...
  Code,           // anything else
};

struct ScanLine {
  ScanLineKind kind = ScanLineKind::Code;
  std::int32_t number = 0;  // the ID of a probe or marker
  bool behind = false;      // a line probe that ends in 'B
  bool critical = false;    // 'C on an entry
  bool dead = false;        // 'D on an entry
};

// Classifies a logical line from its first physical line and its joined,
// trimmed text. Probe prefixes compare exactly, over exactly their length, so
// that the number starts right behind them; numbers are read as leading
// numbers. Throws std::invalid_argument for a 'zolLine marker without its
// ":" and std::range_error for a number beyond 32 bits.
ScanLine ClassifyScanLine(std::string_view firstLine, std::string_view sourceLine,
                          std::string_view appPrefix);

// The original text of a 'zolLine marker: what follows its first ":", line
// breaks taken off both ends.
std::string RewrittenOriginal(std::string_view originalLine);

}  // namespace zol
