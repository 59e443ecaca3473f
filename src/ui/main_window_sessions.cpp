// The main window as the session pane: ticks, names and the list's menu, the
// files that enter the catalogue, and the tree kept in step with the ticks.

#include <QApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>

#include <algorithm>
#include <climits>

#include "base/files.h"
#include "base/text.h"
#include "catalogue/file_history.h"
#include "catalogue/session_catalogue.h"
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

void MainWindow::CheckRow(Workspace&, const std::string& key) {
  onSessionTicked(key, true);
  // The catalogue's own operations go on with the session loaded (they list
  // its .pfd among the recent files, select its nodes): the load still runs
  // on its worker, the window keeps drawing and holds off other commands,
  // and the operation waits here for the result.
  while (loading()) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void MainWindow::UncheckRow(Workspace&, const std::string& key) {
  onSessionTicked(key, false);
}

void MainWindow::onSessionTicked(const std::string& key, bool checked) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row) return;
  if (loading()) {
    // One load at a time: a row ticked meanwhile waits its turn; a row
    // unticked is refused until the load is in, and shows its state again.
    if (checked) pendingTicks_.push_back(key);
    Refresh(ws_);
    return;
  }
  BusyScope busy(*this);
  sessionList_->SelectKey(key);
  tree_.RemoveMergeRoots();
  const std::int32_t n = row->index;
  if (row->kind == RowKind::Session) {
    if (!ws_.Session.InRange(n)) return;
    if (checked && !ws_.Session(n).Loaded) {
      // The merged and compared nodes, gone above, come back when the load
      // is in place.
      SyncTree();
      startLoad(n);
      return;
    }
    if (checked) {
      tree_.SelectSession(n, "", false);
    } else {
      tree_.UnSelectSession(n);
      if (ShowsSession(n)) ClearViews();
    }
  } else {
    if (!ws_.SessionGroup.InRange(n)) return;
    if (checked) {
      if (ws_.SessionGroup(n).Loaded || LoadSessionGroup(ws_, n)) {
        tree_.SelectSessionGroup(n, false);
        // The group's node is selected; its view is drawn as a click would.
        tree_.NodeClicked("G" + std::to_string(n));
      }
    } else {
      tree_.UnSelectSessionGroup(n);
    }
  }
  InitGlobalSessions(ws_, &tree_);
  Refresh(ws_);
  SyncTree();
}

// --- Loading on a worker thread ---

bool MainWindow::loading() const {
  return loader_ && loader_->running();
}

void MainWindow::whenLoaded(std::function<void()> then) {
  if (loading() || !pendingTicks_.empty()) {
    afterLoads_.push_back(std::move(then));
  } else {
    then();
  }
}

void MainWindow::startLoad(std::int32_t cs) {
  // A stop asked for before this load doesn't end it.
  ws_.abort = false;
  loader_->start(BeginSessionLoad(ws_, cs));
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
  RunGuarded(this, [this] {
    SessionLoad load = loader_->takeResult();
    const std::int32_t cs = load.cs;
    for (const auto& [text, kind] : loader_->takeMessages()) {
      ws_.prompter().ShowMessage(text, kind);
    }
    {
      BusyScope busy(*this);
      // A session that can't be loaded has been reported; its row comes
      // back unticked with the refresh below.
      if (FinishSessionLoad(ws_, std::move(load))) tree_.SelectSession(cs, "", false);
      InitGlobalSessions(ws_, &tree_);
    }
    Refresh(ws_);
    SyncTree();
  });
  while (!loading() && !pendingTicks_.empty()) {
    const std::string key = pendingTicks_.front();
    pendingTicks_.erase(pendingTicks_.begin());
    RunGuarded(this, [&] { onSessionTicked(key, true); });
  }
  while (!loading() && !afterLoads_.empty()) {
    std::function<void()> then = std::move(afterLoads_.front());
    afterLoads_.erase(afterLoads_.begin());
    RunGuarded(this, then);
  }
}

bool MainWindow::renameSession(const std::string& key, const QString& newName) {
  bool accepted = false;
  RunGuarded(this, [&] {
    const RenameOutcome outcome =
        RenameSessionRow(ws_, tree_, key, ToCp1252(newName), selection_.get().session);
    if (!outcome.accepted) {
      if (!outcome.message.empty())
        ws_.prompter().ShowMessage(outcome.message, MessageKind::Exclamation);
      return;
    }
    accepted = true;
    if (outcome.titleChanged) UpdateTitle();
  });
  Refresh(ws_);
  SyncTree();
  return accepted;
}

void MainWindow::RemoveRow(const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row || Busy()) return;
  RunGuarded(this, [&] {
    BusyScope busy(*this);
    if (row->kind == RowKind::Session) {
      RemoveSession(ws_, *this, row->index);
    } else {
      RemoveSessionGroup(ws_, *this, row->index);
    }
    AfterCatalogueChange();
  });
}

