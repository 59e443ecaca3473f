#include "session/workspace.h"

#include <gtest/gtest.h>

namespace zol {
namespace {

TEST(Workspace, StartsWithOnlyTheWorkingSlots) {
  Workspace ws;
  EXPECT_EQ(ws.Session.UBound(), 0);
  EXPECT_EQ(ws.SessionGroup.UBound(), 0);
  EXPECT_EQ(ws.Project.UBound(), 0);
  EXPECT_EQ(ws.nSession, 0);

  ws.SessionSlot(3).Name = "third";
  EXPECT_EQ(ws.Session.UBound(), 3);
  EXPECT_EQ(ws.Session(3).Name, "third");
  ws.SessionSlot(2).Name = "second";
  EXPECT_EQ(ws.Session(3).Name, "third");  // growing keeps what is there

  ws.ClearTables();
  EXPECT_EQ(ws.Session.UBound(), 0);
  EXPECT_TRUE(ws.Session(0).Name.empty());
}

TEST(Workspace, ProjectCountsFollowTheProjectAtHand) {
  Workspace ws;
  ws.Project.ReDim(2);
  ws.Project(2).LinesNumber = 10;
  ws.Project(2).ProceduresNumber = 4;
  ws.Project(2).ModulesNumber = 2;
  ws.LoadProjectCounts(2);
  EXPECT_EQ(ws.LinesNumber, 10);
  EXPECT_EQ(ws.ProceduresNumber, 4);
  EXPECT_EQ(ws.ModulesNumber, 2);
  EXPECT_THROW(ws.LoadProjectCounts(3), BoundsError);
}

TEST(RecordingPrompter, AnswersFromItsQueueThenYes) {
  RecordingPrompter p;
  p.answers = {Answer::No};
  EXPECT_EQ(p.Ask("first?"), Answer::No);
  EXPECT_EQ(p.Ask("second?"), Answer::Yes);
  p.ShowMessage("done", MessageKind::Information);
  ASSERT_EQ(p.questions.size(), 2u);
  ASSERT_EQ(p.messages.size(), 1u);
  EXPECT_EQ(p.messages[0].text, "done");
}

}  // namespace
}  // namespace zol
