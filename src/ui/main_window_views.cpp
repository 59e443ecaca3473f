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
char measureDigit(Measure measure) {
  switch (measure) {
    case Measure::Coverage:
      return '1';
    case Measure::Total:
    case Measure::Average:
      return '2';
    default:
      return '3';
  }
}

const char* helpTopic(Tab tab) {
  switch (tab) {
    case Tab::Source:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Source view.htm";
    case Tab::Flow:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Flowchart view.htm";
    case Tab::Reports:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Reports and Exports.htm";
    default:
      return "\\Zolmark Help File.chm::/Zolmark Profiler Grid view.htm";
  }
}

// ZOLMARK_TIMING_LOG set (to anything) prints how long each page took to draw.
bool timingLogOn() {
  static const bool on = std::getenv("ZOLMARK_TIMING_LOG") != nullptr;
  return on;
}

}  // namespace

// --- The dispatcher ---

void MainWindow::showCurrentPage(NavRecord record) {
  Selection sel = selection_.get();
  if (tabs_->currentIndex() == reportsTabIndex_) {
    // The Reports page draws nothing of the selection; it reads it at "GO!".
    sel.tab = Tab::Reports;
    selection_.set(sel);
    pages_->setCurrentWidget(reportPane_);
    helpTopic_ = helpTopic(Tab::Reports);
    return;
  }
  sel.tab = static_cast<Tab>(tabs_->currentIndex() + IndexOf(Tab::Projects));
  selection_.set(sel);
  const Tab tab = sel.tab;
  pages_->setCurrentWidget(tab == Tab::Source ? static_cast<QWidget*>(sourcePane_)
                           : tab == Tab::Flow ? static_cast<QWidget*>(flowPane_)
                                              : gridPage_);
  helpTopic_ = helpTopic(tab);
  sourcePane_->showOptions(ws_.view.OptionsHtml[static_cast<std::size_t>(IndexOf(sel.measure))]);

  const std::string key = tree_.Nodes().SelectedKey();
  if (tree_.Nodes().Count() == 0 || key.empty()) return;
  if (ws_.fOnlyGroups && key != kCompareKey) return;
  if (tab != Tab::Source && tab != Tab::Flow) {
    lastPage_ = key + "-" + std::to_string(IndexOf(tab)) + "-" + measureDigit(sel.measure);
  }
  gridPage_->headers()->release();
  QElapsedTimer drawing;
  drawing.start();
  {
    BusyScope busy(*this);
    if (tab == Tab::Source) {
      updateSourceView(sel);
      // The line scrolled to is shown once; the next drawing of the page
      // starts at its top.
      Selection shown = selection_.get();
      shown.line = 0;
      selection_.set(shown);
    } else if (tab == Tab::Flow) {
      drawFlowPage();
    } else {
      showGridTab();
    }
  }
  if (timingLogOn()) {
    std::fprintf(stderr, "zolmark-profiler: tab %d of %s drawn in %lld ms\n", IndexOf(tab),
                 key.c_str(), static_cast<long long>(drawing.elapsed()));
  }
  if (record == NavRecord::Yes) nav_.NewNav(selection_.get(), *this);
}

void MainWindow::showGridTab() {
  updateTitle();
  // A copy: events that run while the table is built must not change what
  // it is built for.
  const Selection sel = selection_.get();
  GridBuild build = ShowTab(ws_, sel, gridPage_->grid()->sortMemory());
  ws_.prompter().ShowProgress(false);
  ws_.prompter().SetProgressText("");
  gridPage_->showBuild(std::move(build), sel.tab, sel.measure);
}

void MainWindow::selectScopeTab(Tab tab, NavRecord record) {
  const bool reports = tab == Tab::Reports;
  if (!reports && (IndexOf(tab) < 1 || IndexOf(tab) > kTabCount)) return;
  const int index = reports ? reportsTabIndex_ : IndexOf(tab) - 1;
  if (tabs_->currentIndex() == index) {
    showCurrentPage(record);
  } else {
    const QSignalBlocker block(tabs_);
    tabs_->setCurrentIndex(index);
    showCurrentPage(record);
  }
}

void MainWindow::updateTitle() {
  const TitleStrip strip = zol::UpdateTitle(ws_, selection_.get());
  title_->showStrip(strip);
  // The window's title names the session on display, as the task bar shows it.
  setWindowTitle(strip.Session.Visible && !strip.Session.Text.empty()
                     ? Q(strip.Session.Text) + " - " + kMessageTitle
                     : QString(kMessageTitle));
}

void MainWindow::clearViews() {
  pageCache_.Forget();
  title_->Clear();
  setWindowTitle(kMessageTitle);
  SortMemory blankSort;
  const Selection none{.tab = Tab::Lines, .measure = selection_.get().measure};
  gridPage_->showBuild(ShowLines(ws_, none, blankSort, true), Tab::Lines, none.measure);
  gridPage_->resetChart(true);
  sourcePane_->browser()->showNotice("");
  nav_.Clear();
  nav_.UpdateNavToolbar(*this);
}

