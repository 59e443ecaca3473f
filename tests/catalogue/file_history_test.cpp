// The recent-file lists: newest first, ten places, no entry twice.

#include "catalogue/file_history.h"

#include <gtest/gtest.h>

#include "catalogue_fixture.h"

namespace zol {
namespace {

using testing::CatalogueTest;

class FileHistoryTest : public CatalogueTest {
 protected:
  std::string Session(int i) { return dir_.Put("runs/run" + std::to_string(i) + ".pfd", "x"); }

  std::vector<std::string> List(const std::string& prefix) {
    const Array1<std::string> list = RetrieveFileHistory(*ws_, prefix);
    std::vector<std::string> out;
    for (int i = 1; i <= list.UBound(); ++i) out.push_back(list(i));
    return out;
  }
};

TEST_F(FileHistoryTest, NewestFirstTheEleventhFallsOffAndNothingStandsTwice) {
  for (int i = 1; i <= 11; ++i) AddToFileHistory(*ws_, Session(i));
  std::vector<std::string> list = List("HistorySession");
  ASSERT_EQ(list.size(), 10u);
  EXPECT_EQ(list.front(), dir_ / "runs/run11.pfd");
  EXPECT_EQ(list.back(), dir_ / "runs/run2.pfd") << "run1 fell off";
  EXPECT_EQ(Setting("HistorySession10"), dir_ / "runs/run2.pfd");

  // An entry already listed moves to the top and leaves its old place; the
  // comparison ignores case.
  std::string again = dir_ / "runs/run5.pfd";
  AddToFileHistory(*ws_, again);
  list = List("HistorySession");
  EXPECT_EQ(list[0], again);
  EXPECT_EQ(list[1], dir_ / "runs/run11.pfd");
  EXPECT_EQ(std::count(list.begin(), list.end(), again), 1);
  EXPECT_EQ(list.back(), dir_ / "runs/run2.pfd") << "nothing else fell off";
}

TEST_F(FileHistoryTest, LogsStandAsTheirSessionFilesAndMissingFilesAreLeftOut) {
  Session(1);
  AddToFileHistory(*ws_, dir_ / "runs/run1.pfl");  // the log has become run1.pfd
  AddToFileHistory(*ws_, dir_ / "runs/gone.pfd");
  AddToFileHistory(*ws_, dir_.Put("Proj/Orig.vbp", "Name=\"Orig\""));
  EXPECT_EQ(List("HistorySession")[0], dir_ / "runs/run1.pfd");
  EXPECT_EQ(List("HistorySession")[1], "");
  EXPECT_EQ(List("HistoryProject")[0], dir_ / "Proj/Orig.vbp") << "a .vbp is a project";
}

TEST_F(FileHistoryTest, RetrieveClosesGapsLeftInTheSettings) {
  SetSetting("HistorySession2", "b");
  SetSetting("HistorySession5", "e");
  SetSetting("HistorySession10", "j");
  EXPECT_EQ(List("HistorySession"),
            (std::vector<std::string>{"b", "e", "j", "", "", "", "", "", "", ""}));
}

TEST_F(FileHistoryTest, ARunsSettingsFileRecordsItsOriginalProject) {
  // Written on Windows: the original project is found beside the settings.
  dir_.Put("Work/zolOptions_Orders.ini",
           "[Source]\r\nProject=C:\\Dev\\Orig\\Orders.vbp\r\n[Other]\r\n");
  dir_.Put("Work/Orders.vbp", "Name=\"Orders\"");
  AddProjectToFileHistory(*ws_, "C:\\Dev\\Work\\zolOptions_Orders.ini", dir_ / "Work");
  EXPECT_EQ(List("HistoryProject")[0], dir_ / "Work/Orders.vbp")
      << "the Windows path is looked for beside the settings file";

  AddProjectToFileHistory(*ws_, dir_.Put("Work/empty.ini", "[Source]\r\n"));
  AddProjectToFileHistory(*ws_, dir_ / "Work/missing.ini");
  EXPECT_EQ(List("HistoryProject")[1], "") << "no project named: nothing recorded";
}

}  // namespace
}  // namespace zol
