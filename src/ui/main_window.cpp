// The main window: its widgets and their layout, the start (startUp) and
// the end (shutDown) with the settings, the toolbar's actions, and files
// dropped on the window.

#include "ui/main_window.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QProcess>
#include <QScreen>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTabBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "base/app_paths.h"
#include "base/files.h"
#include "base/ini_file.h"
#include "base/paths.h"
#include "base/text.h"
#include "base/version.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/timing_filters.h"
#include "compare/save_merged.h"
#include "flow/flow_options.h"
#include "grid/chart.h"
#include "grid/grid_builders.h"
#include "project/project_info.h"
#include "source_view/font_metrics.h"
#include "source_view/html_options.h"
#include "source_view/timing_colours.h"
#include "ui/busy_scope.h"
#include "ui/flow_pane.h"
#include "ui/grid_page.h"
#include "ui/grid_view.h"
#include "ui/gui_prompter.h"
#include "ui/icons.h"
#include "ui/main_toolbar.h"
#include "ui/options_dialog.h"
#include "ui/project_tree_view.h"
#include "ui/qt_font_metrics.h"
#include "ui/qt_text.h"
#include "ui/report_pane.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/session_loader.h"
#include "ui/source_pane.h"
#include "ui/status_area.h"
#include "ui/title_strip_widget.h"

