#include "base/path_resolver.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::ScopedTempDir;

// A project copied from Windows: names in mixed case, one of them accented
// (UTF-8 on disk), and a folder name that differs only in case.
class PathResolverTest : public ::testing::Test {
 protected:
  void SetUp() override {
    dir.Put("Proj/Forms/Main.frm");
    dir.Put("Proj/Module1.bas");
    dir.Put("Proj/D\xC3\xA9tail.bas");
    dir.Put("Shared/Util.bas");
    dir.Put("Data/readme.txt");
    dir.Put("DATA/x.txt");
    std::filesystem::create_directories(dir / "Proj/folder.bas");
  }
  std::string Proj() const { return dir / "Proj"; }

  ScopedTempDir dir;
};

TEST_F(PathResolverTest, RelativeWindowsPathsResolveBesideTheReferenceFolder) {
  EXPECT_EQ(ResolveExistingFile("Forms\\Main.frm", Proj()), dir / "Proj/Forms/Main.frm");
  EXPECT_EQ(ResolveExistingFile("Forms/Main.frm", Proj()), dir / "Proj/Forms/Main.frm");
  // ".." is folded away in the result.
  EXPECT_EQ(ResolveExistingFile("..\\Shared\\Util.bas", Proj()), dir / "Shared/Util.bas");
}

TEST_F(PathResolverTest, WrongCaseIsFoundWithTheSpellingOnDisk) {
  EXPECT_EQ(ResolveExistingFile("FORMS\\main.FRM", Proj()), dir / "Proj/Forms/Main.frm");
  EXPECT_EQ(ResolveExistingFile("..\\shared\\UTIL.bas", Proj()), dir / "Shared/Util.bas");
  // "data" matches "DATA" and "Data"; only one of them holds the file.
  EXPECT_EQ(ResolveExistingFile("data/x.txt", dir.path()), dir / "DATA/x.txt");
  EXPECT_EQ(ResolveExistingFile("data/readme.txt", dir.path()), dir / "Data/readme.txt");
}

TEST_F(PathResolverTest, Cp1252NamesMatchTheirUtf8SpellingOnDisk) {
  EXPECT_EQ(ResolveExistingFile("D\xE9tail.bas", Proj()), dir / "Proj/D\xC3\xA9tail.bas");
  EXPECT_EQ(ResolveExistingFile("D\xC9TAIL.BAS", Proj()), dir / "Proj/D\xC3\xA9tail.bas");
}

TEST_F(PathResolverTest, DrivePathsTryTheLinuxPathThenTheirTailsBesideTheReference) {
  // The part behind the drive is the real absolute path.
  EXPECT_EQ(ResolveExistingFile("C:" + dir.path() + "\\Proj\\Module1.bas"),
            dir / "Proj/Module1.bas");
  // Instrumented elsewhere: the tail below the project folder is found.
  EXPECT_EQ(ResolveExistingFile("C:\\Work\\Proj\\Forms\\Main.frm", Proj()),
            dir / "Proj/Forms/Main.frm");
  // Only the file name is left in common.
  EXPECT_EQ(ResolveExistingFile("D:\\Elsewhere\\module1.BAS", Proj()), dir / "Proj/Module1.bas");
  EXPECT_EQ(ResolveExistingFile("\\\\srv\\share\\Proj\\Module1.bas", Proj()),
            dir / "Proj/Module1.bas");
}

TEST_F(PathResolverTest, FilesAndFoldersAreTold) {
  EXPECT_EQ(ResolveExistingFile("folder.bas", Proj()), std::nullopt);
  EXPECT_EQ(ResolveExistingFolder("FOLDER.BAS", Proj()), dir / "Proj/folder.bas");
  EXPECT_EQ(ResolveExistingFolder("..\\shared", Proj()), dir / "Shared");
  EXPECT_EQ(ResolveExistingFile("Missing.bas", Proj()), std::nullopt);
  EXPECT_EQ(ResolveExistingFile("", Proj()), std::nullopt);
  EXPECT_TRUE(FileExistResolved(dir / "Proj/Module1.bas"));
  EXPECT_FALSE(FileExistResolved("Forms\\Gone.frm", Proj()));
}

}  // namespace
}  // namespace zol
