#include "base/files.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

namespace fs = std::filesystem;
using testing::ScopedTempDir;

int FileCount(const std::string& folder) {
  return static_cast<int>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

TEST(Files, ExistAndWholeFileRoundTrip) {
  ScopedTempDir dir;
  const std::string bytes("a\r\nb\0c\xFF", 7);
  WriteFile(dir / "f.bin", bytes);
  EXPECT_TRUE(FileExist(dir / "f.bin"));
  EXPECT_FALSE(FileExist(dir.path()));  // a folder is not a file
  EXPECT_TRUE(FolderExist(dir.path()));
  EXPECT_EQ(LoadFile(dir / "f.bin"), bytes);
  // Backslashes are folder separators.
  EXPECT_EQ(LoadFile(dir.path() + "\\f.bin"), bytes);

  AppendToFile(dir / "log.txt", "one");
  AppendToFile(dir / "log.txt", "two");
  EXPECT_EQ(LoadFile(dir / "log.txt"), "onetwo");
  WriteFile(dir / "log.txt", "x");
  EXPECT_EQ(LoadFile(dir / "log.txt"), "x");
}

TEST(Files, MissingFileLoadsEmptyButOtherFailuresThrowNamingTheFile) {
  ScopedTempDir dir;
  EXPECT_EQ(LoadFile(dir / "none.txt"), "");
  EXPECT_EQ(LoadFile(dir / "nofolder/none.txt"), "");
  EXPECT_THROW(LoadFile(dir.path()), FileError);
  try {
    WriteFile(dir / "nofolder/f.txt", "x");
    FAIL() << "no error";
  } catch (const FileError& e) {
    EXPECT_EQ(std::string(e.what()), "Cannot open file for writing \"" + dir / "nofolder/f.txt" +
                                         "\": No such file or directory");
    EXPECT_EQ(e.osError(), ENOENT);
  }
}

TEST(Files, GetFreeFileNumbersBeforeTheExtension) {
  ScopedTempDir dir;
  const std::string title = dir / "Title.pfd";
  EXPECT_EQ(GetFreeFile(title, " ", false), title);
  // Forced numbering skips the plain name even though it is free.
  EXPECT_EQ(GetFreeFile(title, " ", true), dir / "Title 1.pfd");
  dir.Put("Title 1.pfd");
  EXPECT_EQ(GetFreeFile(title, " ", true), dir / "Title 2.pfd");
  dir.Put("Title.pfd");
  EXPECT_EQ(GetFreeFile(title, "_", false), dir / "Title_1.pfd");
  // A group file keeps its ".vbg" in the name.
  EXPECT_EQ(GetFreeFile(dir / "x.vbg.pfd", " ", true), dir / "x.vbg 1.pfd");
  // No extension: the dot of a folder doesn't count; a folder takes a name too.
  fs::create_directories(dir / "my.dir/file");
  EXPECT_EQ(GetFreeFile(dir / "my.dir/file", "-", false), dir / "my.dir/file-1");
  // The result keeps the caller's separators; existence is checked natively.
  EXPECT_EQ(GetFreeFile(dir.path() + "\\Title.pfd", " ", false), dir.path() + "\\Title 2.pfd");
}

TEST(Files, MakeDirAndDeleteFolder) {
  ScopedTempDir dir;
  MakeDir(dir.path() + "\\a\\b/c\\\\");
  EXPECT_TRUE(FolderExist(dir / "a/b/c"));
  MakeDir(dir / "a/b/c");  // already there
  dir.Put("a/b/c/f.txt", "x");
  EXPECT_THROW(MakeDir(dir / "a/b/c/f.txt/d"), FileError);

  DeleteFolder(dir.path() + "\\a\\");
  EXPECT_FALSE(FolderExist(dir / "a"));
  DeleteFolder(dir / "a");  // gone already: nothing to do
  EXPECT_THROW(DeleteFolder("/"), FileError);
  EXPECT_THROW(DeleteFolder("/.."), FileError);
  EXPECT_THROW(DeleteFolder(""), FileError);
}

TEST(Files, WriteFileAtomicReplacesKeepingModeAndLinks) {
  ScopedTempDir dir;
  const std::string target = dir.Put("s.pfd", "old");
  ::chmod(target.c_str(), 0640);
  WriteFileAtomic(target, "new content");
  EXPECT_EQ(LoadFile(target), "new content");
  struct stat st {};
  ::stat(target.c_str(), &st);
  EXPECT_EQ(st.st_mode & 07777, 0640u);
  EXPECT_EQ(FileCount(dir.path()), 1);  // no temporary file left

  fs::create_symlink(target, dir / "link.pfd");
  WriteFileAtomic(dir / "link.pfd", "through the link");
  EXPECT_TRUE(fs::is_symlink(dir / "link.pfd"));
  EXPECT_EQ(LoadFile(target), "through the link");

  WriteFileAtomic(dir / "fresh.pfd", "made");
  EXPECT_EQ(LoadFile(dir / "fresh.pfd"), "made");
}

// Run in a child process: the limit and the ignored signal stay there.
[[noreturn]] void ExitZeroIfAtomicWriteFailsUnderSizeLimit(const std::string& target) {
  std::signal(SIGXFSZ, SIG_IGN);
  const rlimit limit{4096, 4096};
  ::setrlimit(RLIMIT_FSIZE, &limit);
  try {
    WriteFileAtomic(target, std::string(100000, 'x'));
  } catch (const FileError& e) {
    std::exit(std::string(e.what()).find(target) != std::string::npos ? 0 : 2);
  }
  std::exit(1);
}

TEST(Files, WriteFileAtomicRemovesWhatKilledWritesLeft) {
  ScopedTempDir dir;
  // The id of a process that has ended.
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ASSERT_GT(child, 0);
  ::waitpid(child, nullptr, 0);
  const std::string dead = std::to_string(child);
  const std::string live = std::to_string(::getppid());
  dir.Put(".A.pfd." + dead + "-0-123.tmp", "half a session");
  dir.Put(".B.pfd." + dead + "-7-99999.tmp", "another");
  dir.Put(".A.pfd." + live + "-0-123.tmp", "being written now");
  dir.Put(".notes." + dead + ".tmp", "not ours");
  dir.Put("A.pfd." + dead + "-0-1.tmp", "not ours either");
  WriteFileAtomic(dir / "C.pfd", "whole");
  EXPECT_FALSE(fs::exists(dir / (".A.pfd." + dead + "-0-123.tmp")));
  EXPECT_FALSE(fs::exists(dir / (".B.pfd." + dead + "-7-99999.tmp")));
  EXPECT_TRUE(fs::exists(dir / (".A.pfd." + live + "-0-123.tmp")));
  EXPECT_TRUE(fs::exists(dir / (".notes." + dead + ".tmp")));
  EXPECT_TRUE(fs::exists(dir / ("A.pfd." + dead + "-0-1.tmp")));
  EXPECT_EQ(LoadFile(dir / "C.pfd"), "whole");
}

TEST(Files, WriteFileAtomicFailureLeavesTheOldFileWhole) {
  ScopedTempDir dir;
  const std::string target = dir.Put("s.pfd", "old session");
  EXPECT_THROW(WriteFileAtomic(dir / "gone/s.pfd", "x"), FileError);

  // A file size limit makes the write itself fail half way (works as root too).
  EXPECT_EXIT(ExitZeroIfAtomicWriteFailsUnderSizeLimit(target), ::testing::ExitedWithCode(0), "");
  EXPECT_EQ(LoadFile(target), "old session");
  EXPECT_EQ(FileCount(dir.path()), 1);
}

}  // namespace
}  // namespace zol
