#include "source_view/nav_history.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

struct ButtonsView : NavView {
  void EnableNavButtons(bool b, bool f) override {
    back = b;
    forward = f;
  }
  bool back = false;
  bool forward = false;
};

class Navigation : public ::testing::Test {
 protected:
  void Visit(std::int32_t module) {
    place.module = module;
    nav.NewNav(place, view);
  }
  Selection place;
  NavHistory nav;
  ButtonsView view;
};

TEST_F(Navigation, BackAndForwardHandThePlaceBack) {
  place.session = SessionRef::single(2);
  place.tab = Tab::Source;
  place.measure = Measure::ChildAverage;
  Visit(1);
  const Selection first = place;
  place.measure = Measure::Coverage;
  place.tab = Tab::Procedures;
  Visit(2);
  const Selection second = place;
  EXPECT_TRUE(view.back);
  EXPECT_FALSE(view.forward);

  EXPECT_EQ(nav.BrowseBack(view), first);
  EXPECT_EQ(nav.IndexNav(), 1);
  EXPECT_FALSE(view.back);
  EXPECT_TRUE(view.forward);
  EXPECT_FALSE(nav.BrowseBack(view).has_value());
  EXPECT_EQ(nav.IndexNav(), 1);

  EXPECT_EQ(nav.BrowseFwd(view), second);
  EXPECT_FALSE(nav.BrowseFwd(view).has_value());
  EXPECT_EQ(MeasureButtonKey(first.measure), "CHILDAVERAGETIME");
  EXPECT_EQ(MeasureButtonKey(second.measure), "COVERAGE");
}

TEST_F(Navigation, ANewPlaceDropsWhatLayAhead) {
  Visit(1);
  Visit(2);
  Visit(3);
  nav.BrowseBack(view);
  nav.BrowseBack(view);
  Visit(9);
  EXPECT_EQ(nav.IndexNav(), 2);
  EXPECT_EQ(nav.Place(2)->module, 9);
  EXPECT_FALSE(nav.Place(3).has_value());
  EXPECT_FALSE(nav.CanGoForward());
}

TEST_F(Navigation, KeepsTheLastTwentyPlaces) {
  for (int i = 1; i <= 25; ++i) Visit(i);
  EXPECT_EQ(nav.IndexNav(), 20);
  EXPECT_EQ(nav.Place(1)->module, 6);
  int steps = 0;
  std::optional<Selection> last;
  while (auto p = nav.BrowseBack(view)) {
    last = p;
    ++steps;
  }
  EXPECT_EQ(steps, 19);
  EXPECT_EQ(last->module, 6);

  nav.Clear();
  EXPECT_EQ(nav.IndexNav(), 0);
  EXPECT_FALSE(nav.CanGoBack());
  EXPECT_FALSE(nav.BrowseFwd(view).has_value());
  EXPECT_THROW(nav.Place(21), std::out_of_range);
}

}  // namespace
}  // namespace zol
