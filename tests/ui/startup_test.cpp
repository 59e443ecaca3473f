#include "ui/startup.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "base/ini_file.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::ScopedTempDir;
namespace fs = std::filesystem;

TEST(Startup, NoShowIsFoundAnywhereInAnyCase) {
  EXPECT_TRUE(commandLineHasNoShow({"a.pfd", "NoShow"}));
  EXPECT_TRUE(commandLineHasNoShow({"--xNOSHOWy"}));
  EXPECT_FALSE(commandLineHasNoShow({"show", "no", "a.pfd"}));
  EXPECT_FALSE(commandLineHasNoShow({}));
}

TEST(Startup, ClearsTheSuitesStopRequest) {
  ScopedTempDir dir;
  const std::string ini = dir.Put("Zolmark.ini", "[Zolmark]\r\nCancelOperations=1\r\n");
  clearCancelOperations(ini);
  EXPECT_EQ(VBGetPrivateProfileString("Zolmark", "CancelOperations", "", ini), "0");
  // A settings file that can't be written doesn't stop the start.
  EXPECT_NO_THROW(clearCancelOperations(dir / "no/such/folder/Zolmark.ini"));
}

TEST(Startup, OldRunFoldersGoButThoseOfLivingProcessesStay) {
  ScopedTempDir dir;
  dir.Put("Temp/Rtf999999/p1m1.txt", "text");
  const std::string readOnly = dir.Put("Temp/Rtf999998/locked.txt", "text");
  fs::permissions(readOnly, fs::perms::owner_read);
  const std::string own = "Temp/Rtf" + std::to_string(::getpid());
  dir.Put(own + "/p1m1.txt", "text");
  dir.Put("Temp/Other/keep.txt", "text");
  dir.Put("Temp/Rtf1.txt", "a file, not a folder");

  EXPECT_EQ(cleanOldRtfFolders(dir.path()), 2);
  EXPECT_FALSE(fs::exists(dir / "Temp/Rtf999999"));
  EXPECT_FALSE(fs::exists(dir / "Temp/Rtf999998"));
  EXPECT_TRUE(fs::exists(dir / own));
  EXPECT_TRUE(fs::exists(dir / "Temp/Other/keep.txt"));
  EXPECT_TRUE(fs::exists(dir / "Temp/Rtf1.txt"));
  EXPECT_EQ(cleanOldRtfFolders(dir / "missing"), 0);
}

TEST(Startup, HandedOverFilesTakeTheFreeKeysFromZero) {
  ScopedTempDir dir;
  // The running copy has taken Session0 (emptied) but not yet Session1.
  const std::string ini =
      dir.Put("Zolmark.ini", "[Profiler]\r\nSession0=\r\nSession1=/runs/old.pfl\r\n");
  EXPECT_EQ(handOverFiles(ini, {"/runs/a.pfl", "b.pfd"}, "/home/u"), 2);
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Session0", "", ini), "/runs/a.pfl");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Session1", "", ini), "/runs/old.pfl");
  EXPECT_EQ(VBGetPrivateProfileString("Profiler", "Session2", "", ini), "/home/u/b.pfd");
}

}  // namespace
}  // namespace zol
