#pragma once

// A small session over a one-module project, built by hand with the side file
// a scan would leave: a procedure with a statement over three physical lines,
// an indented comment, an Exit Sub and an unhit line; a dead procedure; and a
// function. Line by line (RTFLine type, ID):
//
//    1 Attribute VB_Name = "Module1"   0
//    2 ' Demo                           0
//    3 Public Sub Main()                1 P1
//    4     ' counts                     0
//    5     total = Add(1, _             2 L1 (goes on over 6 and 7)
//    6         2, _                     0
//    7         3)                       0
//    8     If total > 0 Then            2 L2
//    9         Exit Sub                 5 L3
//   10     End If                       0
//   11     total = 0                    2 L4 (not hit)
//   12 End Sub                          5 L5 (not hit)
//   13 Private Sub Unused()             1 P2 (dead)
//   14                                  0
//   15     Beep                         0
//   16 End Sub                          0
//   17 Function Twice(x)                1 P3
//   18     Twice = x * 2                2 L6
//   19 End Function                     5 L7
//   20                                  0 (behind the last line end)

#include <string>

#include "base/scoped_temp_dir.h"
#include "session/workspace.h"

namespace zol::testing {

struct PageFixture {
  PageFixture();

  ScopedTempDir dir;
  Workspace ws;
  static constexpr std::int32_t kSession = 1;
  static constexpr std::int32_t kProject = 1;
  static constexpr std::int32_t kModule = 1;
};

// `text` with every "\n" turned into CR LF, so that expected pages read as
// written.
std::string Crlf(std::string_view text);

}  // namespace zol::testing
