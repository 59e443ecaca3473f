// zolprof's messages say what went wrong with which file: a write that fails
// is not called a damaged file, a folder or a pipe is not "no such file", a
// number read from a file is not echoed whole, and a request beyond the
// project is refused rather than answered with something else.

#include <sys/stat.h>

#include <filesystem>

#include "catalogue/zolprof_fixture.h"

#ifdef ZOLPROF_PATH

namespace zol {
namespace {

namespace fs = std::filesystem;
using ZolprofMessages = testing::ZolprofFixture;

TEST_F(ZolprofMessages, AFailedWriteIsCalledAFailedWrite) {
  fs::create_directory(Pfd(run_.log));
  EXPECT_EQ(Zolprof("load " + Q(run_.log)), 1);
  EXPECT_NE(err_.find("can not be written"), std::string::npos) << err_;
  EXPECT_EQ(err_.find("corrupted"), std::string::npos) << err_;
  EXPECT_TRUE(FileExist(run_.log));
}

TEST_F(ZolprofMessages, FoldersAndPipesAreNamedAsSuch) {
  fs::create_directory(dir_ / "folder.pfl");
  EXPECT_EQ(Zolprof("dump " + Q(dir_ / "folder.pfl")), 1);
  EXPECT_NE(err_.find("folder.pfl: a folder, not a session file"), std::string::npos) << err_;
  ASSERT_EQ(::mkfifo((dir_ / "pipe.pfl").c_str(), 0600), 0);
  EXPECT_EQ(Zolprof("dump " + Q(dir_ / "pipe.pfl")), 1);
  EXPECT_NE(err_.find("pipe.pfl: not a regular file"), std::string::npos) << err_;
}

TEST_F(ZolprofMessages, ASessionGivenTwiceAndAModuleBeyondTheProjectAreRefused) {
  LoadBoth();
  const std::string a = Pfd(run_.log);
  EXPECT_EQ(Zolprof("merge " + Q(a) + " " + Q(a)), 1);
  EXPECT_NE(err_.find("given twice"), std::string::npos) << err_;
  EXPECT_EQ(Zolprof("source " + Q(a) + " --module 99999 -o " + Q(dir_ / "p.htm")), 1);
  EXPECT_NE(err_.find("module 99999 or procedure 0 is beyond the project"), std::string::npos)
      << err_;
  EXPECT_FALSE(FileExist(dir_ / "p.htm"));
}

TEST_F(ZolprofMessages, EveryCommandTakesBothSpellingsOfAMeasure) {
  LoadBoth();
  const std::string a = Q(Pfd(run_.log));
  for (const char* measure : {"childtotal", "child-total", "2"}) {
    EXPECT_EQ(Zolprof("table --tab procedures --measure " + std::string(measure) + " " + a), 0)
        << err_;
    EXPECT_EQ(
        Zolprof("source " + a + " --module 1 --measure " + measure + " -o " + Q(dir_ / "s.htm")), 0)
        << err_;
    EXPECT_EQ(Zolprof("tree --measure " + std::string(measure) + " " + a), 0) << err_;
  }
  EXPECT_EQ(Zolprof("table --help"), 0);
  EXPECT_NE(out_.find("total, average, childtotal, childaverage or coverage"), std::string::npos)
      << out_;
  EXPECT_NE(Zolprof("source " + a + " --module 1 --measure " + std::string(5000, '9') + " -o " +
                    Q(dir_ / "s.htm")),
            0);
  EXPECT_LT(err_.size(), 400u) << "the text given is not echoed whole";
}

TEST_F(ZolprofMessages, AHugeProbeNumberIsNotEchoedWhole) {
  const std::string module = run_.project.Module(1).FileName;
  const fs::path file = fs::path(run_.vbp).parent_path() / module;
  AppendToFile(file.string(),
               "\r\nzolProfiler.zolExecuteLine " + std::string(1000000, '7') + "\r\n");
  EXPECT_NE(Zolprof("scan " + Q(run_.vbp)), 0);
  EXPECT_NE(err_.find("out of range"), std::string::npos) << err_.substr(0, 300);
  EXPECT_LT(err_.size(), 1000u);
}

}  // namespace
}  // namespace zol

#endif  // ZOLPROF_PATH