namespace zol {

namespace {

constexpr const char* kSection = "Profiler";
constexpr const char* kTabNames[kTabCount] = {"Projects", "Modules", "Procedures",
                                              "Lines",    "Source",  "Flow"};
constexpr const char* kTabIcons[kTabCount] = {"SESSION", "TYPE1", "PROC2",
                                              "TYPE9",   "TYPE5", "GRAPHMORE"};

// The instrumenter of the suite, when it is installed beside this program or
// on the path.
QString findInstrumenter() {
  const QString name = "zolmark-instrumenter";
  const QString beside = QCoreApplication::applicationDirPath() + "/" + name;
  if (QFileInfo(beside).isExecutable()) return beside;
  return QStandardPaths::findExecutable(name);
}

}  // namespace

MainWindow::MainWindow(Workspace& ws, const StartOptions& start)
    : ws_(ws),
      tree_(ws, GuiProjectTree::Hooks{[this] { syncTree(); }, [this] { onTreeClicked(); },
                                      [this] { clearViews(); }}) {
  setObjectName("mainWindow");
  // A child of the window, so that the error capture finds what was on screen.
  selection_.setParent(this);
  selection_.setObjectName("currentSelection");
  setWindowTitle(kMessageTitle);
  setWindowIcon(zolIcon("SESSION"));
  setAcceptDrops(true);
  buildWidgets();
  prompter_ = std::make_shared<GuiPrompter>(this, status_, &ws_.abort);
  ws_.SetPrompter(prompter_);
  connectWidgets();
  buildMenuBar();
  qApp->installEventFilter(this);
  startUp(start);
}

MainWindow::~MainWindow() {
  qApp->removeEventFilter(this);
  // The core may outlive the window; it must not call into a dead one.
  ws_.SetPrompter(std::make_shared<SilentPrompter>());
}

// --- chartLayout ---

void MainWindow::buildWidgets() {
  toolbar_ = new MainToolbar(this);
  addToolBar(Qt::TopToolBarArea, toolbar_);
  mainSplitter_ = new QSplitter(Qt::Horizontal, this);
  mainSplitter_->setObjectName("mainSplitter");
  mainSplitter_->addWidget(buildLeftPane());
  mainSplitter_->addWidget(buildRightPane());
  mainSplitter_->setChildrenCollapsible(false);
  setCentralWidget(mainSplitter_);
  status_ = new StatusArea(this);
  statusBar()->addWidget(status_, 1);
  statusBar()->setSizeGripEnabled(true);
  gridMenu_ = new QMenu(this);
  gridMenu_->setObjectName("gridMenu");
  gridMenu_
      ->addAction(zolIcon("TYPE5"), tr("View in Source"), this, [this] { viewIn(Tab::Source); })
      ->setObjectName("viewInSource");
  gridMenu_
      ->addAction(zolIcon("GRAPHMORE"), tr("View in Flow"), this, [this] { viewIn(Tab::Flow); })
      ->setObjectName("viewInFlow");
}

QWidget* MainWindow::buildLeftPane() {
  leftSplitter_ = new QSplitter(Qt::Vertical, this);
  leftSplitter_->setObjectName("leftSplitter");
  treeView_ = new ProjectTreeView(tree_, leftSplitter_);
  sessionModel_ = new SessionListModel(this);
  sessionList_ = new SessionListView(sessionModel_, leftSplitter_);
  leftSplitter_->addWidget(treeView_);
  leftSplitter_->addWidget(sessionList_);
  leftSplitter_->setChildrenCollapsible(false);
  return leftSplitter_;
}

QWidget* MainWindow::buildRightPane() {
  auto* right = new QWidget(this);
  auto* layout = new QVBoxLayout(right);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  title_ = new TitleStripWidget(right);
  tabs_ = new QTabBar(right);
  tabs_->setObjectName("pageTabs");
  tabs_->setDrawBase(true);
  tabs_->setExpanding(false);
  for (int i = 0; i < kTabCount; ++i) tabs_->addTab(zolIcon(kTabIcons[i]), tr(kTabNames[i]));
  pages_ = new QStackedWidget(right);
  gridPage_ = new GridPage(pages_);
  sourcePane_ = new SourcePane(pages_);
  flowPane_ = new FlowPane(pages_);
  pages_->addWidget(gridPage_);
  pages_->addWidget(sourcePane_);
  pages_->addWidget(flowPane_);
  reportsTabIndex_ = tabs_->addTab(zolIcon("SAVEMERGED"), tr("Reports"));
  reportPane_ = new ReportPane(ws_, pages_);
  reportPane_->currentSelection = [this] { return selection_.get(); };
  pages_->addWidget(reportPane_);
  layout->addWidget(title_);
  layout->addWidget(tabs_);
  layout->addWidget(pages_, 1);
  return right;
}

void MainWindow::connectWidgets() {
  connect(&selection_, &CurrentSelection::changed, this, &MainWindow::onSelectionChanged);
  connectToolbar();
  connect(tabs_, &QTabBar::currentChanged, this, [this] {
    if (!busy()) runGuarded(this, [this] { showCurrentPage(); });
  });
  connect(treeView_, &ProjectTreeView::nodeClicked, this,
          [this](const QString& key) { clickTreeNode(key.toStdString()); });

  // The list's ticks and names go through the catalogue; the list is rebuilt
  // afterwards, never edited in place.
  connect(
      sessionModel_, &SessionListModel::checkToggled, this,
      [this](const QString& key, bool checked) {
        runGuarded(this, [&] { onSessionTicked(key.toStdString(), checked); });
      },
      Qt::QueuedConnection);
  connect(
      sessionModel_, &SessionListModel::renameRequested, this,
      [this](const QString& key, const QString& name) { renameSession(key.toStdString(), name); },
      Qt::QueuedConnection);
  connect(sessionList_, &SessionListView::sortRequested, this, [this](int column) {
    sessionSort_.click(column);
    options_.Active_lvwSessions_Column = sessionSort_.Column;
    refreshSessionList();
  });
  connect(sessionList_, &SessionListView::removeRequested, this,
          [this](const QString& key) { removeRow(key.toStdString()); });
  connect(sessionList_, &SessionListView::destroyRequested, this,
          [this](const QString& key) { destroyRow(key.toStdString()); });
  connect(sessionList_, &SessionListView::selectAllRequested, this,
          [this] { selectAllRows(true); });
  connect(sessionList_, &SessionListView::unselectAllRequested, this,
          [this] { selectAllRows(false); });
  connect(sessionList_, &SessionListView::removeAllRequested, this, &MainWindow::removeAllSessions);
  connect(sessionList_, &SessionListView::destroyAllRequested, this,
          &MainWindow::destroyAllSessions);

  connect(gridPage_->grid(), &GridView::gridClicked, this, [this](int kind, int row, int column) {
    runGuarded(this, [&] { onGridClicked(kind, row, column); });
  });
  connect(gridPage_, &GridPage::graphOptionsChanged, this, [this] {
    try {
      SaveGraphOptions(gridPage_->graphOptions(), GetIniFile(ws_.appFolder));
    } catch (const std::exception&) {
      // A settings file that can't be written costs the choice, not the chart.
    }
  });
  connect(gridPage_, &GridPage::graphRatioChanged, this, [this](double ratio) {
    options_.Y_ratio_Graph = ratio;
    try {
      saveGraphRatio(ratio, GetIniFile(ws_.appFolder));
    } catch (const std::exception&) {
    }
  });
  connect(gridPage_, &GridPage::exportRequested, this,
          [this] { runGuarded(this, [this] { exportGrid(); }); });
  connect(gridPage_, &GridPage::viewInSpreadsheetRequested, this,
          [this] { runGuarded(this, [this] { viewGridInSpreadsheet(); }); });

  sourcePane_->browser()->beforeNavigate = [this](const std::string& url) {
    return onSourceLink(url);
  };
  connect(sourcePane_, &SourcePane::optionsChanged, this, &MainWindow::onSourceOptionsChanged);
  connect(sourcePane_, &SourcePane::fontChanged, this, &MainWindow::onSourceFontChanged);
  connect(flowPane_, &FlowPane::optionsChanged, this, &MainWindow::onFlowOptionsChanged);
  connect(flowPane_, &FlowPane::nodeClicked, this,
          [this](int procedure) { onFlowNodeClicked(procedure); });

  connect(mainSplitter_, &QSplitter::splitterMoved, this, &MainWindow::storeRatios);
  connect(leftSplitter_, &QSplitter::splitterMoved, this, &MainWindow::storeRatios);
  connect(status_, &StatusArea::cancelRequested, this, &MainWindow::requestStop);
  loader_ = new SessionLoader(this);
  connect(loader_, &SessionLoader::progressed, this, &MainWindow::showLoadProgress);
  connect(loader_, &SessionLoader::finished, this, &MainWindow::finishLoad);

  autoLoadTimer_.setObjectName("autoLoadTimer");
  autoLoadTimer_.setInterval(500);
  // A child of the window, so that the error dialog finds it among the timers
  // it stops while it is up.
  autoLoadTimer_.setParent(this);
  connect(&autoLoadTimer_, &QTimer::timeout, this,
          [this] { runGuarded(this, [this] { autoLoadSessions(); }); });
}

// --- start and end ---

void MainWindow::startUp(const StartOptions& start) {
  saveSettings_ = start.saveSettings;
  // The font of the source text: the IDE's on its own platform; here the
  // settings', or its default.
  const std::string ini = GetIniFile(ws_.appFolder);
  const std::string font = VBGetPrivateProfileString(kSection, "FontHTML", "Courier New", ini);
  const auto size = ParseNumberText(VBGetPrivateProfileString(kSection, "FontSizeHTML", "10", ini));
  SetFontHTML(ws_, QtFontMetrics(), font,
              size && *size >= 6 && *size <= 36 ? static_cast<std::int32_t>(*size) : 10);
  sourcePane_->showFont(ws_.view.FontHTML, ws_.view.FontSizeHTML);
  loadOptions();
  if (start.tab >= 1 && start.tab <= kTabCount) {
    Selection sel = selection_.get();
    sel.tab = TabFromIndex(start.tab);
    selection_.set(sel);
  }
  const Selection& sel = selection_.get();

  instrumenterInstalled_ = !findInstrumenter().isEmpty();
  toolbar_->setInstrumenterInstalled(instrumenterInstalled_);
  toolbar_->pressMeasure(IndexOf(sel.measure));
  title_->updateAnalysis(IndexOf(sel.measure));

  // A blank grid stands ready before any session is picked.
  SortMemory blankSort;
  gridPage_->showBuild(ShowLines(ws_, sel, blankSort, true), Tab::Lines, sel.measure);
  gridPage_->resetChart(true);
  sessionSort_.Column = options_.Active_lvwSessions_Column;
  refreshSessionList();

  {
    const QSignalBlocker block(tabs_);
    tabs_->setCurrentIndex(IndexOf(sel.tab) - 1);
  }
  // The source page's options stand ready even when the page shown first is
  // another.
  sourcePane_->showOptions(ws_.view.OptionsHtml[static_cast<std::size_t>(IndexOf(sel.measure))]);
  showCurrentPage();
  applyWindowPlace();
  if (start.minimised) setWindowState(windowState() | Qt::WindowMinimized);
  autoLoadTimer_.start();
  openStartFiles(start);
}

void MainWindow::loadOptions() {
  const std::string ini = GetIniFile(ws_.appFolder);
  options_ = loadWindowOptions(ini);
  Selection sel = selection_.get();
  sel.measure = MeasureFromIndex(options_.DisplayInfoType);
  sel.tab = options_.Active_tbsTab >= 1 && options_.Active_tbsTab <= kTabCount
                ? static_cast<Tab>(options_.Active_tbsTab)
                : Tab::Procedures;
  selection_.set(sel);
  loadViewSettings(ws_.view, ini);
  LoadColors(ws_, false, ini);
  LoadOptionsHtml(ws_, ini);
  flowPane_->setOptions(LoadFlowOptions(ini));
  reportPane_->loadOptions(ini);
  gridPage_->setGraphOptions(LoadGraphOptions(ini));
  gridPage_->setGraphRatio(options_.Y_ratio_Graph);
}

void MainWindow::applyWindowPlace() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QRect room = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
  const int w = std::max(640, room.width() * (options_.Width > 0 ? options_.Width : 750) / 1000);
  const int h = std::max(420, room.height() * (options_.Height > 0 ? options_.Height : 750) / 1000);
  resize(std::min(w, std::max(640, room.width())), std::min(h, std::max(420, room.height())));
  move(room.left() + room.width() * options_.Left / 1000,
       room.top() + room.height() * options_.Top / 1000);
  if (options_.WindowState == 2) setWindowState(Qt::WindowMaximized);
  applyRatios();
}

