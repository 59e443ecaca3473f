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
    EXPECT_EQ(sessionNameRefusal(name).value_or(""), characters) << name;
  }
  const std::string reserved =
      "The following names are reserved: Project, Module, Procedure, Line !\n"
      "Please select a different name.";
  for (const char* name : {"Project", "Module", "Procedure", "Line"}) {
    EXPECT_EQ(sessionNameRefusal(name).value_or(""), reserved) << name;
  }
  EXPECT_FALSE(sessionNameRefusal("project"));  // the header words are matched exactly
  EXPECT_FALSE(sessionNameRefusal("Monday run 2"));
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
  SessionRef shown_ = SessionRef::none();
};

TEST_F(SessionRenameTest, ARenameMovesTheFileAndRenamesTheTreeNode) {
  shown_ = SessionRef::single(monday_);
  const RenameOutcome outcome = renameSessionRow(*ws_, *tree_, "K1", "Monday morning", shown_);
  EXPECT_TRUE(outcome.accepted);
  EXPECT_TRUE(outcome.titleChanged) << "the session on screen";
  EXPECT_EQ(ws_->Session(monday_).Name, "Monday morning");
  EXPECT_EQ(ws_->Session(monday_).SessionFile, demo_.File("Monday morning.pfd"));
  EXPECT_TRUE(FileExist(demo_.File("Monday morning.pfd")));
  EXPECT_FALSE(FileExist(demo_.File("Monday.pfd")));
  EXPECT_EQ(tree_->Nodes().Find("S1")->Text.rfind("Monday morning (LC:", 0), 0u);
}

TEST_F(SessionRenameTest, ANameInUseInTheFolderIsRefused) {
  // Tuesday's log lies beside Monday's session file.
  const RenameOutcome outcome = renameSessionRow(*ws_, *tree_, "K1", "Tuesday", shown_);
  EXPECT_FALSE(outcome.accepted);
  EXPECT_EQ(outcome.message, "This session name already exists !\nPlease select another name.");
  EXPECT_EQ(ws_->Session(monday_).Name, "Monday");
  EXPECT_TRUE(FileExist(demo_.File("Monday.pfd")));
}

TEST_F(SessionRenameTest, ACaseChangeRenamesNoFile) {
  const RenameOutcome outcome = renameSessionRow(*ws_, *tree_, "K1", "MONDAY", shown_);
  EXPECT_TRUE(outcome.accepted);
  EXPECT_EQ(ws_->Session(monday_).Name, "MONDAY");
  EXPECT_EQ(ws_->Session(monday_).SessionFile, demo_.File("Monday.pfd"));
  EXPECT_TRUE(FileExist(demo_.File("Monday.pfd")));
}

TEST_F(SessionRenameTest, AnUnloadedLogKeepsItsExtension) {
  shown_ = SessionRef::single(monday_);
  const RenameOutcome other = renameSessionRow(*ws_, *tree_, "K2", "Tue", shown_);
  EXPECT_TRUE(other.accepted);
  EXPECT_FALSE(other.titleChanged) << "another session than the one on screen";
  EXPECT_EQ(ws_->Session(tuesday_).SessionFile, demo_.File("Tue.pfl"));
  EXPECT_TRUE(FileExist(demo_.File("Tue.pfl")));
  // No tree node for a session that isn't ticked; nothing else to rename.
  EXPECT_FALSE(tree_->Nodes().Find("S2"));
  EXPECT_FALSE(renameSessionRow(*ws_, *tree_, "K99", "x", shown_).accepted);
  EXPECT_FALSE(renameSessionRow(*ws_, *tree_, "bad", "x", shown_).accepted);
}

}  // namespace
}  // namespace zol
