// The main window as the session pane: ticks, names and the list's menu, the
// files that enter the catalogue, and the list and the tree brought in step
// with what each catalogue operation reports it changed.

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>

#include <algorithm>
#include <climits>
#include <utility>

#include "base/files.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/group_load.h"
#include "catalogue/session_catalogue.h"
#include "catalogue/session_file_lookup.h"
#include "catalogue/session_list.h"
#include "catalogue/session_load.h"
#include "compare/global_sessions.h"
#include "ui/busy_scope.h"
#include "ui/gui_prompter.h"
#include "ui/main_window.h"
#include "ui/project_tree_view.h"
#include "ui/qt_text.h"
#include "ui/session_list_model.h"
#include "ui/session_list_view.h"
#include "ui/session_loader.h"
#include "ui/session_rename.h"
#include "ui/status_area.h"

namespace zol {

void MainWindow::onSessionTicked(const std::string& key, bool checked) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row) return;
  if (loading() || !queuedTicks_.empty()) {
    // One load at a time: a row ticked meanwhile waits its turn; a row
    // unticked is refused until the loads are in, and shows its state again.
    if (checked) queuedTicks_.push_back({key, ""});
    refreshSessionList();
    return;
  }
  tickListRow(*row, checked);
}

void MainWindow::tickListRow(const RowKey& row, bool checked) {
  const std::string key = RowKeyText(row);
  BusyScope busy(*this);
  sessionList_->selectKey(key);
  tree_.RemoveMergeRoots();
  if (checked && TickLoadsRow(ws_, row)) {
    // The load runs on the worker; the tick is shown when it is in
    // (finishLoad). The merged and compared nodes, gone above, come back then.
    syncTree();
    startLoad(row);
    return;
  }
  // The catalogue loads and ticks; a session that can't be loaded has been
  // reported, and its row comes back unticked with the refresh below.
  const std::optional<RowTick> tick = TickRow(ws_, row, checked);
  if (!tick) return;
  showRowTick(*tick);
  refreshSessionList();
  syncTree();
}

void MainWindow::showRowTick(const RowTick& tick) {
  tree_.RemoveMergeRoots();
  const std::int32_t n = tick.row.index;
  if (tick.row.kind == RowKind::Session) {
    if (tick.ticked) {
      tree_.SelectSession(n, "", false);
    } else if (!tick.wanted) {
      tree_.UnSelectSession(n);
      if (showsSession(n)) clearViews();
    }
  } else if (tick.ticked) {
    tree_.SelectSessionGroup(n, false);
    // The group's node is selected; its view is drawn as a click would.
    tree_.NodeClicked("G" + std::to_string(n));
  } else if (!tick.wanted) {
    tree_.UnSelectSessionGroup(n);
  }
  InitGlobalSessions(ws_, &tree_);
}

void MainWindow::showCatalogueChange(const CatalogueChange& change) {
  const bool viewsGone = change.ClearsViewsOf(selection_.get().session.sessionIndex());
  if (viewsGone) {
    // The tree is emptied with the views and rebuilt below from the ticks
    // that remain. Nothing is selected until a node is clicked again; the
    // page and the measure stay as the user set them.
    clearViews();
    Selection nothing = selection_.get().at(0, 0);
    nothing.session = SessionRef::none();
    nothing.project = 0;
    selection_.set(nothing);
    tree_.SelectionChanged(true);
  }
  for (const std::int32_t cs : change.sessionsTakenOut) tree_.UnSelectSession(cs);
  for (const std::int32_t sg : change.groupsTakenOut) tree_.UnSelectSessionGroup(sg);
  for (const RowTick& tick : change.ticks) {
    // A row that stood in the list before becomes its selected row, as a
    // click on its box makes it; rows that have just entered are only ticked.
    const bool entered =
        std::find(change.added.begin(), change.added.end(), tick.row) != change.added.end();
    if (!entered) {
      sessionList_->selectKey(RowKeyText(tick.row));
      prompter_->DoEvents();
    }
    showRowTick(tick);
    refreshSessionList();
  }
  if (change.viewReset == ViewReset::ValuesChanged) clearViews();
  if (viewsGone) rebuildTreeFromTicks();
  refreshSessionList();
  syncTree();
}

// --- Loading on a worker thread ---

bool MainWindow::loading() const {
  return loader_ && loader_->running();
}

void MainWindow::whenLoaded(std::function<void()> then) {
  if (loading() || !queuedTicks_.empty()) {
    afterLoads_.push_back(std::move(then));
  } else {
    then();
  }
}

void MainWindow::enterFilesTicked(const std::vector<std::string>& files) {
  for (const std::string& file : files) queuedTicks_.push_back({"", file});
  if (!loading()) runQueuedTicks();
}

void MainWindow::enterFileTicked(const std::string& file) {
  BusyScope busy(*this);
  // The same steps as the catalogue's AddSession with its row ticked, the
  // load taken out to the worker.
  CatalogueChange change = AddSession(ws_, file, false);
  if (!change.added.empty()) {
    const RowKey row = change.added.front();
    if (TickLoadsRow(ws_, row)) {
      startLoad(row, std::move(change), file);
      return;
    }
    if (const std::optional<RowTick> tick = TickRow(ws_, row, true)) change.ticks.push_back(*tick);
  }
  AddToFileHistory(ws_, file);
  showCatalogueChange(change);
}

