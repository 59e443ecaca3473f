#include "base/paths.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(PathText, SplitsAtTheLastSeparatorOfEitherKind) {
  EXPECT_EQ(GetFileName("C:\\Proj/Forms\\Main.frm"), "Main.frm");
  EXPECT_EQ(GetFileName("Main.frm"), "Main.frm");
  EXPECT_EQ(GetFileName("C:\\Proj\\"), "");
  EXPECT_EQ(GetPath("/home/u/Proj\\Main.frm"), "/home/u/Proj");
  EXPECT_EQ(GetPath("Main.frm"), "");

  EXPECT_EQ(GetFileBody("C:\\Proj\\Title 1.pfd"), "Title 1");
  EXPECT_EQ(GetFileBody("x.vbg.pfd"), "x.vbg");
  EXPECT_EQ(GetFileBody("README"), "README");
  // A dot in a folder name is not the file's extension.
  EXPECT_EQ(GetFileBody("C:\\my.dir\\file"), "file");
}

TEST(PathText, ParseDirListsEveryFolderDownToTheFile) {
  auto raw = [](const std::string& p) { return GetParseDir(p).Raw(); };
  using V = std::vector<std::string>;
  EXPECT_EQ(raw("C:\\a\\b\\f.txt"), (V{"C:\\", "C:\\a\\", "C:\\a\\b\\"}));
  EXPECT_EQ(raw("\\\\srv\\share\\f"), (V{"\\\\srv\\", "\\\\srv\\share\\"}));
  EXPECT_EQ(raw("relative\\f"), (V{""}));
  EXPECT_EQ(raw("C:f"), (V{"C:"}));
  EXPECT_EQ(raw("/home/u/f"), (V{"/", "/home/", "/home/u/"}));
  EXPECT_EQ(GetParseDir("C:\\a\\f").LBound(), 1);
}

TEST(PathText, ToAbsolutePathClimbsOneFolderPerParentStep) {
  EXPECT_EQ(ToAbsolutePath("..\\..\\x\\y.frm", "C:\\a\\b\\c\\"), "C:\\a\\x\\y.frm");
  EXPECT_EQ(ToAbsolutePath("Forms\\Main.frm", "C:\\a\\"), "C:\\a\\Forms\\Main.frm");
  EXPECT_EQ(ToAbsolutePath("..\\Shared\\u.bas", "\\\\srv\\share\\proj\\"),
            "\\\\srv\\share\\Shared\\u.bas");
  EXPECT_EQ(ToAbsolutePath("../lib/u.bas", "/home/u/proj/"), "/home/u/lib/u.bas");
  EXPECT_EQ(ToAbsolutePath("../../u.bas", "/a/b/"), "/u.bas");
}

TEST(PathText, ToAbsolutePathAboveTheRootIsABoundsErrorNamingThePath) {
  try {
    ToAbsolutePath("..\\..\\..\\y.frm", "C:\\a\\");
    FAIL() << "no error";
  } catch (const BoundsError& e) {
    EXPECT_NE(std::string(e.what()).find("..\\..\\..\\y.frm"), std::string::npos) << e.what();
  }
}

TEST(PathText, NativeAndJoinedPaths) {
  EXPECT_EQ(ToNativePath("C:\\Proj\\a.bas"), "C:/Proj/a.bas");
  EXPECT_EQ(JoinPath("/a", "b"), "/a/b");
  EXPECT_EQ(JoinPath("/a/", "b"), "/a/b");
  EXPECT_EQ(JoinPath("", "b"), "b");
}

}  // namespace
}  // namespace zol
