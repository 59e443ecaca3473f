#pragma once

// The program's main window: the project tree above the session
// list on the left, the strip of scope tabs over one page at a time on the
// right, the toolbar above and the status strip below. It shows the session
// list and the tree of the catalogue: the catalogue's operations return what
// they changed and the window brings its widgets in step. It owns the
// selection on screen: the tree, the grids, the flow chart and the navigation
// history hand it places as values, and the pages draw the one it holds.
//
// A session whose row is ticked loads on a worker thread (see SessionLoader),
// whatever ticked it: the user in the list, the files of the command line, a
// recent session, names left by another program. The window keeps repainting
// and moving, the progress bar follows the load, and the stop button and Esc
// end it; commands that would touch the catalogue are held off until the
// result is in place, which is then shown as any other change the catalogue
// reports. Several ticks wait in a queue and load one after another, each
// shown as it comes in; a stop ends the load under way and drops the rest of
// the queue. A group of sessions loads the same way: its file is read and
// its members' projects scanned on the worker, and its members are merged
// when it is in. While anything is under way the window is "busy": clicks
// are ignored, and only the stop button and Esc are heard.

#include <QMainWindow>
#include <QTimer>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/catalogue_change.h"
#include "grid/grid_click.h"
#include "grid/grid_sort.h"
#include "session/workspace.h"
#include "source_view/nav_history.h"
#include "source_view/view_state.h"
#include "ui/current_selection.h"
#include "ui/gui_error_capture.h"
#include "ui/gui_project_tree.h"
#include "ui/session_list_sort.h"
#include "ui/window_options.h"

class QSplitter;
class QStackedWidget;
class QTabBar;
class QMenu;

namespace zol {

class FlowPane;
class GridPage;
class GuiPrompter;
class MainToolbar;
class ProjectTreeView;
class ReportPane;
class SessionListModel;
class SessionListView;
class SessionLoader;
class SourcePane;
class StatusArea;
class TitleStripWidget;

// The scope tabs this window has: Projects, Modules, Procedures, Lines,
// Source, Flow.
inline constexpr int kTabCount = 6;

struct StartOptions {
  // Session files of the command line: entered and ticked.
  std::vector<std::string> files;
  // A tree node to select once they are loaded ("S1M2P3", "COMPARE").
  std::string selectKey;
  // A scope tab to show at start, 1 to 6 (0: the one of the settings).
  int tab = 0;
  // The command line held "noshow": the window starts minimised.
  bool minimised = false;
  // The window's place, tab and measure are written to the settings when it
  // closes; a run that only takes pictures leaves the user's settings alone.
  bool saveSettings = true;
};

class MainWindow : public QMainWindow, public NavView {
  Q_OBJECT

 public:
  // `ws` lives as long as the window; its prompter becomes the window's own.
  MainWindow(Workspace& ws, const StartOptions& start = {});
  ~MainWindow() override;

  Workspace& ws() { return ws_; }
  GuiProjectTree& tree() { return tree_; }
  // The selection on screen.
  const Selection& selection() const { return selection_.get(); }
  CurrentSelection& currentSelection() { return selection_; }
  const NavHistory& nav() const { return nav_; }

  // Widgets, for the tests and the screenshots.
  MainToolbar* toolbar() const { return toolbar_; }
  ProjectTreeView* projectTreeView() const { return treeView_; }
  SessionListView* sessionList() const { return sessionList_; }
  QTabBar* pageTabs() const { return tabs_; }
  GridPage* gridPage() const { return gridPage_; }
  SourcePane* sourcePane() const { return sourcePane_; }
  FlowPane* flowPane() const { return flowPane_; }
  ReportPane* reportPane() const { return reportPane_; }
  TitleStripWidget* titleStrip() const { return title_; }
  StatusArea* statusArea() const { return status_; }
  const std::string& lastDisplay() const { return lastPage_; }
  // The place the context menu of a grid row or a source statement is about.
  const ClickTarget& menuTarget() const { return menuTarget_; }

  // Whether a page drawn is a place to come back to: a step through the
  // navigation history shows a recorded place without recording it again.
  enum class NavRecord { Yes, No };