void MainWindow::runQueuedTicks() {
  while (!loading() && !queuedTicks_.empty()) {
    const QueuedTick next = std::move(queuedTicks_.front());
    queuedTicks_.pop_front();
    runGuarded(this, [&] {
      if (next.file.empty()) {
        if (const std::optional<RowKey> row = ParseRowKey(next.rowKey)) tickListRow(*row, true);
      } else {
        enterFileTicked(next.file);
      }
    });
  }
  while (!loading() && !afterLoads_.empty()) {
    std::function<void()> then = std::move(afterLoads_.front());
    afterLoads_.erase(afterLoads_.begin());
    runGuarded(this, then);
  }
}

void MainWindow::startLoad(const RowKey& row, CatalogueChange entered, std::string file) {
  loadRow_ = row;
  loadEntered_ = std::move(entered);
  loadFile_ = std::move(file);
  // A stop asked for before this load doesn't end it.
  ws_.abort = false;
  if (row.kind == RowKind::Session) {
    loader_->start(BeginSessionLoad(ws_, row.index));
  } else {
    loader_->start(BeginGroupLoad(ws_, row.index));
  }
  QApplication::setOverrideCursor(Qt::BusyCursor);
  status_->progressBar()->setValue(0);
  status_->ShowProgress(true);
}

void MainWindow::showLoadProgress() {
  // The stop button and Esc set the workspace's stop request, as for every
  // long operation; the worker hears of it here.
  if (ws_.abort) loader_->requestStop();
  const LoadProgress::State progress = loader_->progress();
  status_->progressLabel()->setText(Q(progress.text));
  QProgressBar* bar = status_->progressBar();
  bar->setMaximum(static_cast<int>(std::clamp<long>(progress.max, 1, INT_MAX)));
  bar->setValue(static_cast<int>(std::clamp<long>(progress.value, 0, bar->maximum())));
  status_->ShowProgress(true);
}

void MainWindow::finishLoad() {
  QApplication::restoreOverrideCursor();
  status_->ShowProgress(false);
  status_->progressLabel()->clear();
  // A stop ends the load under way and what waits behind it: ticks queued
  // are dropped (their rows show unticked) and files queued are not entered.
  if (loader_->stopRequested()) queuedTicks_.clear();
  CatalogueChange change = std::exchange(loadEntered_, {});
  const std::string file = std::exchange(loadFile_, {});
  runGuarded(this, [&] {
    SessionLoader::Load load = loader_->takeResult();
    for (const auto& [text, kind] : loader_->takeMessages()) {
      ws_.prompter().ShowMessage(text, kind);
    }
    BusyScope busy(*this);
    // The catalogue puts the values in place and ticks the row, or refuses it
    // (the user has been told why); the window shows it as any other tick.
    const bool loaded = std::holds_alternative<SessionLoad>(load)
                            ? FinishSessionLoad(ws_, std::get<SessionLoad>(std::move(load)))
                            : FinishGroupLoad(ws_, std::get<GroupLoad>(std::move(load)));
    change.ticks.push_back(TickRowAfterLoad(ws_, loadRow_, loaded));
    if (!file.empty()) AddToFileHistory(ws_, file);
    showCatalogueChange(change);
  });
  runQueuedTicks();
}

bool MainWindow::renameSession(const std::string& key, const QString& newName) {
  bool accepted = false;
  runGuarded(this, [&] {
    const RenameOutcome outcome =
        renameSessionRow(ws_, tree_, key, toCp1252(newName), selection_.get().session);
    if (!outcome.accepted) {
      if (!outcome.message.empty())
        ws_.prompter().ShowMessage(outcome.message, MessageKind::Exclamation);
      return;
    }
    accepted = true;
    if (outcome.titleChanged) updateTitle();
  });
  refreshSessionList();
  syncTree();
  return accepted;
}

void MainWindow::removeRow(const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row || busy()) return;
  runGuarded(this, [&] {
    BusyScope busy(*this);
    showCatalogueChange(row->kind == RowKind::Session ? RemoveSession(ws_, row->index)
                                                      : RemoveSessionGroup(ws_, row->index));
  });
}

void MainWindow::destroyRow(const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row || busy()) return;
  runGuarded(this, [&] {
    BusyScope busy(*this);
    showCatalogueChange(row->kind == RowKind::Session ? DestroySession(ws_, row->index)
                                                      : DestroySessionGroup(ws_, row->index));
  });
}

void MainWindow::selectAllRows(bool checked) {
  if (busy()) return;
  std::vector<std::string> keys;
  for (const SessionListRow& row : sessionModel_->rows()) {
    if (row.Checked != checked) keys.push_back(row.Key);
  }
  runGuarded(this, [&] {
    for (const std::string& key : keys) onSessionTicked(key, checked);
  });
}

