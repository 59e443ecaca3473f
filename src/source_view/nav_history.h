#pragma once

// Back and forward through the places the user has seen, as a browser does:
// a place is a whole selection (session, module, procedure, line, tab and
// measure). The window records a place after each change of view that the
// user made; a step back or forward hands a recorded place back, which the
// window shows without recording it again.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "session/selection.h"

namespace zol {

// The toolbar button of a measure: "TOTALTIME", "AVERAGETIME",
// "CHILDTOTALTIME", "CHILDAVERAGETIME", "COVERAGE".
std::string MeasureButtonKey(Measure measure);

// What the history asks of the window: the state of its two buttons.
class NavView {
 public:
  virtual ~NavView() = default;
  virtual void EnableNavButtons(bool back, bool forward) = 0;
};

class NavHistory {
 public:
  static constexpr int kPlaces = 20;

  // Records `place` behind the one on display and drops the places ahead;
  // past 20 the oldest goes.
  void NewNav(const Selection& place, NavView& view);

  // Moves one place back or forward and returns it for the window to show;
  // nothing (and no move) when there is no such place.
  std::optional<Selection> BrowseBack(NavView& view);
  std::optional<Selection> BrowseFwd(NavView& view);

  void UpdateNavToolbar(NavView& view) const;
  bool CanGoBack() const;
  bool CanGoForward() const;

  // Forgets every place (the current session was removed).
  void Clear();

  // The place on display, 1 to 20; 0 before the first.
  int IndexNav() const { return IndexNav_; }
  // Place `i` (1 to 20), nothing if it was never filled.
  const std::optional<Selection>& Place(int i) const;

 private:
  bool Filled(int i) const;
  std::optional<Selection> StepTo(int index, NavView& view);

  std::array<std::optional<Selection>, kPlaces + 1> Nav_;  // index 0 unused
  int IndexNav_ = 0;
};

}  // namespace zol