  // The central dispatcher: shows the page of the selected tab and has it
  // draw the selection.
  void showCurrentPage(NavRecord record = NavRecord::Yes);
  // Selects scope tab `tab`, which draws its page.
  void selectScopeTab(Tab tab, NavRecord record = NavRecord::Yes);
  // A click on the tree node `key`, as the user makes it.
  void clickTreeNode(const std::string& key);
  // A click of kind 1 (single), 2 (right) or 3 (double) on a grid cell, row
  // and column from 1, as the grid's click chain reports it.
  void onGridClicked(int clickKind, int row, int column);
  // The measure buttons.
  void setMeasure(Measure measure);
  void browseBack();
  void browseForward();

  // Session pane actions.
  // The box of row `key` ticked or unticked by the user: the catalogue loads
  // and ticks, the window shows the result.
  void onSessionTicked(const std::string& key, bool checked);
  // Renames the row's session or group; false (the user told why) if refused.
  bool renameSession(const std::string& key, const QString& newName);
  void removeRow(const std::string& key);
  void destroyRow(const std::string& key);
  void selectAllRows(bool checked);
  void removeAllSessions();
  void destroyAllSessions();
  // Enters files dropped or chosen: sessions, projects, project groups, each
  // with the sessions related to it, and lists each among the recent files.
  void addSessionFiles(const std::vector<std::string>& files);
  void openSessionFile(bool mustClearBefore);
  // Takes up the names that another start left in the settings.
  int autoLoadSessions();
  // The files of the command line: entered, ticked, listed among the recent
  // sessions; then the node to select, if one is given.
  void openStartFiles(const StartOptions& start);
  // Enters each file with its row ticked, then lists it among the recent
  // sessions, one after the other: a file waits until the load of the one
  // before it is in.
  void enterFilesTicked(const std::vector<std::string>& files);
  // Brings the session list, the tree and the views in step with what a
  // catalogue operation changed.
  void showCatalogueChange(const CatalogueChange& change);
  // Shows the rows of the catalogue afresh, sorted as the user last had them.
  void refreshSessionList();
  // Restores the window if it is minimised, shows it and brings it to the
  // foreground.
  void bringToFront();
  // The wait cursor and held-off input, on or off; calls nest.
  void setBusy(bool busy);

  // Saves the settings (saveOptions and the chart options).
  void saveOptions();
  // While a live run is received, session files left by other programs wait.
  void setAutoLoadPaused(bool paused);

  // --- NavView ---
  void EnableNavButtons(bool back, bool forward) override;

  bool busy() const { return busy_ > 0 || loading(); }
  // A session or group is being loaded on a worker thread.
  bool loading() const;
  // Runs `then` once no load runs and none waits its turn: at once when
  // none does.
  void whenLoaded(std::function<void()> then);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  // chartLayout and start.
  void buildWidgets();
  QWidget* buildLeftPane();
  QWidget* buildRightPane();
  void connectWidgets();
  void startUp(const StartOptions& start);
  void loadOptions();
  void applyWindowPlace();
  void storeWindowPlace();
  void applyRatios();
  void storeRatios();
  void shutDown();

  // The menu bar: File, Edit, View and Help, with the usual shortcuts.
  void buildMenuBar();
  // Appends the files of history `history` to `menu`, each loading its file.
  void fillHistoryMenu(QMenu* menu, const char* history);
  // Shows the scope tab at `index` (from 0), whichever tabs the strip holds.
  void showTabAt(int index);

  // Actions of the toolbar and the menus. Each is connected to its own slot;
  // while the window is busy a trigger is ignored, and a failure goes to the
  // error capture.
  void connectAction(QAction* action, void (MainWindow::*slot)());
  void connectToolbar();
  void fillProfileMenu();
  void fillLoadMenu();
  // A file of a recent list: sessions are entered and ticked, projects and
  // project groups bring their sessions.
  void openRecentFile(const QString& entry);
  // Asks for a project and hands it to the instrumenter with the default plan.
  void profileProject();
  void profileProjectFile(const std::string& project);
  void openConsole();
  void openSessions();
  void showOptionsDialog();
  void showAbout();
  void showHelp();
  void saveMergedSession();
  void applyFilters();