// --- The tree ---

void MainWindow::clickTreeNode(const std::string& key) {
  if (busy()) return;
  runGuarded(this, [&] {
    {
      BusyScope busy(*this);
      tree_.NodeClicked(key);
    }
    syncTree();
  });
}

void MainWindow::onTreeClicked() {
  selection_.set(tree_.TreeSelection(selection_.get()));
  if (selection_.get().tab != Tab::Reports) showCurrentPage();
}

void MainWindow::moveTreeTo(const Selection& place) {
  // The node of the place: its session's (or its group's), then the module
  // and procedure below it.
  const SessionRef& ref = place.session;
  std::string session;
  if (ref.isCompared()) {
    session = "S-1";
  } else if (ref.kind() == SessionRef::Kind::Group && ref.groupIndex() > 0) {
    session = "G" + std::to_string(ref.groupIndex());
  } else {
    session = "S" + std::to_string(ref.sessionIndex());
  }
  std::string exact = session;
  if (place.module != 0) exact += "M" + std::to_string(place.module);
  if (place.procedure != 0) exact += "P" + std::to_string(place.procedure);
  std::string key = exact;
  if (!tree_.Nodes().Find(key)) key = session;
  if (!tree_.Nodes().Find(key))
    key = ref.isCompared() ? kCompareKey : ref.isMerged() ? kMergeKey : "";
  if (key.empty() || !tree_.Nodes().Find(key)) {
    selection_.set(place);
    return;
  }
  tree_.MoveTo(key);
  Selection moved = tree_.TreeSelection(place);
  if (key != exact) {
    // The tree has no node for the place itself: the place stands as given.
    moved.session = place.session;
    moved.module = place.module;
    moved.procedure = place.procedure;
  }
  selection_.set(moved);
  syncTree();
}

void MainWindow::showPlace(const Selection& place) {
  moveTreeTo(place);
  Selection shown = selection_.get();
  shown.line = place.line;
  shown.measure = place.measure;
  selection_.set(shown);
  selectScopeTab(place.tab, NavRecord::No);
}

// --- Grids ---

void MainWindow::onGridClicked(int clickKind, int row, int column) {
  if (busy()) return;
  const Selection& sel = selection_.get();
  if (!ws_.Project.InRange(sel.project)) return;
  const Table& table = gridPage_->grid()->table();
  if (row < 1 || row > table.RowCount()) return;
  const ClickTarget target = zol::ClickedPlace(ws_.Project(sel.project), table, row, column);
  menuTarget_ = target;
  if (clickKind == kRightClick) {
    showPopupMenu();
    return;
  }
  const Tab next = static_cast<Tab>(TabAfterClick(clickKind, IndexOf(sel.tab)));
  moveTreeTo(sel.at(target.module, target.procedure, target.line));
  Selection clicked = selection_.get();
  clicked.line = target.line;
  selection_.set(clicked);
  selectScopeTab(next);
}

void MainWindow::showPopupMenu() {
  gridMenu_->popup(QCursor::pos());
}

void MainWindow::viewIn(Tab tab) {
  if (busy()) return;
  runGuarded(this, [&] {
    moveTreeTo(selection_.get().at(menuTarget_.module, menuTarget_.procedure));
    Selection target = selection_.get();
    target.line = menuTarget_.line;
    selection_.set(target);
    selectScopeTab(tab);
  });
}

void MainWindow::exportGrid() {
  const Table& table = gridPage_->grid()->table();
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
  std::string name = fromQPath(file);
  if (QFileInfo(file).suffix().isEmpty()) name += filter == csv ? ".csv" : ".txt";
  ExportGridToFile(table, name, ws_.prompter(), options_.LastExportFileType);
}