void MainWindow::DestroyRow(const std::string& key) {
  const std::optional<RowKey> row = ParseRowKey(key);
  if (!row || Busy()) return;
  RunGuarded(this, [&] {
    BusyScope busy(*this);
    if (row->kind == RowKind::Session) {
      DestroySession(ws_, *this, row->index);
    } else {
      DestroySessionGroup(ws_, *this, row->index);
    }
    AfterCatalogueChange();
  });
}

void MainWindow::SelectAllRows(bool checked) {
  if (Busy()) return;
  std::vector<std::string> keys;
  for (const SessionListRow& row : sessionModel_->Rows()) {
    if (row.Checked != checked) keys.push_back(row.Key);
  }
  RunGuarded(this, [&] {
    for (const std::string& key : keys) onSessionTicked(key, checked);
  });
}

void MainWindow::RemoveAllSessions() {
  if (Busy()) return;
  RunGuarded(this, [&] {
    BusyScope busy(*this);
    ClearSessions(ws_, *this);
    AfterCatalogueChange();
  });
}

void MainWindow::DestroyAllSessions() {
  if (Busy()) return;
  const std::vector<SessionListRow> rows = sessionModel_->Rows();
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
  RunGuarded(this, [&] {
    BusyScope busy(*this);
    for (std::int32_t sg : groups) DestroySessionGroup(ws_, *this, sg);
    for (std::int32_t cs : sessions) DestroySession(ws_, *this, cs);
    ClearSessions(ws_, *this);
    AfterCatalogueChange();
  });
}

void MainWindow::AddSessionFile(const std::string& file) {
  const std::string lower = LCase(file);
  if (lower.size() > 4 && lower.compare(lower.size() - 4, 4, ".vbg") == 0) {
    AddSessionFromVBG(ws_, *this, file);
  } else {
    AddSessionGroup(ws_, *this, file, false);
  }
  AddToFileHistory(ws_, file);
}

void MainWindow::OpenSessionFile(bool mustClearBefore) {
  const QStringList files = QFileDialog::getOpenFileNames(
      this, tr("Load sessions"), QString(), "Sessions (*.pfl *.pfd);;Original Projects (*.vbp)");
  if (files.isEmpty()) return;
  BusyScope busy(*this);
  if (mustClearBefore) ClearSessions(ws_, *this);
  for (const QString& f : files) AddSessionFile(FromQPath(f));
  AfterCatalogueChange();
}

int MainWindow::AutoLoadSessions() {
  if (Busy() || closing_) return 0;
  BusyScope busy(*this);
  const int taken = zol::AutoLoadSessions(ws_, *this);
  if (taken > 0) AfterCatalogueChange();
  return taken;
}

void MainWindow::OpenStartFiles(const StartOptions& start) {
  if (start.files.empty() && start.selectKey.empty()) return;
  RunGuarded(this, [&] {
    {
      BusyScope busy(*this);
      for (const std::string& file : start.files) {
        AddSession(ws_, *this, file, true);
        AddToFileHistory(ws_, file);
      }
      AfterCatalogueChange();
    }
  });
  if (!start.selectKey.empty()) {
    whenLoaded([this, key = start.selectKey] { ClickTreeNode(key); });
  }
}

// --- SessionPane ---

void MainWindow::UnSelectSession(Workspace&, std::int32_t cs) {
  tree_.UnSelectSession(cs);
  SyncTree();
}

void MainWindow::UnSelectSessionGroup(Workspace&, std::int32_t sg) {
  tree_.UnSelectSessionGroup(sg);
  SyncTree();
}

bool MainWindow::ShowsSession(std::int32_t cs) const {
  return selection_.get().session.sessionIndex() == cs;
}

void MainWindow::ResetViews(Workspace&, ViewReset how) {
  ClearViews();
  if (how == ViewReset::SessionsGone) {
    // Nothing is selected until a node is clicked again; the page and the
    // measure stay as the user set them.
    Selection nothing = selection_.get().at(0, 0);
    nothing.session = SessionRef::none();
    nothing.project = 0;
    selection_.set(nothing);
    tree_.SelectionChanged(true);
    treeEmptied_ = true;
    SyncTree();
    return;
  }
  // Values changed in place: the place the user was at is drawn anew by the
  // caller once the rows are ticked again (ApplyFilters).
  SyncTree();
}

void MainWindow::Refresh(Workspace&) {
  std::vector<SessionListRow> rows = SessionListRows(ws_);
  SortSessionRows(rows, sessionSort_);
  const std::string selected = sessionList_->SelectedKey();
  sessionModel_->SetRows(std::move(rows));
  if (!selected.empty()) sessionList_->SelectKey(selected);
  sessionList_->header()->setSortIndicator(
      sessionSort_.Column - 1, sessionSort_.Descending ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void MainWindow::BringToFront() {
  if (isMinimized()) showNormal();
  show();
  raise();
  activateWindow();
}

// --- The tree in step with the ticks ---

void MainWindow::SyncTree() {
  treeView_->Sync();
}

void MainWindow::RebuildTreeFromTicks() {
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

void MainWindow::AfterCatalogueChange() {
  if (treeEmptied_) {
    treeEmptied_ = false;
    RebuildTreeFromTicks();
  }
  Refresh(ws_);
  SyncTree();
}

}  // namespace zol