  // Views.
  void showGridTab();
  void updateSourceView(const Selection& sel);
  void updateTitle();
  // Draws the call graph around the selection on the Flow page; a procedure
  // chosen there becomes the selected one.
  void drawFlowPage();
  void onFlowNodeClicked(std::int32_t procedure);
  void onFlowOptionsChanged();
  void clearViews();
  void showPopupMenu();
  void viewIn(Tab tab);
  // Moves the tree to the node of `place` without a click, and makes the
  // place the selection (the node's, or the place itself where the tree has
  // no node for it).
  void moveTreeTo(const Selection& place);
  // A node was clicked: its place becomes the selection, and the page shows
  // it (the Reports page reads it only at "GO!").
  void onTreeClicked();
  // Shows a place of the navigation history without recording it again.
  void showPlace(const Selection& place);
  // What hangs on the measure follows it: toolbar, tree colours, title.
  void onSelectionChanged(const Selection& now, const Selection& before);
  bool onSourceLink(const std::string& url);
  void onSourceOptionsChanged();
  void onSourceFontChanged(const QString& family, int size);
  void exportGrid();
  void viewGridInSpreadsheet();

  // Sessions.
  // Starts loading the session or group of `row` on a worker thread;
  // `entered` holds the rows that entered for it, and `file`, if any, joins
  // the recent sessions once the load is in.
  void startLoad(const RowKey& row, CatalogueChange entered = {}, std::string file = {});
  // Ticks or unticks a row of the list now; a session to load goes to the
  // worker.
  void tickListRow(const RowKey& row, bool checked);
  // Enters `file` and ticks its row: on the worker when a session is to be
  // loaded, through the catalogue otherwise.
  void enterFileTicked(const std::string& file);
  // Takes the queued ticks in turn until one starts a load or none is left;
  // then, once nothing loads, runs what waited for the loads.
  void runQueuedTicks();
  void showLoadProgress();
  // The stop button, Esc or closing the window: the operation under way,
  // on this thread or on the loader's, is asked to stop.
  void requestStop();
  // Puts the result of the load into the catalogue and the tree, then starts
  // the next ticked session waiting, or runs what waited for the loads.
  void finishLoad();
  // The tree's side of one row ticked or unticked by the catalogue.
  void showRowTick(const RowTick& tick);
  // Whether the views show the values of Session(cs) itself.
  bool showsSession(std::int32_t cs) const;
  // Enters one file as addSessionFiles does, without showing the change.
  CatalogueChange enterFile(const std::string& file);
  void syncTree();
  // Puts every ticked session and group back into the tree, after a removal
  // emptied it.
  void rebuildTreeFromTicks();

  Workspace& ws_;
  std::shared_ptr<GuiPrompter> prompter_;
  GuiProjectTree tree_;
  CurrentSelection selection_;
  NavHistory nav_;
  SourcePageCache pageCache_;
  WindowOptions options_;
  SessionListSort sessionSort_;
  std::string lastPage_;
  ClickTarget menuTarget_;
  std::string helpTopic_;
  bool instrumenterInstalled_ = false;
  int busy_ = 0;
  bool closing_ = false;
  bool saveSettings_ = true;

  MainToolbar* toolbar_ = nullptr;
  ProjectTreeView* treeView_ = nullptr;
  SessionListModel* sessionModel_ = nullptr;
  SessionListView* sessionList_ = nullptr;
  QTabBar* tabs_ = nullptr;
  QStackedWidget* pages_ = nullptr;
  GridPage* gridPage_ = nullptr;
  SourcePane* sourcePane_ = nullptr;
  FlowPane* flowPane_ = nullptr;
  ReportPane* reportPane_ = nullptr;
  int reportsTabIndex_ = -1;  // its place on the strip, whatever tabs stand before it
  TitleStripWidget* title_ = nullptr;
  StatusArea* status_ = nullptr;
  QSplitter* mainSplitter_ = nullptr;  // left pane | pages
  QSplitter* leftSplitter_ = nullptr;  // tree / session list
  QMenu* gridMenu_ = nullptr;
  QTimer autoLoadTimer_;
  SessionLoader* loader_ = nullptr;
  // A tick waiting for its turn: a row of the list (its key), or a file to
  // enter first.
  struct QueuedTick {
    std::string rowKey;
    std::string file;
  };
  // Ticks waiting, in the order they were asked for; then what waits for
  // them all.
  std::deque<QueuedTick> queuedTicks_;
  std::vector<std::function<void()>> afterLoads_;
  // The load under way: the rows that entered for it, and the file to list
  // among the recent sessions once it is in (empty for a row of the list).
  RowKey loadRow_;
  CatalogueChange loadEntered_;
  std::string loadFile_;
};

}  // namespace zol
