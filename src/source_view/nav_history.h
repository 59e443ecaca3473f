#pragma once

// Back and forward through the places the user has seen, as a browser does:
// a place is a session, module, procedure, line, tab and measure. The window
// records a place after each change of view and restores one on "BACK" or
// "FWD"; while a place is restored no new one is recorded.

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "session/workspace.h"

namespace zol {

struct NavPlace {
  std::int32_t Session = 0;
  std::int32_t Module = 0;
  std::int32_t Procedure = 0;
  std::int32_t Line = 0;
  std::int32_t Tabs = 0;
  std::int32_t DisplayMode = 0;
  friend bool operator==(const NavPlace&, const NavPlace&) = default;
};

// cs, cMod, cPro, cLine, Active_tbsTab and DisplayInfoType.
NavPlace CurrentPlace(const Workspace& ws);

// The toolbar button of a measure: "TOTALTIME", "AVERAGETIME",
// "CHILDTOTALTIME", "CHILDAVERAGETIME", "COVERAGE"; empty for others.
std::string MeasureButtonKey(std::int32_t displayInfoType);

// What restoring a place asks of the window.
class NavView {
 public:
  virtual ~NavView() = default;
  // Brings the project tree to the node of the place.
  virtual void SelectTreeNode(const NavPlace& place) = 0;
  // Shows the measure's toolbar button pressed.
  virtual void PressMeasureButton(const std::string& key) = 0;
  // Selects the tab, which draws its page.
  virtual void SelectTab(std::int32_t tab) = 0;
  virtual void EnableNavButtons(bool back, bool forward) = 0;
};

class NavHistory {
 public:
  static constexpr int kPlaces = 20;

  // Records the present place behind the one on display and drops the
  // places ahead; past 20 the oldest goes. Does nothing while a place is
  // being restored.
  void NewNav(const Workspace& ws, NavView& view);

  // Moves one place back or forward if there is one; false otherwise.
  bool BrowseBack(Workspace& ws, NavView& view);
  bool BrowseFwd(Workspace& ws, NavView& view);

  // Restores a place: selection, measure and tab.
  void DisplayNav(Workspace& ws, const NavPlace& place, NavView& view);

  void UpdateNavToolbar(NavView& view) const;
  bool CanGoBack() const;
  bool CanGoForward() const;

  // Forgets every place (the current session was removed).
  void Clear();

  bool fDuringNav() const { return fDuringNav_; }
  // The place on display, 1 to 20; 0 before the first.
  int IndexNav() const { return IndexNav_; }
  // Place `i` (1 to 20), nothing if it was never filled.
  const std::optional<NavPlace>& Place(int i) const;

 private:
  bool Filled(int i) const;

  std::array<std::optional<NavPlace>, kPlaces + 1> Nav_;  // index 0 unused
  int IndexNav_ = 0;
  bool fDuringNav_ = false;
};

}  // namespace zol
