#pragma once

// What changed between two runs: the rows of a base session and a new one
// matched by module and procedure name as the heterogeneous merge matches
// them, and lines by their procedure and their place among its lines, so runs
// of different versions of the code still line up. Each row carries the base
// and new values of one figure, their difference and ratio, and a state in
// which a difference counts only when it clears both noise thresholds.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "session/selection.h"
#include "session/workspace.h"

namespace zol {

enum class DiffLevel { Module, Procedure, Line };

// The figure compared: one of the measures, or the hit counts.
struct DiffQuantity {
  Measure measure = Measure::Total;
  bool hits = false;
};

// Modules have no averages, child times or hit counts; lines have no
// coverage. False when `level` has no value for `quantity`.
bool DiffAvailable(DiffLevel level, DiffQuantity quantity);

struct DiffOptions {
  DiffLevel level = DiffLevel::Procedure;
  DiffQuantity quantity;
  double relative = 0.10;   // fraction of the base value
  double absolute = 0.001;  // seconds; times only
};

// Worse is slower for times, more hits, or lower coverage.
enum class DiffState { Unchanged, Worse, Better, New, Gone };

// The noise rule on two values that both exist: Unchanged unless the change
// clears the relative threshold and, for times, the absolute one too.
DiffState DiffStateOf(double base, double next, const DiffOptions& options);

struct DiffRow {
  std::string module;
  std::string procedure;  // empty on module rows
  std::int32_t line = 0;  // place of a line among its procedure's lines, from 1
  std::string text;       // a line's source text
  std::optional<double> base;
  std::optional<double> next;
  double difference = 0;        // next - base, a missing side counting as 0
  std::optional<double> ratio;  // next / base, when both exist and base isn't 0
  DiffState state = DiffState::Unchanged;
};

// The rows of the two sessions, regressions first, then new rows, gains, gone
// rows and unchanged ones, each part by the size of the change. Both sessions
// must be loaded; either may be a merged session.
std::vector<DiffRow> DiffRuns(const Workspace& ws, std::int32_t base, std::int32_t next,
                              const DiffOptions& options);

// "slower"/"faster", "more"/"fewer" or "lower"/"higher" by the figure, and
// "new", "gone", "unchanged".
std::string_view StateName(DiffState state, DiffQuantity quantity);

// Whether any row is worse beyond the thresholds.
bool HasRegression(const std::vector<DiffRow>& rows);

}  // namespace zol
