// The main window's pages: the central dispatcher showCurrentPage, the grids'
// click chain and context menu, the source page and its links, the measures,
// the navigation through places seen, the export of a grid.

#include <QCursor>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMenu>
#include <QStackedWidget>
#include <QTabBar>
#include <QUrl>
#include <cstdio>
#include <cstdlib>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/temp_files.h"
#include "base/text.h"
#include "flow/flow_graph.h"
#include "flow/flow_options.h"
#include "grid/grid_builders.h"
#include "grid/grid_click.h"
#include "grid/grid_export.h"
#include "grid/grid_selection.h"
#include "source_view/font_metrics.h"
#include "source_view/html_options.h"
#include "source_view/source_links.h"
#include "ui/busy_scope.h"
#include "ui/flow_pane.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/gui_prompter.h"
#include "ui/main_toolbar.h"
#include "ui/main_window.h"
#include "ui/project_tree_view.h"
#include "ui/qt_font_metrics.h"
#include "ui/qt_text.h"
#include "ui/report_pane.h"
#include "ui/session_header_bar.h"
#include "ui/source_pane.h"
#include "ui/title_strip_widget.h"

namespace zol {

namespace {

// The digit of the measure in the key of the last display: 1 coverage, 2 the
// own times, 3 the times with children.
char MeasureDigit(std::int32_t displayInfoType) {
  if (displayInfoType == 4) return '1';
  return displayInfoType <= 1 ? '2' : '3';
}

const char* HelpTopic(int tab) {
  switch (tab) {
    case 5:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Source view.htm";
    case 6:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Flowchart view.htm";
    case 7:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Reports and Exports.htm";
    default:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Grid view.htm";
  }
}

// ZOLMARK_TIMING_LOG set (to anything) prints how long each page took to draw.
bool TimingLogOn() {
  static const bool on = std::getenv("ZOLMARK_TIMING_LOG") != nullptr;
  return on;
}

}  // namespace

// --- The dispatcher ---

void MainWindow::showCurrentPage() {
  if (tabs_->currentIndex() == reportsTabIndex_) {
    // The Reports page draws nothing of the selection; it reads it at "GO!".
    ws_.Active_tbsTab = IndexOf(Tab::Reports);
    pages_->setCurrentWidget(reportPane_);
    helpTopic_ = HelpTopic(IndexOf(Tab::Reports));
    return;
  }
  const int tab = tabs_->currentIndex() + 1;
  ws_.Active_tbsTab = tab;
  pages_->setCurrentWidget(tab == 5   ? static_cast<QWidget*>(sourcePane_)
                           : tab == 6 ? static_cast<QWidget*>(flowPane_)
                                      : gridPage_);
  helpTopic_ = HelpTopic(tab);
  sourcePane_->ShowOptions(ws_.view.OptionsHtml[static_cast<std::size_t>(ws_.DisplayInfoType)]);

  const std::string key = tree_.Nodes().SelectedKey();
  if (tree_.Nodes().Count() == 0 || key.empty()) return;
  if (ws_.fOnlyGroups && key != kCompareKey) return;
  if (tab != 5 && tab != 6) {
    lastPage_ = key + "-" + std::to_string(tab) + "-" + MeasureDigit(ws_.DisplayInfoType);
  }
  gridPage_->Headers()->Release();
  QElapsedTimer drawing;
  drawing.start();
  {
    BusyScope busy(*this);
    if (tab == 5) {
      updateSourceView(ws_.cs, ws_.cMod, ws_.cPro, ws_.cLine);
      ws_.cLine = 0;
    } else if (tab == 6) {
      drawFlowPage();
    } else {
      ShowGridTab(tab);
    }
  }
  if (TimingLogOn()) {
    std::fprintf(stderr, "zolmark-profiler: tab %d of %s drawn in %lld ms\n", tab, key.c_str(),
                 static_cast<long long>(drawing.elapsed()));
  }
  if (!nav_.fDuringNav()) nav_.NewNav(ws_, *this);
}

void MainWindow::ShowGridTab(int tab) {
  UpdateTitle();
  const GridSelection sel = GridSelectionOf(ws_);
  GridBuild build = ShowTab(ws_, sel, gridPage_->Grid()->Memory(), tab);
  ws_.prompter().ShowProgress(false);
  ws_.prompter().SetProgressText("");
  gridPage_->ShowBuild(std::move(build), tab, ws_.DisplayInfoType);
}

void MainWindow::SelectScopeTab(int tab) {
  const bool reports = tab == IndexOf(Tab::Reports);
  if (!reports && (tab < 1 || tab > kTabCount)) return;
  const int index = reports ? reportsTabIndex_ : tab - 1;
  if (tabs_->currentIndex() == index) {
    showCurrentPage();
  } else {
    const QSignalBlocker block(tabs_);
    tabs_->setCurrentIndex(index);
    showCurrentPage();
  }
}

void MainWindow::UpdateTitle() {
  const TitleStrip strip = zol::UpdateTitle(ws_, ws_.cs, ws_.cMod, ws_.cPro);
  title_->Show(strip);
  // The window's title names the session on display, as the task bar shows it.
  setWindowTitle(strip.Session.Visible && !strip.Session.Text.empty()
                     ? Q(strip.Session.Text) + " - " + kMessageTitle
                     : QString(kMessageTitle));
}

void MainWindow::ClearViews() {
  pageCache_.Forget();
  title_->Clear();
  setWindowTitle(kMessageTitle);
  SortMemory blankSort;
  GridSelection none;
  none.DisplayInfoType = ws_.DisplayInfoType;
  gridPage_->ShowBuild(ShowLines(ws_, none, blankSort, true), 4, ws_.DisplayInfoType);
  gridPage_->ResetChart(true);
  sourcePane_->Browser()->ShowNotice("");
  nav_.Clear();
  nav_.UpdateNavToolbar(*this);
}

// --- The tree ---

void MainWindow::ClickTreeNode(const std::string& key) {
  if (Busy()) return;
  RunGuarded(this, [&] {
    {
      BusyScope busy(*this);
      tree_.NodeClicked(key);
    }
    SyncTree();
  });
}

void MainWindow::MoveTreeTo(std::int32_t cs, std::int32_t cMod, std::int32_t cPro) {
  std::string session = "S" + std::to_string(cs);
  for (std::int32_t sg = 1; sg <= ws_.nSessionGroup && ws_.SessionGroup.InRange(sg); ++sg) {
    if (cs != 0 && ws_.SessionGroup(sg).GroupMergedSession == cs)
      session = "G" + std::to_string(sg);
  }
  std::string exact = session;
  if (cMod != 0) exact += "M" + std::to_string(cMod);
  if (cPro != 0) exact += "P" + std::to_string(cPro);
  std::string key = exact;
  if (!tree_.Nodes().Find(key)) key = session;
  if (!tree_.Nodes().Find(key)) key = cs < 0 ? kCompareKey : cs == 0 ? kMergeKey : "";
  if (key.empty() || !tree_.Nodes().Find(key)) return;
  tree_.MoveTo(key);
  if (key != exact) {
    // The tree has no node for the place itself: the place stands as given.
    ws_.cs = cs;
    ws_.cMod = cMod;
    ws_.cPro = cPro;
  }
  SyncTree();
}

// --- Grids ---

void MainWindow::onGridClicked(int clickKind, int row, int column) {
  if (Busy()) return;
  if (!ws_.Project.InRange(ws_.cp)) return;
  const Table& table = gridPage_->Grid()->table();
  if (row < 1 || row > table.RowCount()) return;
  const ClickTarget target = zol::ClickedPlace(ws_.Project(ws_.cp), table, row, column);
  menuTarget_ = target;
  if (clickKind == kRightClick) {
    ShowPopupMenu();
    return;
  }
  ws_.cMod = target.module;
  ws_.cPro = target.procedure;
  ws_.cLine = target.line;
  MoveTreeTo(ws_.cs, ws_.cMod, ws_.cPro);
  ws_.cLine = target.line;
  SelectScopeTab(TabAfterClick(clickKind, ws_.Active_tbsTab));
}

void MainWindow::ShowPopupMenu() {
  gridMenu_->popup(QCursor::pos());
}

void MainWindow::ViewIn(int tab) {
  if (Busy()) return;
  RunGuarded(this, [&] {
    ws_.cMod = menuTarget_.module;
    ws_.cPro = menuTarget_.procedure;
    MoveTreeTo(ws_.cs, ws_.cMod, ws_.cPro);
    ws_.cLine = menuTarget_.line;
    SelectScopeTab(tab);
  });
}

void MainWindow::ExportGrid() {
  const Table& table = gridPage_->Grid()->table();
  if (table.RowCount() == 0) {
    ws_.prompter().ShowMessage(kEmptyTableMessage, MessageKind::Exclamation);
    return;
  }
  const QString csv = "Text, Comma delimited (*.csv)";
  const QString txt = "Text, Tab delimited (*.txt)";
  QString filter = options_.LastExportFileType == 1 ? csv : txt;
  const QString file = QFileDialog::getSaveFileName(this, tr("Export the table"), QString(),
                                                    csv + ";;" + txt, &filter);
  if (file.isEmpty()) return;
  std::string name = FromQPath(file);
  if (QFileInfo(file).suffix().isEmpty()) name += filter == csv ? ".csv" : ".txt";
  ExportGridToFile(table, name, ws_.prompter(), options_.LastExportFileType);
}

void MainWindow::ViewGridInSpreadsheet() {
  const Table& table = gridPage_->Grid()->table();
  if (table.RowCount() == 0) {
    ws_.prompter().ShowMessage(kEmptyTableMessage, MessageKind::Exclamation);
    return;
  }
  std::string file = GetTempFileName("", "tmp", false, ws_.tempFiles);
  file = file.substr(0, file.size() - 4) + ".csv";
  ws_.tempFiles.AddToDeleteOnExit(file, false);
  if (!ExportTable(table, file, true, ws_.prompter())) return;
  if (!QDesktopServices::openUrl(QUrl::fromLocalFile(QPath(file)))) {
    ws_.prompter().ShowMessage(
        "No program of this desktop opens CSV files. The table is in:\n" + file,
        MessageKind::Information);
  }
}

// --- Source ---

void MainWindow::updateSourceView(std::int32_t sessionId, std::int32_t moduleId,
                                  std::int32_t procedureId, std::int32_t line) {
  UpdateTitle();
  SourceBrowser* browser = sourcePane_->Browser();
  if (!pageCache_.NeedsReload({sessionId, moduleId, procedureId, line, ws_.DisplayInfoType}))
    return;
  if (auto text = SourceUnavailableText(ws_, sessionId)) {
    browser->ShowNotice(*text);
    return;
  }
  if (!ws_.Session.InRange(sessionId) || !ws_.Session(sessionId).Loaded) {
    browser->ShowNotice("");
    return;
  }
  const Project& project = ws_.Project(ws_.Session(sessionId).Project);
  std::int32_t module = moduleId;
  std::int32_t procedure = procedureId;
  if (module == 0 && procedure != 0 && project.Procedure.InRange(procedure)) {
    module = project.Procedure(procedure).BelongToModule;
  }
  // A session or a project alone shows its first module.
  if (module == 0) module = 1;
  ShowSourcePage(ws_, sessionId, module, procedure, *browser);
  if (line != 0 && project.CodeLine.InRange(line)) {
    browser->ScrollToStatement(module, project.CodeLine(line).BelongToProcedure, line);
  }
}

bool MainWindow::OnSourceLink(const std::string& url) {
  const LinkDecision decision = DecideLink(url);
  if (decision.openMenu) {
    menuTarget_ = ClickTarget{decision.module, decision.procedure, decision.line};
    sourcePane_->setFocus();
    ShowPopupMenu();
  }
  return !decision.cancel;
}

void MainWindow::OnSourceOptionsChanged() {
  ws_.view.OptionsHtml[static_cast<std::size_t>(ws_.DisplayInfoType)] = sourcePane_->Options();
  try {
    SaveOptionsHtml(ws_);
  } catch (const std::exception&) {
    // The page still follows the choice; only the settings file missed it.
  }
  pageCache_.Forget();
  if (ws_.Active_tbsTab == 5 && !tree_.Nodes().SelectedKey().empty()) {
    RunGuarded(this, [this] { updateSourceView(ws_.cs, ws_.cMod, ws_.cPro, 0); });
  }
}

void MainWindow::OnSourceFontChanged(const QString& family, int size) {
  SetFontHTML(ws_, QtFontMetrics(), ToCp1252(family), size);
  try {
    const std::string ini = GetIniFile(ws_.appFolder);
    VBWritePrivateProfileString("Profiler", "FontHTML", ws_.view.FontHTML, ini);
    VBWritePrivateProfileString("Profiler", "FontSizeHTML", std::to_string(ws_.view.FontSizeHTML),
                                ini);
  } catch (const std::exception&) {
  }
  if (!sourcePane_->Browser()->PageFile().empty() && FileExist(SourcePageFile(ws_))) {
    RunGuarded(this, [this] { UpdateHtml(ws_, *sourcePane_->Browser()); });
  }
}

// --- Flow ---

void MainWindow::drawFlowPage() {
  UpdateTitle();
  const FlowOptions options = flowPane_->Options();
  const Selection sel = SelectionOf(ws_);
  FlowGraph graph;
  try {
    graph = BuildFlowGraph(ws_, sel, options.Depths());
  } catch (const FlowDataError& e) {
    // A session file whose call pairs don't fit its project: said on the
    // page, the rest of the window goes on.
    const std::int32_t slot = sel.session.sessionIndex();
    const std::string file =
        ws_.Session.InRange(slot) ? ws_.Session(slot).SessionFile : std::string();
    flowPane_->ShowNotice("\r\n    " + file + ": " + e.what());
    return;
  }
  if (!graph.Message.empty()) {
    flowPane_->ShowNotice(FlowNoticeText(graph.Message));
    return;
  }
  if (!graph.HasChart()) {
    // A module without calls shows nothing.
    flowPane_->ShowNotice("");
    return;
  }
  // The procedure the chart is about becomes the selected one.
  ws_.cMod = graph.Module;
  ws_.cPro = graph.Procedure;
  UpdateTitle();
  flowPane_->ShowChart(ws_, std::move(graph), sel.measure);
}

void MainWindow::OnFlowNodeClicked(std::int32_t procedure) {
  if (Busy() || !ws_.Project.InRange(ws_.cp)) return;
  const Project& project = ws_.Project(ws_.cp);
  if (!project.Procedure.InRange(procedure)) return;
  RunGuarded(this, [&] {
    ws_.cMod = project.Procedure(procedure).BelongToModule;
    ws_.cPro = procedure;
    MoveTreeTo(ws_.cs, ws_.cMod, ws_.cPro);
    ws_.cLine = 0;
    SelectScopeTab(6);
  });
}

void MainWindow::OnFlowOptionsChanged() {
  try {
    SaveFlowOptions(flowPane_->Options(), GetIniFile(ws_.appFolder));
  } catch (const std::exception&) {
    // The chart still follows the choice; only the settings file missed it.
  }
  if (ws_.Active_tbsTab == 6 && !tree_.Nodes().SelectedKey().empty() && !Busy()) {
    RunGuarded(this, [this] { drawFlowPage(); });
  }
}

// --- Measures and navigation ---

void MainWindow::SetMeasure(int displayInfoType) {
  if (displayInfoType < 0 || displayInfoType > 4) return;
  ws_.DisplayInfoType = displayInfoType;
  toolbar_->PressMeasure(displayInfoType);
  tree_.UpdateColors();
  SyncTree();
  title_->updateAnalysis(displayInfoType);
  showCurrentPage();
}

void MainWindow::BrowseBack() {
  if (Busy()) return;
  nav_.BrowseBack(ws_, *this);
}

void MainWindow::BrowseFwd() {
  if (Busy()) return;
  nav_.BrowseFwd(ws_, *this);
}

void MainWindow::SelectTreeNode(const NavPlace& place) {
  MoveTreeTo(place.Session, place.Module, place.Procedure);
  ws_.cLine = place.Line;
}

void MainWindow::PressMeasureButton(const std::string& key) {
  for (int m = 0; m < 5; ++m) {
    if (key == kMeasureKeys[m]) {
      toolbar_->PressMeasure(m);
      tree_.UpdateColors();
      SyncTree();
      title_->updateAnalysis(m);
    }
  }
}

void MainWindow::SelectTab(std::int32_t tab) {
  SelectScopeTab(tab);
}

void MainWindow::EnableNavButtons(bool back, bool forward) {
  toolbar_->Button("BACK")->setEnabled(back);
  toolbar_->Button("FWD")->setEnabled(forward);
}

}  // namespace zol