void MainWindow::viewGridInSpreadsheet() {
  const Table& table = gridPage_->grid()->table();
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

void MainWindow::updateSourceView(const Selection& sel) {
  updateTitle();
  SourceBrowser* browser = sourcePane_->browser();
  const std::int32_t sessionId = sel.session.sessionIndex();
  const std::int32_t line = sel.line;
  if (!pageCache_.NeedsReload({sel.session, sel.module, sel.procedure, sel.line, sel.measure}))
    return;
  if (auto text = SourceUnavailableText(ws_, sel.session)) {
    browser->showNotice(*text);
    return;
  }
  if (!ws_.Session.InRange(sessionId) || !ws_.Session(sessionId).Loaded) {
    browser->showNotice("");
    return;
  }
  const Project& project = ws_.Project(ws_.Session(sessionId).Project);
  std::int32_t module = sel.module;
  std::int32_t procedure = sel.procedure;
  if (module == 0 && procedure != 0 && project.Procedure.InRange(procedure)) {
    module = project.Procedure(procedure).BelongToModule;
  }
  // A session or a project alone shows its first module.
  if (module == 0) module = 1;
  ShowSourcePage(ws_, sessionId, module, procedure, sel.measure, *browser);
  if (line != 0 && project.CodeLine.InRange(line)) {
    browser->scrollToStatement(module, project.CodeLine(line).BelongToProcedure, line);
  }
}

bool MainWindow::onSourceLink(const std::string& url) {
  const LinkDecision decision = DecideLink(url);
  if (decision.openMenu) {
    menuTarget_ = ClickTarget{decision.module, decision.procedure, decision.line};
    sourcePane_->setFocus();
    showPopupMenu();
  }
  return !decision.cancel;
}

void MainWindow::onSourceOptionsChanged() {
  const Selection& sel = selection_.get();
  ws_.view.OptionsHtml[static_cast<std::size_t>(IndexOf(sel.measure))] = sourcePane_->options();
  try {
    SaveOptionsHtml(ws_);
  } catch (const std::exception&) {
    // The page still follows the choice; only the settings file missed it.
  }
  pageCache_.Forget();
  if (sel.tab == Tab::Source && !tree_.Nodes().SelectedKey().empty()) {
    runGuarded(this, [this] {
      Selection top = selection_.get();
      top.line = 0;
      updateSourceView(top);
    });
  }
}

void MainWindow::onSourceFontChanged(const QString& family, int size) {
  SetFontHTML(ws_, QtFontMetrics(), toCp1252(family), size);
  try {
    const std::string ini = GetIniFile(ws_.appFolder);
    VBWritePrivateProfileString("Profiler", "FontHTML", ws_.view.FontHTML, ini);
    VBWritePrivateProfileString("Profiler", "FontSizeHTML", std::to_string(ws_.view.FontSizeHTML),
                                ini);
  } catch (const std::exception&) {
  }
  if (!sourcePane_->browser()->pageFile().empty() && FileExist(SourcePageFile(ws_))) {
    runGuarded(this, [this] { UpdateHtml(ws_, *sourcePane_->browser()); });
  }
}

// --- Flow ---

void MainWindow::drawFlowPage() {
  updateTitle();
  const FlowOptions options = flowPane_->options();
  const Selection sel = selection_.get();
  FlowGraph graph;
  try {
    graph = BuildFlowGraph(ws_, sel, options.Depths());
  } catch (const FlowDataError& e) {
    // A session file whose call pairs don't fit its project: said on the
    // page, the rest of the window goes on.
    const std::int32_t slot = sel.session.sessionIndex();
    const std::string file =
        ws_.Session.InRange(slot) ? ws_.Session(slot).SessionFile : std::string();
    flowPane_->showNotice("\r\n    " + file + ": " + e.what());
    return;
  }
  if (!graph.Message.empty()) {
    flowPane_->showNotice(FlowNoticeText(graph.Message));
    return;
  }
  if (!graph.HasChart()) {
    // A module without calls shows nothing.
    flowPane_->showNotice("");
    return;
  }
  // The procedure the chart is about becomes the selected one.
  selection_.set(sel.at(graph.Module, graph.Procedure, sel.line));
  updateTitle();
  flowPane_->showChart(ws_, std::move(graph), sel.measure);
}

void MainWindow::onFlowNodeClicked(std::int32_t procedure) {
  const Selection& sel = selection_.get();
  if (busy() || !ws_.Project.InRange(sel.project)) return;
  const Project& project = ws_.Project(sel.project);
  if (!project.Procedure.InRange(procedure)) return;
  runGuarded(this, [&] {
    moveTreeTo(sel.at(project.Procedure(procedure).BelongToModule, procedure));
    Selection clicked = selection_.get();
    clicked.line = 0;
    selection_.set(clicked);
    selectScopeTab(Tab::Flow);
  });
}

void MainWindow::onFlowOptionsChanged() {
  try {
    SaveFlowOptions(flowPane_->options(), GetIniFile(ws_.appFolder));
  } catch (const std::exception&) {
    // The chart still follows the choice; only the settings file missed it.
  }
  if (selection_.get().tab == Tab::Flow && !tree_.Nodes().SelectedKey().empty() && !busy()) {
    runGuarded(this, [this] { drawFlowPage(); });
  }
}

// --- measures and navigation ---

void MainWindow::setMeasure(Measure measure) {
  Selection sel = selection_.get();
  sel.measure = measure;
  selection_.set(sel);
  showCurrentPage();
}

void MainWindow::onSelectionChanged(const Selection& now, const Selection& before) {
  if (now.measure == before.measure) return;
  toolbar_->pressMeasure(IndexOf(now.measure));
  tree_.UpdateColors(now.measure);
  syncTree();
  title_->updateAnalysis(IndexOf(now.measure));
}

void MainWindow::browseBack() {
  if (busy()) return;
  if (const auto place = nav_.BrowseBack(*this)) showPlace(*place);
}

void MainWindow::browseForward() {
  if (busy()) return;
  if (const auto place = nav_.BrowseFwd(*this)) showPlace(*place);
}

void MainWindow::EnableNavButtons(bool back, bool forward) {
  toolbar_->actions().back->setEnabled(back);
  toolbar_->actions().forward->setEnabled(forward);
}

}  // namespace zol
