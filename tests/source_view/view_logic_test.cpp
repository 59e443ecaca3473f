#include <gtest/gtest.h>

#include "base/scoped_temp_dir.h"
#include "source_view/html_options.h"
#include "source_view/source_links.h"
#include "source_view/view_state.h"

namespace zol {
namespace {

TEST(SourceLinks, PageLinksOpenTheMenuOthersPass) {
  EXPECT_FALSE(DecideLink("file:///tmp/run/code.HTM").cancel);
  EXPECT_FALSE(DecideLink("file:///tmp/run/").cancel);
  EXPECT_FALSE(DecideLink("file:///tmp/run/code.htm#legend").cancel);

  const LinkDecision d = DecideLink("about:blank|2|14|307");
  EXPECT_TRUE(d.cancel);
  EXPECT_TRUE(d.openMenu);
  EXPECT_EQ(d.module, 2);
  EXPECT_EQ(d.procedure, 14);
  EXPECT_EQ(d.line, 307);

  const LinkDecision short_link = DecideLink("|2|14");
  EXPECT_TRUE(short_link.cancel);
  EXPECT_FALSE(short_link.openMenu);
  EXPECT_EQ(short_link.module, 0);
}

TEST(HtmlOptions, DefaultsAndSettingsRoundTrip) {
  testing::ScopedTempDir dir;
  const std::string ini = dir / "Zolmark.ini";
  Workspace ws;
  LoadOptionsHtml(ws, ini);
  EXPECT_EQ(ws.view.OptionsHtml[0].Column, (std::array<bool, 5>{true, false, true, false, false}));
  EXPECT_EQ(ws.view.OptionsHtml[3].Column, (std::array<bool, 5>{true, false, false, true, false}));
  EXPECT_EQ(ws.view.OptionsHtml[4].Column, (std::array<bool, 5>{true, false, false, false, false}));
  EXPECT_EQ(ws.view.OptionsHtml[1].ColorScheme, 3);

  ws.view.OptionsHtml[2] = HtmlPageOptions{{false, true, false, false, true}, 2};
  SaveOptionsHtml(ws, ini);
  Workspace again;
  LoadOptionsHtml(again, ini);
  EXPECT_EQ(again.view.OptionsHtml[2].Column, ws.view.OptionsHtml[2].Column);
  EXPECT_EQ(again.view.OptionsHtml[2].ColorScheme, 2);
}

TEST(ViewState, ReloadOnlyOnChangeAndUnavailableSelections) {
  SourcePageCache cache;
  const SessionRef one = SessionRef::single(1);
  EXPECT_TRUE(cache.NeedsReload({one, 2, 3, 0, Measure::Total}));
  EXPECT_FALSE(cache.NeedsReload({one, 2, 3, 0, Measure::Total}));
  EXPECT_TRUE(cache.NeedsReload({one, 2, 3, 0, Measure::Coverage}));
  EXPECT_TRUE(cache.NeedsReload({SessionRef::compared(), 0, 0, 0, Measure::Coverage}));
  EXPECT_TRUE(cache.NeedsReload({SessionRef::comparedGroups(), 0, 0, 0, Measure::Coverage}))
      << "compared groups are another page than compared sessions";
  cache.Forget();
  EXPECT_TRUE(cache.NeedsReload({SessionRef::comparedGroups(), 0, 0, 0, Measure::Coverage}));

  Workspace ws;
  ws.SessionSlot(2).IsMergedGroupSession = true;
  ws.SessionSlot(1);
  EXPECT_EQ(SourceUnavailableText(ws, SessionRef::compared()),
            "Unavailable (compared sessions)\r\nPlease click the Procedures tab");
  EXPECT_EQ(SourceUnavailableText(ws, SessionRef::merged()),
            "Unavailable (heterogeneous sessions)\r\nPlease click the Procedures tab");
  EXPECT_EQ(SourceUnavailableText(ws, SessionRef::group(1, 2)),
            "Unavailable (group session)\r\nor select a project inside the group");
  EXPECT_FALSE(SourceUnavailableText(ws, SessionRef::single(1)).has_value());
  ws.fHomogeneous = true;
  EXPECT_FALSE(SourceUnavailableText(ws, SessionRef::merged()).has_value());
}

TEST(ViewState, TitleStrip) {
  Workspace ws;
  ws.SessionGroup.ReDim(1);
  ws.SessionGroup(1).Name = "Nightly";
  ws.SessionSlot(1).Name = "Run 1";
  ws.Session(1).Group = 1;
  ws.Project.ReDim(1);
  ws.Project(1).Module.ReDim(1);
  ws.Project(1).Module(1) = Module{"M.bas", "Module1", 1, {}, 1};
  ws.Project(1).Procedure.ReDim(1);
  ws.Project(1).Procedure(1).Name = "Main";
  ws.Project(1).Procedure(1).Type = 2;

  Selection sel{.session = SessionRef::single(1), .project = 1, .module = 1, .procedure = 1};
  const TitleStrip t = UpdateTitle(ws, sel);
  EXPECT_EQ(t.Group.Text, "Nightly");
  EXPECT_EQ(t.Group.Icon, "GROUP");
  EXPECT_EQ(t.Session.Text, "Run 1");
  EXPECT_EQ(t.Module.Icon, "TYPE1");
  EXPECT_EQ(t.Procedure.Text, "Main");
  EXPECT_EQ(t.Procedure.Icon, "PROC2");

  const TitleStrip compared = UpdateTitle(ws, {.session = SessionRef::compared(), .project = 1});
  EXPECT_EQ(compared.Session.Text, "Compared Sessions");
  EXPECT_FALSE(compared.Group.Visible);
  EXPECT_FALSE(compared.Module.Visible);
  const Selection merged{.session = SessionRef::merged(), .project = 1, .module = 1};
  EXPECT_EQ(UpdateTitle(ws, merged).Session.Icon, "MERGE");
  EXPECT_TRUE(UpdateTitle(ws, merged).Module.Visible);
  EXPECT_FALSE(UpdateTitle(ws, merged).Procedure.Visible);
}

}  // namespace
}  // namespace zol
