#include "base/concat_string.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(CConcatString, AppendsAcrossGrowthStepsAndKeepsOnlyTheUsedPart) {
  CConcatString cc;
  cc.SetIncrement(4);
  cc.Append("abc");      // grows by 4 blanks: 3 + 0 >= 0
  cc.Append("de");       // 3 + 2 >= 4: grows again
  cc.Append("fghijkl");  // longer than the increment: grows by its own length
  EXPECT_EQ(cc.Value(), "abcdefghijkl");
  EXPECT_EQ(cc.Length(), 12);

  cc.SetValue("xy");
  cc.Append("z");
  EXPECT_EQ(cc.Value(), "xyz");
  EXPECT_EQ(cc.Length(), 3);
}

}  // namespace
}  // namespace zol