void MainWindow::applyRatios() {
  const int total = 10000;
  mainSplitter_->setSizes({int(total * options_.X_ratio), int(total * (1 - options_.X_ratio))});
  // Y_ratio is the tree's share of the left pane, read and saved alike.
  leftSplitter_->setSizes({int(total * options_.Y_ratio), int(total * (1 - options_.Y_ratio))});
}

void MainWindow::storeRatios() {
  // The first pane's share of each splitter: the left pane's width, the
  // tree's height. A splitter that has no room yet (window never shown)
  // keeps the ratio it was given.
  auto share = [](const QSplitter* split, double& ratio) {
    const QList<int> s = split->sizes();
    if (split->isVisible() && s.value(0) > 0 && s.value(1) > 0)
      ratio = clampRatio(double(s.value(0)) / (s.value(0) + s.value(1)));
  };
  share(mainSplitter_, options_.X_ratio);
  share(leftSplitter_, options_.Y_ratio);
}

void MainWindow::showEvent(QShowEvent* event) {
  QMainWindow::showEvent(event);
  applyRatios();
}

void MainWindow::storeWindowPlace() {
  const QScreen* screen = QGuiApplication::primaryScreen();
  const QRect room = screen ? screen->availableGeometry() : QRect(0, 0, 1280, 800);
  options_.WindowState = isMinimized() ? 1 : isMaximized() ? 2 : 0;
  if (options_.WindowState != 0 || room.width() <= 0 || room.height() <= 0) return;
  const QRect g = normalGeometry();
  options_.Left = (g.left() - room.left()) * 1000 / room.width();
  options_.Top = (g.top() - room.top()) * 1000 / room.height();
  options_.Width = g.width() * 1000 / room.width();
  options_.Height = g.height() * 1000 / room.height();
}

