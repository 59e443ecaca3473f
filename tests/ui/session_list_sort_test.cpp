#include "ui/session_list_sort.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

SessionListRow Row(const std::string& key, const std::string& name, const std::string& date,
                   const std::string& version, const std::string& file) {
  return SessionListRow{key, {name, date, "1-Orders", version, file}, false};
}

std::string Keys(const std::vector<SessionListRow>& rows) {
  std::string keys;
  for (const auto& r : rows) keys += r.Key + " ";
  return keys;
}

std::vector<SessionListRow> Rows() {
  return {Row("K1", "monday", "03/11/2026 09:14:52", "1.10.0", "12 Kb: /b/Monday.pfd"),
          Row("K2", "Tuesday", "04/10/2026 16:02:08", "1.9.0", "3 Kb: /a/Tuesday.pfd"),
          Row("K3", "friday", "2026-11-07 11:47:30", "1.9.12", "150 Kb: /c/Friday.pfd")};
}

TEST(SessionListSort, ColumnsSortByWhatTheyMean) {
  auto rows = Rows();
  sortSessionRows(rows, {1, false});
  EXPECT_EQ(Keys(rows), "K3 K1 K2 ");  // names, case aside
  sortSessionRows(rows, {2, false});
  EXPECT_EQ(Keys(rows), "K2 K1 K3 ");  // dates by the moment, both forms
  sortSessionRows(rows, {4, false});
  EXPECT_EQ(Keys(rows), "K2 K3 K1 ");  // 1.9.0 < 1.9.12 < 1.10.0
  sortSessionRows(rows, {5, false});
  EXPECT_EQ(Keys(rows), "K2 K1 K3 ");  // the path, not the size in front
}

TEST(SessionListSort, ASecondClickReversesAnotherColumnKeepsTheOrder) {
  SessionListSort sort;
  sort.click(2);
  EXPECT_EQ(sort.Column, 2);
  EXPECT_FALSE(sort.Descending);
  sort.click(2);
  EXPECT_TRUE(sort.Descending);
  sort.click(4);
  EXPECT_EQ(sort.Column, 4);
  EXPECT_TRUE(sort.Descending);
  auto rows = Rows();
  sortSessionRows(rows, sort);
  EXPECT_EQ(Keys(rows), "K1 K3 K2 ");
}

}  // namespace
}  // namespace zol
