#include "base/ini_file.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "base/files.h"
#include "base/scoped_temp_dir.h"

namespace zol {
namespace {

using testing::ScopedTempDir;

std::string Get(const std::string& section, const std::string& key, const std::string& file,
                const std::string& def = "<default>") {
  return VBGetPrivateProfileString(section, key, def, file);
}

TEST(IniFile, ReadsLikeThePrivateProfileCalls) {
  ScopedTempDir dir;
  const std::string ini = dir.Put("s.ini",
                                  "[Profiler]\n"
                                  " Key1 =  spaced value  \n"
                                  "Quoted=\"  inner  \"\n"
                                  "Single='it''s'\n"
                                  "Mismatch=\"abc'\n"
                                  "Inner=a \"b\" c\n"
                                  "Empty=\"\"\n"
                                  "; Commented=yes\n"
                                  "NoEquals\n"
                                  "Dup=first\n"
                                  "Dup=second\n"
                                  "[ D\xC9tail ]\n"
                                  "K=accented\n"
                                  "[Profiler]\n"
                                  "Late=x\n"
                                  "[Other]\n"
                                  "Key1=other");
  EXPECT_EQ(Get("PROFILER", "key1", ini), "spaced value");
  EXPECT_EQ(Get("Profiler", "Quoted", ini), "  inner  ");
  EXPECT_EQ(Get("Profiler", "Single", ini), "it''s");
  EXPECT_EQ(Get("Profiler", "Mismatch", ini), "\"abc'");
  EXPECT_EQ(Get("Profiler", "Inner", ini), "a \"b\" c");
  EXPECT_EQ(Get("Profiler", "Empty", ini), "");
  EXPECT_EQ(Get("Profiler", "Commented", ini), "<default>");
  EXPECT_EQ(Get("Profiler", "NoEquals", ini), "<default>");
  EXPECT_EQ(Get("Profiler", "Dup", ini), "first");
  EXPECT_EQ(Get("Profiler", "Late", ini), "<default>");  // the first section of a name wins
  EXPECT_EQ(Get("d\xE9tail", "k", ini), "accented");
  EXPECT_EQ(Get("Other", "Key1", ini), "other");
  EXPECT_EQ(Get("Other", "Key2", ini), "<default>");
  // The default loses its trailing blanks; a missing file gives it too.
  EXPECT_EQ(Get("Profiler", "Nope", dir / "missing.ini", "def  "), "def");

  const std::string bom = dir.Put("bom.ini", "\xEF\xBB\xBF[Profiler]\r\nA=1\r\n");
  EXPECT_EQ(Get("Profiler", "A", bom), "1");
}

TEST(IniFile, WriterMakesFileAndSectionsWithCrlf) {
  ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  VBWritePrivateProfileString("Profiler", "hWnd", "123", ini);
  EXPECT_EQ(LoadFile(ini), "[Profiler]\r\nhWnd=123\r\n");
  VBWritePrivateProfileString("Profiler", "ID", "1", ini);
  VBWritePrivateProfileString("Zolmark", "CancelOperations", "0", ini);
  VBWritePrivateProfileString("profiler", "HWND", "0", ini);  // keeps the spelling on file
  VBWritePrivateProfileString("Profiler", "Session0", "", ini);
  EXPECT_EQ(LoadFile(ini),
            "[Profiler]\r\nhWnd=0\r\nID=1\r\nSession0=\r\n"
            "\r\n[Zolmark]\r\nCancelOperations=0\r\n");
  EXPECT_EQ(Get("Profiler", "Session0", ini), "");
  EXPECT_THROW(VBWritePrivateProfileString("Profiler", " ", "x", ini), std::invalid_argument);
}

TEST(IniFile, HandEditsSurviveLaterWrites) {
  ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  VBWritePrivateProfileString("Profiler", "hWnd", "123", ini);
  WriteFile(ini,
            "; Zolmark settings, edited by hand\r\n"
            "[Profiler]\r\n"
            "hWnd=123\r\n"
            "  ; the window handle above\r\n"
            "ID   =   1   \r\n"
            "\r\n"
            "[Other]\r\n"
            "Keep = \"quoted value\"\r\n"
            "\r\n"
            "[Zolmark]\r\n"
            "CancelOperations=0\r\n");
  VBWritePrivateProfileString("Profiler", "NewKey", "v", ini);
  VBWritePrivateProfileString("Profiler", "id", "2", ini);
  VBWritePrivateProfileString("Zolmark", "CancelOperations", "0", ini);  // unchanged
  EXPECT_EQ(LoadFile(ini),
            "; Zolmark settings, edited by hand\r\n"
            "[Profiler]\r\n"
            "hWnd=123\r\n"
            "  ; the window handle above\r\n"
            "ID=2\r\n"
            "NewKey=v\r\n"
            "\r\n"
            "[Other]\r\n"
            "Keep = \"quoted value\"\r\n"
            "\r\n"
            "[Zolmark]\r\n"
            "CancelOperations=0\r\n");
  EXPECT_EQ(Get("Other", "Keep", ini), "quoted value");
}

TEST(IniFile, LineEndsOfTheFileAreKept) {
  ScopedTempDir dir;
  const std::string lf = dir.Put("lf.ini", "[A]\nx=1\n");
  VBWritePrivateProfileString("A", "y", "2", lf);
  VBWritePrivateProfileString("B", "z", "3", lf);
  EXPECT_EQ(LoadFile(lf), "[A]\nx=1\ny=2\n\n[B]\nz=3\n");

  // A last line without a line end.
  const std::string open = dir.Put("open.ini", "[A]\r\nx=1");
  VBWritePrivateProfileString("A", "x", "5", open);
  EXPECT_EQ(LoadFile(open), "[A]\r\nx=5");
  VBWritePrivateProfileString("A", "y", "2", open);
  EXPECT_EQ(LoadFile(open), "[A]\r\nx=5\r\ny=2\r\n");
}

TEST(IniFile, DeleteRemovesOnlyTheKeyLine) {
  ScopedTempDir dir;
  const std::string ini =
      dir.Put("s.ini", "[Profiler]\r\nSession0=a\r\nSession1=b\r\n[Other]\r\nSession0=c\r\n");
  VBDeletePrivateProfileKey("PROFILER", "session0", ini);
  EXPECT_EQ(LoadFile(ini), "[Profiler]\r\nSession1=b\r\n[Other]\r\nSession0=c\r\n");
  VBDeletePrivateProfileKey("Profiler", "Session0", ini);  // gone: nothing changes
  EXPECT_EQ(LoadFile(ini), "[Profiler]\r\nSession1=b\r\n[Other]\r\nSession0=c\r\n");
  VBDeletePrivateProfileKey("Profiler", "Session0", dir / "missing.ini");
  EXPECT_FALSE(FileExist(dir / "missing.ini"));
}

// Two processes writing their own keys into one file at once: every key of
// both is there at the end (a second start hands its files over while the
// first copy writes its settings).
TEST(IniFile, WritersInTwoProcessesLoseNoKey) {
  ScopedTempDir dir;
  const std::string ini = dir / "shared.ini";
  constexpr int kKeys = 150;
  const auto writeKeys = [&](const std::string& prefix) {
    for (int i = 0; i < kKeys; ++i)
      VBWritePrivateProfileString("Profiler", prefix + std::to_string(i), "v", ini);
  };
  const pid_t child = ::fork();
  ASSERT_GE(child, 0);
  if (child == 0) {
    writeKeys("Child");
    ::_exit(0);
  }
  writeKeys("Parent");
  int status = 0;
  ASSERT_EQ(::waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  for (int i = 0; i < kKeys; ++i) {
    EXPECT_EQ(Get("Profiler", "Child" + std::to_string(i), ini), "v") << i;
    EXPECT_EQ(Get("Profiler", "Parent" + std::to_string(i), ini), "v") << i;
  }
}

// A writer killed at any moment leaves the settings file as one of its whole
// versions: the keys written so far, each on a line of its own, never a line
// cut short.
TEST(IniFile, AWriterKilledAtAnyMomentLeavesAWholeFile) {
  ScopedTempDir dir;
  const std::string ini = dir / "killed.ini";
  const std::string value(200, 'v');
  std::ptrdiff_t keysSeen = 0;
  for (int round = 0; round < 12; ++round) {
    std::remove(ini.c_str());
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
      for (int i = 0;; ++i)
        VBWritePrivateProfileString("Profiler", "Key" + std::to_string(i), value, ini);
    }
    ::usleep(static_cast<useconds_t>(2000 + 3000 * round));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    if (!FileExist(ini)) continue;
    std::string expected = "[Profiler]\r\n";
    const std::string text = LoadFile(ini);
    for (int i = 0; expected.size() < text.size(); ++i) {
      expected += "Key" + std::to_string(i) + "=" + value + "\r\n";
    }
    EXPECT_EQ(text, expected) << "round " << round;
    keysSeen = std::max(keysSeen, std::count(text.begin(), text.end(), '\n') - 1);
  }
  std::printf("12 kills: at most %ld keys written before one\n", static_cast<long>(keysSeen));
}

TEST(IniFile, LongValuesAreCut) {
  ScopedTempDir dir;
  const std::string ini = dir / "s.ini";
  VBWritePrivateProfileString("S", "Long", std::string(40000, 'v'), ini);
  EXPECT_EQ(Get("S", "Long", ini), std::string(kMaxProfileString, 'v'));
}

}  // namespace
}  // namespace zol
