#include "source_view/nav_history.h"

#include <gtest/gtest.h>

#include <vector>

namespace zol {
namespace {

// The window as the history sees it. Selecting a tab redraws the page, which
// records a place again, as the real window does.
struct RecordingView : NavView {
  void SelectTreeNode(const NavPlace& place) override { nodes.push_back(place); }
  void PressMeasureButton(const std::string& key) override { buttons.push_back(key); }
  void SelectTab(std::int32_t tab) override {
    tabs.push_back(tab);
    if (history != nullptr && ws != nullptr) history->NewNav(*ws, *this);
  }
  void EnableNavButtons(bool b, bool f) override {
    back = b;
    forward = f;
  }
  std::vector<NavPlace> nodes;
  std::vector<std::string> buttons;
  std::vector<std::int32_t> tabs;
  bool back = false;
  bool forward = false;
  NavHistory* history = nullptr;
  Workspace* ws = nullptr;
};

class Navigation : public ::testing::Test {
 protected:
  void Visit(std::int32_t module) {
    ws.cMod = module;
    nav.NewNav(ws, view);
  }
  Workspace ws;
  NavHistory nav;
  RecordingView view;
};

TEST_F(Navigation, BackAndForwardRestoreThePlace) {
  ws.cs = 2;
  ws.Active_tbsTab = 5;
  ws.DisplayInfoType = 3;
  Visit(1);
  ws.DisplayInfoType = 4;
  ws.Active_tbsTab = 3;
  Visit(2);
  EXPECT_TRUE(view.back);
  EXPECT_FALSE(view.forward);

  view.history = &nav;
  view.ws = &ws;
  ASSERT_TRUE(nav.BrowseBack(ws, view));
  EXPECT_EQ(ws.cMod, 1);
  EXPECT_EQ(ws.DisplayInfoType, 3);
  EXPECT_EQ(ws.Active_tbsTab, 5);
  EXPECT_EQ(view.nodes.back(), (NavPlace{2, 1, 0, 0, 5, 3}));
  EXPECT_EQ(view.buttons.back(), "CHILDAVERAGETIME");
  EXPECT_EQ(view.tabs.back(), 5);
  EXPECT_FALSE(nav.fDuringNav());
  EXPECT_EQ(nav.IndexNav(), 1);  // the redraw during the step recorded nothing
  EXPECT_FALSE(view.back);
  EXPECT_TRUE(view.forward);
  EXPECT_FALSE(nav.BrowseBack(ws, view));

  ASSERT_TRUE(nav.BrowseFwd(ws, view));
  EXPECT_EQ(ws.cMod, 2);
  EXPECT_EQ(view.buttons.back(), "COVERAGE");
  EXPECT_FALSE(nav.BrowseFwd(ws, view));
}

TEST_F(Navigation, ANewPlaceDropsWhatLayAhead) {
  Visit(1);
  Visit(2);
  Visit(3);
  nav.BrowseBack(ws, view);
  nav.BrowseBack(ws, view);
  Visit(9);
  EXPECT_EQ(nav.IndexNav(), 2);
  EXPECT_EQ(nav.Place(2)->Module, 9);
  EXPECT_FALSE(nav.Place(3).has_value());
  EXPECT_FALSE(nav.CanGoForward());
}

TEST_F(Navigation, KeepsTheLastTwentyPlaces) {
  for (int i = 1; i <= 25; ++i) Visit(i);
  EXPECT_EQ(nav.IndexNav(), 20);
  EXPECT_EQ(nav.Place(1)->Module, 6);
  int steps = 0;
  while (nav.BrowseBack(ws, view)) ++steps;
  EXPECT_EQ(steps, 19);
  EXPECT_EQ(ws.cMod, 6);

  nav.Clear();
  EXPECT_EQ(nav.IndexNav(), 0);
  EXPECT_FALSE(nav.CanGoBack());
  EXPECT_FALSE(nav.BrowseFwd(ws, view));
  EXPECT_THROW(nav.Place(21), std::out_of_range);
}

}  // namespace
}  // namespace zol
