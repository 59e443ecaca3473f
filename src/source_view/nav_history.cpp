#include "source_view/nav_history.h"

#include <stdexcept>

namespace zol {

NavPlace CurrentPlace(const Workspace& ws) {
  return NavPlace{ws.cs, ws.cMod, ws.cPro, ws.cLine, ws.Active_tbsTab, ws.DisplayInfoType};
}

std::string MeasureButtonKey(std::int32_t displayInfoType) {
  switch (displayInfoType) {
    case 0:
      return "TOTALTIME";
    case 1:
      return "AVERAGETIME";
    case 2:
      return "CHILDTOTALTIME";
    case 3:
      return "CHILDAVERAGETIME";
    case 4:
      return "COVERAGE";
    default:
      return "";
  }
}

void NavHistory::NewNav(const Workspace& ws, NavView& view) {
  if (fDuringNav_) return;
  if (IndexNav_ == kPlaces) {
    for (int i = 2; i <= kPlaces; ++i)
      Nav_[static_cast<std::size_t>(i - 1)] = Nav_[static_cast<std::size_t>(i)];
  } else {
    ++IndexNav_;
  }
  Nav_[static_cast<std::size_t>(IndexNav_)] = CurrentPlace(ws);
  for (int i = IndexNav_ + 1; i <= kPlaces; ++i) Nav_[static_cast<std::size_t>(i)].reset();
  UpdateNavToolbar(view);
}

bool NavHistory::BrowseBack(Workspace& ws, NavView& view) {
  if (!Filled(IndexNav_ - 1)) return false;
  --IndexNav_;
  DisplayNav(ws, *Nav_[static_cast<std::size_t>(IndexNav_)], view);
  return true;
}

bool NavHistory::BrowseFwd(Workspace& ws, NavView& view) {
  if (!Filled(IndexNav_ + 1)) return false;
  ++IndexNav_;
  DisplayNav(ws, *Nav_[static_cast<std::size_t>(IndexNav_)], view);
  return true;
}

void NavHistory::DisplayNav(Workspace& ws, const NavPlace& place, NavView& view) {
  // The flag must fall again even when the window fails half way, or no place
  // would ever be recorded again.
  struct DuringNav {
    bool& flag;
    explicit DuringNav(bool& f) : flag(f) { flag = true; }
    ~DuringNav() { flag = false; }
  };
  {
    DuringNav during(fDuringNav_);
    ws.cs = place.Session;
    ws.cMod = place.Module;
    ws.cPro = place.Procedure;
    ws.cLine = place.Line;
    view.SelectTreeNode(place);
    ws.DisplayInfoType = place.DisplayMode;
    view.PressMeasureButton(MeasureButtonKey(place.DisplayMode));
    ws.Active_tbsTab = place.Tabs;
    view.SelectTab(place.Tabs);
  }
  UpdateNavToolbar(view);
}

void NavHistory::UpdateNavToolbar(NavView& view) const {
  view.EnableNavButtons(CanGoBack(), CanGoForward());
}

bool NavHistory::CanGoBack() const {
  return IndexNav_ > 1 && Filled(IndexNav_ - 1);
}

bool NavHistory::CanGoForward() const {
  return IndexNav_ < kPlaces && Filled(IndexNav_ + 1);
}

void NavHistory::Clear() {
  for (auto& p : Nav_) p.reset();
  IndexNav_ = 0;
}

const std::optional<NavPlace>& NavHistory::Place(int i) const {
  if (i < 1 || i > kPlaces) {
    throw std::out_of_range("navigation place " + std::to_string(i) + " out of range 1..20");
  }
  return Nav_[static_cast<std::size_t>(i)];
}

bool NavHistory::Filled(int i) const {
  return i >= 1 && i <= kPlaces && Nav_[static_cast<std::size_t>(i)].has_value();
}

}  // namespace zol
