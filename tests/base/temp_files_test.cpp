#include "base/temp_files.h"

#include <gtest/gtest.h>

#include "base/env_guard.h"
#include "base/files.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::EnvGuard;
using testing::ScopedTempDir;

TEST(TempFileRegistry, FoldersGetExactlyOneTrailingSeparator) {
  TempFileRegistry registry;
  registry.AddToDeleteOnExit("/t/a", true);
  registry.AddToDeleteOnExit("/t/b\\\\", true);
  registry.AddToDeleteOnExit("/t/c//", true);
  registry.AddToDeleteOnExit("/t/f.tmp", false);
  registry.AddToDeleteOnExit("", true);  // would stand for the root folder
  EXPECT_EQ(registry.DeleteOnExit(),
            (std::vector<std::string>{"/t/a/", "/t/b/", "/t/c/", "/t/f.tmp"}));
  EXPECT_EQ(registry.nDeleteOnExit(), 4);
}

TEST(TempFileRegistry, DeletesEachEntryOnceIgnoringWhatIsGone) {
  ScopedTempDir dir;
  dir.Put("report/Contents.htm", "x");
  dir.Put("report/sub/a.csv", "x");
  const std::string file = dir.Put("export.tmp", "x");
  const std::string kept = dir.Put("kept.txt", "x");

  TempFileRegistry registry;
  registry.AddToDeleteOnExit(dir / "report", true);
  registry.AddToDeleteOnExit(dir / "report/", true);  // the same folder again
  registry.AddToDeleteOnExit(file, false);
  registry.AddToDeleteOnExit(dir / "never-made.tmp", false);
  registry.AddToDeleteOnExit(dir / "never-made", true);
  registry.DeleteTempFiles();

  EXPECT_FALSE(FolderExist(dir / "report"));
  EXPECT_FALSE(FileExist(file));
  EXPECT_TRUE(FileExist(kept));
  EXPECT_EQ(registry.nDeleteOnExit(), 0);
}

TEST(TempPath, HonoursTmpdirWithOneTrailingSeparator) {
  {
    EnvGuard tmpdir("TMPDIR", "/var/tmp");
    EXPECT_EQ(GetTempPath(), "/var/tmp/");
  }
  {
    EnvGuard tmpdir("TMPDIR", "/var/tmp/");
    EXPECT_EQ(GetTempPath(), "/var/tmp/");
  }
  EnvGuard tmpdir("TMPDIR", std::nullopt);
  EXPECT_EQ(GetTempPath(), "/tmp/");
}

TEST(TempFileName, KeptAndRegisteredOrDeletedKeepingTheName) {
  ScopedTempDir dir;
  TempFileRegistry registry;
  const std::string kept = GetTempFileName(dir.path(), "zol", true, registry);
  EXPECT_EQ(kept.rfind(dir / "zol", 0), 0u) << kept;
  EXPECT_EQ(kept.substr(kept.size() - 4), ".tmp");
  EXPECT_TRUE(FileExist(kept));
  EXPECT_EQ(registry.DeleteOnExit(), std::vector<std::string>{kept});

  const std::string other = GetTempFileName(dir.path() + "/", "tmp", false, registry);
  EXPECT_NE(other, kept);
  EXPECT_FALSE(FileExist(other));
  EXPECT_EQ(registry.nDeleteOnExit(), 1);

  {
    EnvGuard tmpdir("TMPDIR", dir.path());
    const std::string inTemp = GetTempFileName("", "x", false, registry);
    EXPECT_EQ(inTemp.rfind(dir / "x", 0), 0u) << inTemp;
  }
  EXPECT_THROW(GetTempFileName(dir / "missing", "zol", true, registry), FileError);

  registry.DeleteTempFiles();
  EXPECT_FALSE(FileExist(kept));
}

}  // namespace
}  // namespace zol
