#include "ui/session_rename.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "catalogue/session_catalogue.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

using testing::DemoCopy;

TEST(SessionNames, RefusedNamesGetTheirExactWarning) {
  const std::string characters =
      "A session name can not contain any of the following characters:\n/\\<>*?|:\"";
  for (const char* name : {"a:b", "a/b", "a\\b", "<x>", "x*", "what?", "a|b", "say \"x\""}) {
    EXPECT_EQ(SessionNameRefusal(name).value_or(""), characters) << name;
  }
  const std::string reserved =
      "The following names are reserved: Project, Module, Procedure, Line !\n"
      "Please select a different name.";
  for (const char* name : {"Project", "Module", "Procedure", "Line"}) {
    EXPECT_EQ(SessionNameRefusal(name).value_or(""), reserved) << name;
  }
  EXPECT_FALSE(SessionNameRefusal("project"));  // the header words are matched exactly
  EXPECT_FALSE(SessionNameRefusal("Monday run 2"));
}

class SessionRenameTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ws_ = testing::DemoWorkspace(demo_);
    monday_ = AddSession(*ws_, demo_.File("Monday.pfl"));
    ASSERT_TRUE(LoadSession(*ws_, monday_));
    tree_ = std::make_unique<ProjectTree>(*ws_);
    tree_->SelectSession(monday_, "", true);
    tuesday_ = AddSession(*ws_, demo_.File("Tuesday.pfl"));
  }

  DemoCopy demo_;
  std::unique_ptr<Workspace> ws_;
  std::unique_ptr<ProjectTree> tree_;
  std::int32_t monday_ = 0;
  std::int32_t tuesday_ = 0;
};

TEST_F(SessionRenameTest, ARenameMovesTheFileAndRenamesTheTreeNode) {
  const RenameOutcome outcome = RenameSessionRow(*ws_, *tree_, "K1", "Monday morning");
  EXPECT_TRUE(outcome.accepted);
  EXPECT_EQ(ws_->Session(monday_).Name, "Monday morning");
  EXPECT_EQ(ws_->Session(monday_).SessionFile, demo_.File("Monday morning.pfd"));
  EXPECT_TRUE(FileExist(demo_.File("Monday morning.pfd")));
  EXPECT_FALSE(FileExist(demo_.File("Monday.pfd")));
  EXPECT_EQ(tree_->Nodes().Find("S1")->Text.rfind("Monday morning (LC:", 0), 0u);
}

TEST_F(SessionRenameTest, ANameInUseInTheFolderIsRefused) {
  // Tuesday's log lies beside Monday's session file.
  const RenameOutcome outcome = RenameSessionRow(*ws_, *tree_, "K1", "Tuesday");
  EXPECT_FALSE(outcome.accepted);
  EXPECT_EQ(outcome.message, "This session name already exists !\nPlease select another name.");
  EXPECT_EQ(ws_->Session(monday_).Name, "Monday");
  EXPECT_TRUE(FileExist(demo_.File("Monday.pfd")));
}

TEST_F(SessionRenameTest, ACaseChangeRenamesNoFile) {
  const RenameOutcome outcome = RenameSessionRow(*ws_, *tree_, "K1", "MONDAY");
  EXPECT_TRUE(outcome.accepted);
  EXPECT_EQ(ws_->Session(monday_).Name, "MONDAY");
  EXPECT_EQ(ws_->Session(monday_).SessionFile, demo_.File("Monday.pfd"));
  EXPECT_TRUE(FileExist(demo_.File("Monday.pfd")));
}

TEST_F(SessionRenameTest, AnUnloadedLogKeepsItsExtension) {
  EXPECT_TRUE(RenameSessionRow(*ws_, *tree_, "K2", "Tue").accepted);
  EXPECT_EQ(ws_->Session(tuesday_).SessionFile, demo_.File("Tue.pfl"));
  EXPECT_TRUE(FileExist(demo_.File("Tue.pfl")));
  // No tree node for a session that isn't ticked; nothing else to rename.
  EXPECT_FALSE(tree_->Nodes().Find("S2"));
  EXPECT_FALSE(RenameSessionRow(*ws_, *tree_, "K99", "x").accepted);
  EXPECT_FALSE(RenameSessionRow(*ws_, *tree_, "bad", "x").accepted);
}

}  // namespace
}  // namespace zol
