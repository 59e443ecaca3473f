#include "base/app_paths.h"

#include <gtest/gtest.h>

#include "base/env_guard.h"
#include "base/files.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::EnvGuard;
using testing::ScopedTempDir;

TEST(AppFolder, ChoosesHomeVariableThenExecutableFolderThenUserDataFolder) {
  ScopedTempDir dir;
  const std::string exe = dir.Put("bin/zolprof").substr(0, (dir / "bin").size());

  // ZOLMARK_HOME wins and is made, trailing separators dropped.
  EXPECT_EQ(AppFolderFrom({dir / "home/zol/", exe, "", ""}), dir / "home/zol");
  EXPECT_TRUE(FolderExist(dir / "home/zol"));

  EXPECT_EQ(AppFolderFrom({"", exe, dir / "xdg", dir / "user"}), exe);

  // No usable executable folder: the per-user data folder, made.
  EXPECT_EQ(AppFolderFrom({"", dir / "no-such-bin", dir / "xdg", dir / "user"}),
            dir / "xdg/zolmark");
  EXPECT_TRUE(FolderExist(dir / "xdg/zolmark"));
  EXPECT_EQ(AppFolderFrom({"", "", "", dir / "user"}), dir / "user/.local/share/zolmark");
  EXPECT_TRUE(FolderExist(dir / "user/.local/share/zolmark"));

  EXPECT_THROW(AppFolderFrom({"", "", "", ""}), FileError);
  dir.Put("blocker", "a file where the folder should be");
  EXPECT_THROW(AppFolderFrom({dir / "blocker", exe, "", ""}), FileError);
}

TEST(AppFolder, IniFileLivesInTheAppFolderOrTheWorkspaceOverride) {
  ScopedTempDir dir;
  EXPECT_EQ(GetIniFile("/srv/zol"), "/srv/zol/Zolmark.ini");
  EXPECT_EQ(GetIniFile("/srv/zol/"), "/srv/zol/Zolmark.ini");
  EnvGuard home("ZOLMARK_HOME", dir / "app");
  EXPECT_EQ(AppFolder(), dir / "app");
  EXPECT_EQ(GetIniFile(), dir / "app/Zolmark.ini");
}

}  // namespace
}  // namespace zol
