#include "source_view/nav_history.h"

#include <stdexcept>

namespace zol {

std::string MeasureButtonKey(Measure measure) {
  switch (measure) {
    case Measure::Total:
      return "TOTALTIME";
    case Measure::Average:
      return "AVERAGETIME";
    case Measure::ChildTotal:
      return "CHILDTOTALTIME";
    case Measure::ChildAverage:
      return "CHILDAVERAGETIME";
    case Measure::Coverage:
      return "COVERAGE";
  }
  return "";
}

void NavHistory::NewNav(const Selection& place, NavView& view) {
  if (IndexNav_ == kPlaces) {
    for (int i = 2; i <= kPlaces; ++i)
      Nav_[static_cast<std::size_t>(i - 1)] = Nav_[static_cast<std::size_t>(i)];
  } else {
    ++IndexNav_;
  }
  Nav_[static_cast<std::size_t>(IndexNav_)] = place;
  for (int i = IndexNav_ + 1; i <= kPlaces; ++i) Nav_[static_cast<std::size_t>(i)].reset();
  UpdateNavToolbar(view);
}

std::optional<Selection> NavHistory::StepTo(int index, NavView& view) {
  if (!Filled(index)) return std::nullopt;
  IndexNav_ = index;
  UpdateNavToolbar(view);
  return Nav_[static_cast<std::size_t>(index)];
}

std::optional<Selection> NavHistory::BrowseBack(NavView& view) {
  return StepTo(IndexNav_ - 1, view);
}

std::optional<Selection> NavHistory::BrowseFwd(NavView& view) {
  return StepTo(IndexNav_ + 1, view);
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

const std::optional<Selection>& NavHistory::Place(int i) const {
  if (i < 1 || i > kPlaces) {
    throw std::out_of_range("navigation place " + std::to_string(i) + " out of range 1..20");
  }
  return Nav_[static_cast<std::size_t>(i)];
}

bool NavHistory::Filled(int i) const {
  return i >= 1 && i <= kPlaces && Nav_[static_cast<std::size_t>(i)].has_value();
}

}  // namespace zol
