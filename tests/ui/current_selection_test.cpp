#include "ui/current_selection.h"

#include <gtest/gtest.h>

#include <vector>

namespace zol {
namespace {

TEST(CurrentSelection, TellsOfAChangeOnceWithWhatCameBefore) {
  CurrentSelection current;
  std::vector<std::pair<Selection, Selection>> heard;
  QObject::connect(
      &current, &CurrentSelection::changed,
      [&](const Selection& now, const Selection& before) { heard.emplace_back(now, before); });
  const Selection start = current.get();
  Selection coverage = start;
  coverage.measure = Measure::Coverage;
  current.set(coverage);
  current.set(coverage);  // the same place again: nothing to redraw
  ASSERT_EQ(heard.size(), 1u);
  EXPECT_EQ(heard[0].first, coverage);
  EXPECT_EQ(heard[0].second, start);

  Selection module = coverage.at(2, 0);
  module.session = SessionRef::single(1);
  current.set(module);
  ASSERT_EQ(heard.size(), 2u);
  EXPECT_EQ(current.get().module, 2);
  EXPECT_EQ(heard[1].second.measure, Measure::Coverage);
}

}  // namespace
}  // namespace zol