void MainWindow::saveOptions() {
  storeWindowPlace();
  storeRatios();
  options_.DisplayInfoType = IndexOf(selection_.get().measure);
  options_.Active_tbsTab = IndexOf(selection_.get().tab);
  const std::string ini = GetIniFile(ws_.appFolder);
  try {
    saveWindowOptions(options_, ini);
    saveViewSettings(ws_.view, ini);
    SaveGraphOptions(gridPage_->graphOptions(), ini);
    SaveFlowOptions(flowPane_->options(), ini);
    reportPane_->saveOptions(ini);
  } catch (const std::exception& e) {
    ws_.prompter().ShowMessage(std::string("The settings could not be saved: ") + e.what(),
                               MessageKind::Exclamation);
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (busy()) {
    // An operation is under way: it is asked to stop, and the window stays.
    requestStop();
    event->ignore();
    return;
  }
  if (!closing_) shutDown();
  event->accept();
}

void MainWindow::shutDown() {
  closing_ = true;
  autoLoadTimer_.stop();
  if (saveSettings_) saveOptions();
  KillRtfPath(ws_);
  ws_.tempFiles.DeleteTempFiles();
}

// --- busy state ---

void MainWindow::requestStop() {
  prompter_->requestAbort();
  if (loading()) loader_->requestStop();
}

void MainWindow::setBusy(bool busy) {
  if (busy) {
    if (busy_++ == 0) QApplication::setOverrideCursor(Qt::WaitCursor);
  } else if (busy_ > 0 && --busy_ == 0) {
    QApplication::restoreOverrideCursor();
  }
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  if (!busy()) return false;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Wheel:
    case QEvent::Drop:
      break;
    default:
      return false;
  }
  auto* widget = qobject_cast<QWidget*>(watched);
  // Dialogs that the operation itself shows (its messages) take input.
  if (!widget || widget->window() != this) return false;
  if (widget == status_->cancelButton()) return false;
  if (event->type() == QEvent::KeyPress &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
    requestStop();
  }
  return true;
}

