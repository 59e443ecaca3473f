#include "ui/gui_error_capture.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QMessageBox>
#include <QScreen>
#include <QUrl>
#include <cstdlib>

#include "errcapture/dump.h"
#include "errcapture/fatal_signal.h"
#include "errcapture/protected_call.h"
#include "errcapture/trace.h"
#include "session/workspace.h"
#include "ui/current_selection.h"
#include "ui/error_dialog.h"
#include "ui/gui_prompter.h"
#include "ui/qt_text.h"

namespace zol {

namespace {

GuiErrorCapture* g_current = nullptr;

QString shown(const std::string& text) {
  QString s = Q(text);
  s.replace("\r\n", "\n");
  return s;
}

// "void zol::MainWindow::openSessions(const QStringList&)" gives
// {"MainWindow", "openSessions"}; a lambda names the function around it.
std::pair<std::string, std::string> moduleAndProcedure(const std::source_location& where) {
  std::string name = where.function_name();
  name = name.substr(0, name.find('('));
  if (const std::size_t space = name.rfind(' '); space != std::string::npos) {
    name = name.substr(space + 1);
  }
  std::string module;
  if (const std::size_t last = name.rfind("::"); last != std::string::npos) {
    std::string owner = name.substr(0, last);
    name = name.substr(last + 2);
    const std::size_t before = owner.rfind("::");
    module = before == std::string::npos ? owner : owner.substr(before + 2);
  }
  if (module.empty() || module == "zol") {
    std::string file = where.file_name();
    file = file.substr(file.find_last_of("/\\") + 1);
    module = file.substr(0, file.find('.'));
  }
  return {module, name};
}

}  // namespace

GuiErrorPrompter::GuiErrorPrompter(std::function<std::string()> reportFolder)
    : reportFolder_(std::move(reportFolder)) {}

ErrorDialogReply GuiErrorPrompter::ShowErrorDialog(const ErrorDialogState& state) {
  ErrorDialog dialog(state, QPath(reportFolder_()), QApplication::activeWindow());
  dialog.exec();
  const ErrorDialogReply reply = dialog.reply();
  if (reply.decision == ErrorDecision::Report) {
    QMessageBox::information(QApplication::activeWindow(), kMessageTitle,
                             shown(kErrorReportNotice));
  }
  return reply;
}

void GuiErrorPrompter::StopTimers() {
  foreground_ = QApplication::activeWindow();
  stopped_.clear();
  for (QWidget* top : QApplication::topLevelWidgets()) {
    for (QTimer* t : top->findChildren<QTimer*>()) {
      if (t->isActive()) {
        t->stop();
        stopped_.emplace_back(t);
      }
    }
  }
}

void GuiErrorPrompter::RestartTimers() {
  for (const QPointer<QTimer>& t : stopped_) {
    if (t) t->start();
  }
  stopped_.clear();
}

bool GuiErrorPrompter::OpenMail(const std::string& mailtoUrl) {
  return QDesktopServices::openUrl(QUrl(QString::fromStdString(mailtoUrl), QUrl::StrictMode));
}

Answer GuiErrorPrompter::Ask(const std::string& text) {
  return QMessageBox::question(QApplication::activeWindow(), kMessageTitle, shown(text)) ==
                 QMessageBox::Yes
             ? Answer::Yes
             : Answer::No;
}

void GuiErrorPrompter::ShowMessage(const std::string& text) {
  QMessageBox::information(QApplication::activeWindow(), kMessageTitle, shown(text));
}

void GuiErrorPrompter::ClearClipboard() {
  QApplication::clipboard()->clear();
}

void GuiErrorPrompter::SetClipboardText(const std::string& text) {
  QApplication::clipboard()->setText(Q(text));
}

std::string GuiErrorPrompter::ClipboardText() {
  return toCp1252(QApplication::clipboard()->text());
}

bool GuiErrorPrompter::SaveScreenshot(const std::string& bmpFile) {
  QWidget* window = foreground_ ? foreground_.data() : QApplication::activeWindow();
  if (window == nullptr) return false;
  window->raise();
  window->activateWindow();
  return window->grab().save(QPath(bmpFile), "BMP");
}

std::vector<std::string> GuiErrorPrompter::DisplayInfo() {
  std::vector<std::string> lines;
  lines.push_back(std::string("Qt: ") + qVersion() + " (built with " QT_VERSION_STR ")");
  lines.push_back("Platform: " + QGuiApplication::platformName().toStdString());
  for (const QScreen* s : QGuiApplication::screens()) {
    const QRect g = s->geometry();
    lines.push_back("Screen: " + s->name().toStdString() + " " + std::to_string(g.width()) + "x" +
                    std::to_string(g.height()) + " at " +
                    std::to_string(s->devicePixelRatio()).substr(0, 4) + "x, " +
                    std::to_string(s->depth()) + " bits");
  }
  return lines;
}

GuiErrorCapture::GuiErrorCapture(Workspace& ws, std::string appFolder, std::string program)
    : ws_(ws),
      program_(std::move(program)),
      prompter_([this] { return handler_.zolErrorPath(); }),
      handler_(prompter_, std::move(appFolder)) {
  g_current = this;
}

GuiErrorCapture::~GuiErrorCapture() {
  if (g_current == this) g_current = nullptr;
}

GuiErrorCapture* GuiErrorCapture::current() {
  return g_current;
}

bool GuiErrorCapture::offerCrashReport(const CrashRecord& crash) {
  return handler_.OfferCrashReport(crash, program_) != ErrorDecision::Abort;
}

void runGuarded(QWidget* parent, const std::function<void()>& action, std::source_location where) {
  GuiErrorCapture* capture = GuiErrorCapture::current();
  if (capture == nullptr) {
    try {
      action();
    } catch (const std::exception& e) {
      QMessageBox::critical(
          parent, kMessageTitle,
          QObject::tr("The operation could not be completed:\n%1").arg(Q(e.what())));
    }
    return;
  }
  const auto [module, procedure] = moduleAndProcedure(where);
  const CallPlace place{capture->program(), module, procedure,
                        static_cast<std::int32_t>(where.line())};
  const std::string traceName = place.module + "." + place.procedure;
  ZOL_TRACE(traceName.c_str());
  StateDump dump;
  dump.module = [parent, module = place.module] {
    if (parent == nullptr) return;
    zolDumpVariable(module + ".objectName", parent->objectName().toStdString(), 0);
    zolDumpVariable(module + ".windowTitle", toCp1252(parent->windowTitle()), 0);
    zolDumpVariable(module + ".isVisible", parent->isVisible(), 0);
  };
  dump.globals = [capture, window = QPointer<QWidget>(parent ? parent->window() : nullptr)] {
    DumpWorkspace(capture->workspace());
    // The selection on screen is the window's own.
    if (window == nullptr) return;
    if (const auto* shown = window->findChild<const CurrentSelection*>()) {
      DumpSelection(shown->get());
    }
  };
  if (RunProtected(capture->handler(), place, action, dump) == CallOutcome::Abort) {
    // At once: nothing more of this process is to be trusted.
    std::_Exit(EXIT_FAILURE);
  }
}

}  // namespace zol