void MainWindow::removeAllSessions() {
  if (busy()) return;
  runGuarded(this, [&] {
    BusyScope busy(*this);
    showCatalogueChange(ClearSessions(ws_));
  });
}

void MainWindow::destroyAllSessions() {
  if (busy()) return;
  const std::vector<SessionListRow> rows = sessionModel_->rows();
  if (rows.empty()) return;
  QMessageBox box(QMessageBox::Question, tr("Warning"),
                  QString("Destroy %1 sessions ?\n\nThis will also destroy the session files.")
                      .arg(rows.size()),
                  QMessageBox::Ok | QMessageBox::Cancel, this);
  if (box.exec() != QMessageBox::Ok) return;
  std::vector<std::int32_t> groups;
  std::vector<std::int32_t> sessions;
  for (const SessionListRow& r : rows) {
    if (const auto key = ParseRowKey(r.Key)) {
      (key->kind == RowKind::Group ? groups : sessions).push_back(key->index);
    }
  }
  runGuarded(this, [&] {
    BusyScope busy(*this);
    CatalogueChange change;
    for (std::int32_t sg : groups) change.Append(DestroySessionGroup(ws_, sg));
    for (std::int32_t cs : sessions) change.Append(DestroySession(ws_, cs));
    change.Append(ClearSessions(ws_));
    showCatalogueChange(change);
  });
}

CatalogueChange MainWindow::enterFile(const std::string& file) {
  const CatalogueChange change = EndsWithNoCase(file, ".vbg") ? AddSessionFromVBG(ws_, file)
                                                              : AddSessionGroup(ws_, file, false);
  AddToFileHistory(ws_, file);
  return change;
}

void MainWindow::addSessionFiles(const std::vector<std::string>& files) {
  BusyScope busy(*this);
  CatalogueChange change;
  for (const std::string& file : files) change.Append(enterFile(file));
  showCatalogueChange(change);
}

void MainWindow::openSessionFile(bool mustClearBefore) {
  const QStringList files = QFileDialog::getOpenFileNames(
      this, tr("Load sessions"), QString(), "Sessions (*.pfl *.pfd);;Original Projects (*.vbp)");
  if (files.isEmpty()) return;
  BusyScope busy(*this);
  if (mustClearBefore) showCatalogueChange(ClearSessions(ws_));
  std::vector<std::string> names;
  for (const QString& f : files) names.push_back(fromQPath(f));
  addSessionFiles(names);
}

int MainWindow::autoLoadSessions() {
  if (busy() || closing_) return 0;
  std::vector<std::string> names;
  {
    BusyScope busy(*this);
    names = TakeLeftSessionNames(ws_);
    if (names.empty()) return 0;
    bringToFront();
  }
  enterFilesTicked(names);
  return static_cast<int>(names.size());
}

void MainWindow::openStartFiles(const StartOptions& start) {
  if (start.files.empty() && start.selectKey.empty()) return;
  enterFilesTicked(start.files);
  if (!start.selectKey.empty()) {
    whenLoaded([this, key = start.selectKey] { clickTreeNode(key); });
  }
}

bool MainWindow::showsSession(std::int32_t cs) const {
  return selection_.get().session.sessionIndex() == cs;
}

void MainWindow::refreshSessionList() {
  std::vector<SessionListRow> rows = SessionListRows(ws_);
  sortSessionRows(rows, sessionSort_);
  const std::string selected = sessionList_->selectedKey();
  sessionModel_->setRows(std::move(rows));
  if (!selected.empty()) sessionList_->selectKey(selected);
  sessionList_->header()->setSortIndicator(
      sessionSort_.Column - 1, sessionSort_.Descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void MainWindow::bringToFront() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

// --- The tree in step with the ticks ---

void MainWindow::syncTree() {
  treeView_->sync();
}

void MainWindow::rebuildTreeFromTicks() {
  std::vector<std::int32_t> groups;
  for (std::int32_t sg = 1; sg <= ws_.nSessionGroup && ws_.SessionGroup.InRange(sg); ++sg) {
    if (ws_.SessionGroup(sg).Selected) groups.push_back(sg);
  }
  std::vector<std::int32_t> sessions;
  for (std::int32_t cs = 1; cs <= ws_.nSession && ws_.Session.InRange(cs); ++cs) {
    const Session& s = ws_.Session(cs);
    if (!s.Selected || s.Invisible || s.IsMergedGroupSession) continue;
    const bool inTickedGroup =
        s.Group != 0 && std::find(groups.begin(), groups.end(), s.Group) != groups.end();
    if (!inTickedGroup) sessions.push_back(cs);
  }
  for (std::int32_t sg : groups) tree_.UnSelectSessionGroup(sg);
  for (std::int32_t cs : sessions) tree_.UnSelectSession(cs);
  for (std::int32_t sg : groups) tree_.SelectSessionGroup(sg, true);
  for (std::int32_t cs : sessions) tree_.SelectSession(cs, "", true);
  InitGlobalSessions(ws_, &tree_);
}

}  // namespace zol