// --- Files dropped on the window ---

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!busy() && event->mimeData()->hasUrls()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  if (busy()) return;
  std::vector<std::string> files;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) files.push_back(fromQPath(url.toLocalFile()));
  }
  event->acceptProposedAction();
  runGuarded(this, [&] { addSessionFiles(files); });
}

// --- Toolbar ---

void MainWindow::connectAction(QAction* action, void (MainWindow::*slot)()) {
  connect(action, &QAction::triggered, this, [this, slot] {
    if (!busy()) runGuarded(this, [this, slot] { (this->*slot)(); });
  });
}

void MainWindow::connectToolbar() {
  const MainToolbar::Actions& a = toolbar_->actions();
  connectAction(a.profileProject, &MainWindow::profileProject);
  connectAction(a.console, &MainWindow::openConsole);
  connectAction(a.loadSessions, &MainWindow::openSessions);
  connectAction(a.saveMerged, &MainWindow::saveMergedSession);
  connectAction(a.clear, &MainWindow::removeAllSessions);
  for (std::size_t m = 0; m < a.measures.size(); ++m) {
    connect(a.measures[m], &QAction::triggered, this, [this, m] {
      if (!busy())
        runGuarded(this, [this, m] { setMeasure(MeasureFromIndex(static_cast<int>(m))); });
    });
  }
  connectAction(a.back, &MainWindow::browseBack);
  connectAction(a.forward, &MainWindow::browseForward);
  connectAction(a.filters, &MainWindow::applyFilters);
  connectAction(a.options, &MainWindow::showOptionsDialog);
  connectAction(a.about, &MainWindow::showAbout);
  connectAction(a.help, &MainWindow::showHelp);
  connect(toolbar_->profileMenu(), &QMenu::aboutToShow, this, &MainWindow::fillProfileMenu);
  connect(toolbar_->loadMenu(), &QMenu::aboutToShow, this, &MainWindow::fillLoadMenu);
}

void MainWindow::profileProject() {
  profileProjectFile("");
}

void MainWindow::openConsole() {
  if (!instrumenterInstalled_) {
    ws_.prompter().ShowMessage(kInstrumenterMissing, MessageKind::Information);
    return;
  }
  QProcess::startDetached(findInstrumenter(), {"--console"});
}

void MainWindow::openSessions() {
  openSessionFile(false);
}

void MainWindow::fillProfileMenu() {
  QMenu* menu = toolbar_->profileMenu();
  menu->clear();
  QAction* heading =
      menu->addAction(QString("==Profile with default plan (%1): ==").arg(Q(ws_.view.DefaultPlan)));
  heading->setEnabled(false);
  for (const std::string& file : RetrieveFileHistory(ws_, "ProfileProjects")) {
    if (file.empty()) continue;
    QAction* a = menu->addAction(QPath(GetFileName(file)) + " < " + QPath(GetPath(file)));
    connect(a, &QAction::triggered, this,
            [this, file] { runGuarded(this, [&] { profileProjectFile(file); }); });
  }
}

void MainWindow::fillLoadMenu() {
  QMenu* menu = toolbar_->loadMenu();
  menu->clear();
  menu->addAction("========== Load a recent session: ===========")->setEnabled(false);
  fillHistoryMenu(menu, "HistorySession");
  menu->addAction("==== Load all sessions related to original projects: ====")->setEnabled(false);
  fillHistoryMenu(menu, "HistoryProject");
}

