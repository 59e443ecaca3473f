// A load killed at any moment (the machine's power, the out-of-memory killer,
// a user's kill -9) leaves the run's data on disk: the log as it was, or a
// whole session file beside it; never neither, and never part of a session
// file under its final name.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include "base/files.h"
#include "base/scoped_temp_dir.h"

#if defined(ZOLPROF_PATH) && defined(ZOL_SOURCE_DIR)

namespace zol {
namespace {

namespace fs = std::filesystem;

// Starts `zolprof load log` with its settings below `home`; returns its pid.
pid_t StartLoad(const std::string& log, const std::string& home) {
  const pid_t child = ::fork();
  if (child == 0) {
    ::setenv("ZOLMARK_HOME", home.c_str(), 1);
    std::freopen("/dev/null", "w", stdout);
    std::freopen("/dev/null", "w", stderr);
    ::execl(ZOLPROF_PATH, "zolprof", "load", log.c_str(), static_cast<char*>(nullptr));
    ::_exit(127);
  }
  return child;
}

TEST(KilledLoad, LeavesTheLogOrAWholeSessionFile) {
  testing::ScopedTempDir dir;
  const std::string work = dir / "work";
  const std::string log = work + "/Monday.pfl";
  const std::string pfd = work + "/Monday.pfd";
  const auto freshCopy = [&] {
    fs::remove_all(work);
    fs::copy(std::string(ZOL_SOURCE_DIR) + "/examples/demo/instrumented", work,
             fs::copy_options::recursive);
  };

  // A load that runs to its end, for the session file it writes and for how
  // long a load takes on this machine in this build.
  freshCopy();
  const std::string original = LoadFile(log);
  const auto start = std::chrono::steady_clock::now();
  const pid_t whole = StartLoad(log, dir / "home");
  int status = 0;
  ASSERT_EQ(::waitpid(whole, &status, 0), whole);
  ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  const auto span = std::chrono::duration_cast<std::chrono::microseconds>(
      std::chrono::steady_clock::now() - start);
  ASSERT_FALSE(FileExist(log));
  const std::string session = LoadFile(pfd);
  ASSERT_FALSE(session.empty());

  std::mt19937 rng(19);
  std::uniform_int_distribution<long> moment(0, span.count() * 6 / 5);
  int logsKept = 0;
  int sessionsWritten = 0;
  for (int round = 0; round < 30; ++round) {
    freshCopy();
    const pid_t child = StartLoad(log, dir / "home");
    ASSERT_GT(child, 0);
    std::this_thread::sleep_for(std::chrono::microseconds(moment(rng)));
    ::kill(child, SIGKILL);
    ASSERT_EQ(::waitpid(child, &status, 0), child);

    const bool logThere = FileExist(log);
    const bool pfdThere = FileExist(pfd);
    ASSERT_TRUE(logThere || pfdThere)
        << "round " << round << ": both the log and its session are gone";
    if (logThere) {
      EXPECT_EQ(LoadFile(log), original) << "round " << round << ": the log changed";
      ++logsKept;
    }
    if (pfdThere) {
      EXPECT_EQ(LoadFile(pfd), session) << "round " << round << ": a partial session file";
      ++sessionsWritten;
    }
  }
  std::printf("30 kills: the log kept %d times, the session written %d times\n", logsKept,
              sessionsWritten);
}

}  // namespace
}  // namespace zol

#endif
