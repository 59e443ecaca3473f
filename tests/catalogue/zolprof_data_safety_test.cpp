// zolprof keeps the user's files: a log stays unless its session was stored
// from the whole project, nothing is deleted without a flag that names the
// deletion, and no output replaces an input, a log or a file of another kind
// unless --force.

#include <filesystem>

#include "catalogue/zolprof_fixture.h"

#ifdef ZOLPROF_PATH

namespace zol {
namespace {

namespace fs = std::filesystem;
using ZolprofKeepsFiles = testing::ZolprofFixture;

TEST_F(ZolprofKeepsFiles, LoadAndScanNameTheModulesThatCantBeRead) {
  const std::string module = run_.project.Module(1).FileName;
  fs::rename(fs::path(run_.vbp).parent_path() / module, dir_ / "aside");
  EXPECT_EQ(Zolprof("load " + Q(run_.log)), 1);
  EXPECT_NE(err_.find(module + ": missing"), std::string::npos) << err_;
  EXPECT_TRUE(FileExist(run_.log));
  EXPECT_FALSE(FileExist(Pfd(run_.log)));

  EXPECT_EQ(Zolprof("table --tab procedures " + Q(run_.log)), 1) << "read in memory: refused too";
  EXPECT_NE(err_.find(module + ": missing"), std::string::npos) << err_;

  EXPECT_EQ(Zolprof("scan " + Q(run_.vbp)), 1);
  EXPECT_NE(err_.find("module " + module + " not read: missing"), std::string::npos) << err_;
  EXPECT_EQ(Zolprof("scan --json " + Q(run_.vbp)), 1);
  EXPECT_NE(
      out_.find("\"UnreadModules\":[{\"FileName\":\"" + module + "\",\"Fault\":\"missing\"}]"),
      std::string::npos)
      << out_;
}

TEST_F(ZolprofKeepsFiles, YesNeverDeletesAnInputOnlyTheFlagThatNamesItDoes) {
  LoadBoth();
  const std::string a = Pfd(run_.log);
  fs::rename(run_.vbp, dir_ / "aside.vbp");  // the session can't be loaded without it
  EXPECT_EQ(Zolprof("filter --yes --filters MsgBox " + Q(a)), 1);
  EXPECT_TRUE(FileExist(a)) << err_;
  EXPECT_NE(err_.find("answered No"), std::string::npos) << err_;
  EXPECT_EQ(Zolprof("sessions --load --yes " + Q(a)), 0);
  EXPECT_TRUE(FileExist(a)) << err_;
  Zolprof("sessions --load --delete-unreadable " + Q(a));
  EXPECT_FALSE(FileExist(a)) << "the flag that names the deletion";
}

TEST_F(ZolprofKeepsFiles, OutputsNeverReplaceInputsLogsOrOtherFilesWithoutForce) {
  LoadBoth();
  const std::string a = Pfd(run_.log);
  const std::string b = Pfd(second_);
  const std::string before = LoadFile(a);

  EXPECT_EQ(Zolprof("merge " + Q(a) + " " + Q(b) + " -o " + Q(a)), 1);
  EXPECT_NE(err_.find("would replace an input"), std::string::npos) << err_;
  EXPECT_EQ(LoadFile(a), before);
  EXPECT_EQ(Zolprof("filter --filters MsgBox -o " + Q(a) + " " + Q(a)), 1);
  EXPECT_EQ(LoadFile(a), before);

  const std::string log = dir_.Put("other.pfl", "a log");
  EXPECT_EQ(Zolprof("source " + Q(a) + " --module 1 -o " + Q(log)), 1);
  EXPECT_NE(err_.find("would replace a profile log"), std::string::npos) << err_;
  EXPECT_EQ(LoadFile(log), "a log");
  const std::string notes = dir_.Put("notes.txt", "mine");
  EXPECT_EQ(Zolprof("merge " + Q(a) + " " + Q(b) + " -o " + Q(notes)), 1);
  EXPECT_NE(err_.find("not a session file"), std::string::npos) << err_;
  EXPECT_EQ(LoadFile(notes), "mine");
  EXPECT_EQ(Zolprof("source " + Q(a) + " --module 1 -o " + Q(dir_ / "page.htm")), 0) << err_;
  EXPECT_EQ(Zolprof("source " + Q(a) + " --module 1 -o " + Q(dir_ / "page.htm")), 0)
      << "a page replaces a page";

  // A log loaded again beside the .pfd of an earlier run.
  const std::string again = testing::WriteFixtureLog(run_, "a.pfl", {});
  EXPECT_EQ(Zolprof("load " + Q(again)), 1);
  EXPECT_EQ(LoadFile(a), before);
  EXPECT_TRUE(FileExist(again));
  EXPECT_EQ(Zolprof("load --force " + Q(again)), 0) << err_;
  EXPECT_FALSE(FileExist(again));

  EXPECT_EQ(Zolprof("merge " + Q(a) + " " + Q(b) + " -o " + Q(b) + " --force"), 0) << err_;
}

}  // namespace
}  // namespace zol

#endif  // ZOLPROF_PATH