void MainWindow::fillHistoryMenu(QMenu* menu, const char* history) {
  for (const std::string& file : RetrieveFileHistory(ws_, history)) {
    if (file.empty()) continue;
    QAction* a = menu->addAction(QPath(GetFileName(file)) + " < " + QPath(GetPath(file)));
    a->setData(QPath(file));
    a->setToolTip(QPath(file));
    connect(a, &QAction::triggered, this, [this, a] { openRecentFile(a->data().toString()); });
  }
}

void MainWindow::openRecentFile(const QString& entry) {
  if (busy()) return;
  runGuarded(this, [&] {
    BusyScope busy(*this);
    const std::string file = fromQPath(entry);
    const QString lower = entry.toLower();
    if (lower.endsWith(".pfl") || lower.endsWith(".pfd")) {
      enterFilesTicked({file});
    } else {
      addSessionFiles({file});
    }
  });
}

void MainWindow::profileProjectFile(const std::string& project) {
  if (!instrumenterInstalled_) {
    ws_.prompter().ShowMessage(kInstrumenterMissing, MessageKind::Information);
    return;
  }
  std::string file = project;
  if (file.empty()) {
    file = fromQPath(QFileDialog::getOpenFileName(this, tr("Profile project"), QString(),
                                                  "VB6 Projects (*.vbp *.vbg)"));
  }
  if (file.empty()) return;
  AddToFileHistory(ws_, file, "ProfileProjects");
  QProcess::startDetached(findInstrumenter(), {"--plan", Q(ws_.view.DefaultPlan), QPath(file)});
}

void MainWindow::showOptionsDialog() {
  storeWindowPlace();
  OptionsDialog dialog(ws_.view, this);
  if (dialog.exec() != QDialog::Accepted) return;
  ws_.view = dialog.chosenSettings();
  tree_.UpdateColors(selection_.get().measure);
  syncTree();
  saveOptions();
}

void MainWindow::showAbout() {
  QMessageBox::about(
      this, tr("About the Zolmark Profiler"),
      tr("<h3>%1 %2</h3><p>The results browser of the Zolmark code profiler for Visual Basic 6 "
         "projects: hits, own time, time with children and coverage per line, procedure, module, "
         "project and run; merged and compared runs; coloured source.</p>"
         "<p>Settings: %3</p>")
          .arg(kMessageTitle, kAppVersion, QPath(GetIniFile(ws_.appFolder)).toHtmlEscaped()));
}

void MainWindow::showHelp() {
  // The topic of the page on display, as the help file names it.
  const QString topic = Q(helpTopic_).section("::/", 1);
  const QString tips =
      selection_.get().tab == Tab::Source
          ? tr("Click a statement for its menu. The check boxes choose the figures shown beside "
               "the code and how it is coloured; the legend is at the end of the page.")
          : tr("Click a row to go one level down (modules, procedures, lines, source); "
               "double-click it to see its source; right-click it for its menu. Click a "
               "header to sort; a second click reverses the order.");
  QMessageBox::information(
      this, tr("Help"),
      tr("%1\n\nTick sessions in the list at the bottom left to load them; two or more ticked "
         "offer merged and compared views at the bottom of the tree. The toolbar's measure "
         "buttons choose what the views show.\n\n(The help file, topic \"%2\", is not "
         "installed.)")
          .arg(tips, topic));
}

void MainWindow::saveMergedSession() {
  const QString file =
      QFileDialog::getSaveFileName(this, tr("Save merged sessions"), QString(), "Sessions (*.pfd)");
  if (file.isEmpty()) return;
  BusyScope busy(*this);
  zol::SaveMergedSession(ws_, fromQPath(file), &tree_);
  refreshSessionList();
  syncTree();
}

void MainWindow::applyFilters() {
  BusyScope busy(*this);
  // Unticking and ticking the rows again moves the tree to each session in
  // turn; the user's own place is shown again with the new values.
  const std::string place = tree_.Nodes().SelectedKey();
  if (const std::optional<CatalogueChange> change = ApplyFilter(ws_, ws_.view.Filters)) {
    showCatalogueChange(*change);
    if (tree_.Nodes().Find(place)) tree_.NodeClicked(place);
  }
  refreshSessionList();
  syncTree();
}

void MainWindow::setAutoLoadPaused(bool paused) {
  if (paused) {
    autoLoadTimer_.stop();
  } else {
    autoLoadTimer_.start();
  }
}

}  // namespace zol
