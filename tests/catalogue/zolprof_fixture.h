#pragma once

// zolprof run as a user runs it, on a generated project with two logs of runs
// beside it: exit code, standard output and standard error.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "support/fixture_run.h"

#ifdef ZOLPROF_PATH

namespace zol::testing {

class ZolprofFixture : public ::testing::Test {
 protected:
  void SetUp() override {
    SimulatedLogShape shape;
    shape.run.seed = 21;
    shape.run.probes = 2000;
    run_ = MakeFixtureRun(dir_.path(), 4, "a.pfl", shape);
    second_ = WriteFixtureLog(run_, "b.pfl", shape);
  }

  // Runs zolprof; its exit code, with stdout and stderr in out_ and err_.
  int Zolprof(const std::string& arguments) {
    const std::string command = "ZOLMARK_HOME='" + (dir_ / "home") + "' '" ZOLPROF_PATH "' " +
                                arguments + " > '" + (dir_ / "out.txt") + "' 2> '" +
                                (dir_ / "err.txt") + "'";
    const int status = std::system(command.c_str());
    out_ = LoadFile(dir_ / "out.txt");
    err_ = LoadFile(dir_ / "err.txt");
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  static std::string Pfd(const std::string& log) { return testing::Pfd(log); }
  static std::string Q(const std::string& path) { return "'" + path + "'"; }

  // Stores both logs as .pfd files.
  void LoadBoth() {
    ASSERT_EQ(Zolprof("load " + Q(run_.log)), 0) << err_;
    ASSERT_EQ(Zolprof("load " + Q(second_)), 0) << err_;
  }

  ScopedTempDir dir_;
  FixtureRun run_;
  std::string second_;
  std::string out_;
  std::string err_;
};

}  // namespace zol::testing

#endif  // ZOLPROF_PATH
