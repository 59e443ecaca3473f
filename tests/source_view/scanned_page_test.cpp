// Pages of projects that went through the real pipeline: a generated project,
// instrumented, scanned into side files, with the values of a simulated run.
// Whatever the source holds, a page shows every line of its module once, in
// order, and a procedure page runs from the procedure's head to its End line.

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/scoped_temp_dir.h"
#include "base/text.h"
#include "catalogue/session_catalogue.h"
#include "project/project_info.h"
#include "source_view/source_page.h"
#include "source_view/timing_colours.h"
#include "support/fixture_run.h"

namespace zol {
namespace {

// The source text of a page: the code cells, unescaped, one row after the
// other. An empty statement is shown as one blank.
std::vector<std::string> PageLines(const std::string& page) {
  std::vector<std::string> lines;
  for (std::size_t pos = page.find("<PRE>"); pos != std::string::npos;
       pos = page.find("<PRE>", pos)) {
    pos += 5;
    if (page.compare(pos, 3, "<B>") == 0) pos += 3;
    const std::size_t end = page.find("</PRE>", pos);
    if (end == std::string::npos) break;
    std::string text = page.substr(pos, end - pos);
    if (text.ends_with("</B>")) text.resize(text.size() - 4);
    pos = end + 6;
    if (text == " ") text.clear();
    text = Replace(text, "<BR>", "\n");
    text = Replace(text, "&lt;", "<");
    text = Replace(text, "&gt;", ">");
    text = Replace(text, "&quot;", "\"");
    text = Replace(text, "&amp;", "&");
    for (const std::string& line : Split(text + "\n", "\n")) lines.push_back(line);
    lines.pop_back();
  }
  return lines;
}

// The lines of a side file, as many as the line table covers at most (the
// table may run longer than the text).
std::vector<std::string> SideFileLines(const std::string& text, int count) {
  std::vector<std::string> lines = Split(text, "\r\n");
  if (lines.size() > static_cast<std::size_t>(count)) lines.resize(static_cast<std::size_t>(count));
  for (std::string& l : lines) {
    if (l == " ") l.clear();
  }
  return lines;
}

class ScannedPages : public ::testing::TestWithParam<std::uint32_t> {
 protected:
  void SetUp() override {
    testing::SimulatedLogShape shape;
    shape.run.seed = GetParam();
    shape.run.probes = 3000;
    const auto run = testing::MakeFixtureRun(dir.path(), GetParam(), "run1.pfl", shape);
    ws.appFolder = dir / "app";
    ResetRtfPath(ws);
    cs = AddSession(ws, run.log);
    ASSERT_GT(cs, 0);
    ASSERT_TRUE(LoadSession(ws, cs));
    LoadColors(ws, true, "");
    ws.view.OptionsHtml[0] = HtmlPageOptions{{true, false, true, false, false}, 3};
  }
  std::string Page(std::int32_t module, std::int32_t procedure) {
    return GetHtmlCode(ws, cs, module, procedure, 0, Measure::Total, true);
  }

  testing::ScopedTempDir dir;
  Workspace ws;
  std::int32_t cs = 0;
};

TEST_P(ScannedPages, ModulePageShowsEveryLineOnceInOrder) {
  const std::int32_t p = ws.Session(cs).Project;
  const Project& project = ws.Project(p);
  ASSERT_GT(project.ModulesNumber, 0);
  for (std::int32_t m = 1; m <= project.ModulesNumber; ++m) {
    SCOPED_TRACE("module " + project.Module(m).Name);
    const int count = project.Module(m).RTFLine.UBound();
    EXPECT_EQ(PageLines(Page(m, 0)), SideFileLines(LoadFile(RtfFileName(ws, p, m)), count));
  }
}

TEST_P(ScannedPages, ProcedurePageRunsFromHeadToEnd) {
  const std::int32_t p = ws.Session(cs).Project;
  const Project& project = ws.Project(p);
  for (std::int32_t id = 1; id <= project.ProceduresNumber; ++id) {
    const Procedure& proc = project.Procedure(id);
    // Only a procedure with exit probes has its End line marked as one.
    if (!proc.IsProfiled && !proc.IsDead) continue;
    SCOPED_TRACE("procedure " + proc.Name);
    const std::string page = Page(proc.BelongToModule, id);
    const std::vector<std::string> shown = PageLines(page);
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(Left(LTrim(shown.back()), 4), "End ");
    const std::vector<std::string> side =
        SideFileLines(LoadFile(RtfFileName(ws, p, proc.BelongToModule)),
                      project.Module(proc.BelongToModule).RTFLine.UBound());
    const auto first = side.begin() + (proc.Position - 1);
    ASSERT_LE(static_cast<std::size_t>(proc.Position - 1) + shown.size(), side.size());
    EXPECT_EQ(shown, std::vector<std::string>(first, first + static_cast<long>(shown.size())));
    EXPECT_EQ(page.find("<A NAME=\"P"), page.rfind("<A NAME=\"P"));  // its own anchor only
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ScannedPages, ::testing::Values(3U, 8U, 21U));

}  // namespace
}  // namespace zol
