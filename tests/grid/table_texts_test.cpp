// The texts a table shares (with the chart of its lines) stay as they were
// taken, whatever the table does afterwards.

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "grid/table.h"

namespace zol {
namespace {

TEST(TableTexts, TextsTakenStayAsTheyWereWhileTheTableGoesOn) {
  Table t;
  t.AddColumn("Line");
  const TextRef first = t.AddText("x = 1");
  t.AddRow("", "a").SetText(1, first);
  const auto taken = t.Texts();
  const std::string before = *taken;

  // Added, cleared, moved away and used again: the held texts don't change,
  // and the table reads its own.
  const TextRef second = t.AddText("y = 2");
  t.AddRow("", "").SetText(1, second);
  EXPECT_EQ(*taken, before);
  EXPECT_EQ(t.Text(2, 1), "y = 2");
  EXPECT_EQ(t.Text(1, 1), "x = 1");

  Table moved = std::move(t);
  EXPECT_EQ(moved.Text(2, 1), "y = 2");
  t.Clear();
  t.AddColumn("Line");
  t.AddRow("", "again");
  EXPECT_EQ(t.Text(1, 1), "again");

  moved.ClearRows();
  moved.AddRow("", "z");
  EXPECT_EQ(moved.Text(1, 1), "z");
  EXPECT_EQ(*taken, before);
  EXPECT_EQ(taken->substr(first.Offset, first.Length), "x = 1");
}

}  // namespace
}  // namespace zol
