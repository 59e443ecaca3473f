#pragma once

// A small session with every value set by hand, so that each cell of the
// grids can be checked against figures worked out on paper.
//
// Project "Test" (critical code in Main):
//   Module1 (standard): Main (critical; lines 1, 2, 3 = exit), Helper (4, 5 = exit),
//                       Unused (6, 7 = exit; never called)
//   Form1 (form):       Form_Load (8, 9 = exit), OldCode (dead; 10, 11 = exit)
//   Empty (class):      no procedures
//
// Procedures: Main 3 hits, 0.1234564 s (child 0.5); Helper 10 hits,
// 0.0000015 s (child 0.00002); Form_Load 1 hit, 2.5 s (child 3). Lines: 1 and
// 3 hit 3 times, 2 never; 4 and 5 hit 10 times; 8 and 9 once.

#include <cstdint>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol::testing {

struct GridFixture {
  Workspace ws;
  std::int32_t cp = 0;
  std::int32_t cs = 0;

  GridFixture();
  // The fixture's session, with the module and procedure given.
  zol::Selection Select(Measure measure, std::int32_t module = 0, std::int32_t procedure = 0) const;
};

// Module and procedure IDs of the fixture.
inline constexpr std::int32_t kModule1 = 1;
inline constexpr std::int32_t kForm1 = 2;
inline constexpr std::int32_t kEmptyModule = 3;
inline constexpr std::int32_t kMain = 1;
inline constexpr std::int32_t kHelper = 2;
inline constexpr std::int32_t kUnused = 3;
inline constexpr std::int32_t kFormLoad = 4;
inline constexpr std::int32_t kOldCode = 5;

}  // namespace zol::testing
