#include "ui/error_dialog.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include "ui/gui_prompter.h"
#include "ui/qt_text.h"

namespace zol {

namespace {

// The core's texts use CR LF line ends; a label wants LF alone.
QString shown(const std::string& text) {
  QString s = Q(text);
  s.replace("\r\n", "\n");
  return s;
}

}  // namespace

ErrorDialog::ErrorDialog(const ErrorDialogState& state, QString reportFolder, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowStaysOnTopHint | Qt::WindowTitleHint),
      reportFolder_(std::move(reportFolder)) {
  setObjectName("zolFrmErrHandler");
  setWindowTitle(kMessageTitle);
  setModal(true);
  reply_ = {ErrorDecision::Abort, state.circumstances};

  errorText_ = new QLabel(shown(state.message), this);
  errorText_->setObjectName("errorText");
  errorText_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  reportText_ = new QLabel(this);
  reportText_->setObjectName("reportText");
  reportText_->setWordWrap(true);
  describe_ = new QPlainTextEdit(this);
  describe_->setObjectName("describe");
  describe_->setTabChangesFocus(true);

  auto makeButton = [this](const char* name, const QString& caption) {
    auto* b = new QPushButton(caption, this);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
  };
  abort_ = makeButton("abort", "&Abort");
  retry_ = makeButton("retry", "&Retry");
  ignore_ = makeButton("ignore", "&Ignore");
  alwaysIgnore_ = makeButton("alwaysIgnore", "Always i&gnore this error");
  report_ = makeButton("report", "Report &Error");
  look_ = makeButton("lookAtReport", "Look at report");

  if (state.hasReported) {
    reportText_->setText(shown(kErrorDialogReportedText));
    describe_->setPlainText(Q(state.circumstances));
    report_->setEnabled(false);
  } else {
    reportText_->setText(shown(kErrorDialogReportText));
    describe_->setPlainText(shown(kErrorDialogDescribePrompt));
  }
  look_->setEnabled(state.hasReported);

  connect(abort_, &QPushButton::clicked, this, [this] { choose(ErrorDecision::Abort); });
  connect(retry_, &QPushButton::clicked, this, [this] { choose(ErrorDecision::Retry); });
  connect(ignore_, &QPushButton::clicked, this, [this] { choose(ErrorDecision::Ignore); });
  connect(alwaysIgnore_, &QPushButton::clicked, this,
          [this] { choose(ErrorDecision::AlwaysIgnore); });
  connect(report_, &QPushButton::clicked, this, [this] { startReport(); });
  connect(look_, &QPushButton::clicked, this, [this] { lookAtReport(); });

  auto* reportRow = new QHBoxLayout;
  reportRow->addWidget(report_);
  reportRow->addWidget(look_);
  reportRow->addStretch();
  auto* decisions = new QHBoxLayout;
  decisions->addWidget(abort_);
  decisions->addWidget(retry_);
  decisions->addWidget(ignore_);
  decisions->addWidget(alwaysIgnore_);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(errorText_);
  layout->addWidget(reportText_);
  layout->addWidget(describe_);
  layout->addLayout(reportRow);
  layout->addLayout(decisions);
  // The width follows the error text, so that its lines don't break.
  reportText_->setMinimumWidth(errorText_->sizeHint().width());
  retry_->setDefault(true);
}

QPushButton* ErrorDialog::button(ErrorDecision d) const {
  switch (d) {
    case ErrorDecision::Abort:
      return abort_;
    case ErrorDecision::Retry:
      return retry_;
    case ErrorDecision::Ignore:
      return ignore_;
    case ErrorDecision::AlwaysIgnore:
      return alwaysIgnore_;
    case ErrorDecision::Report:
      return report_;
    default:
      return nullptr;
  }
}

void ErrorDialog::choose(ErrorDecision d) {
  reply_ = {d, toCp1252(describe_->toPlainText())};
  accept();
}

// The dialog closes before the report is made, so that the notice and then
// the mail program are not kept behind a window that stays on top.
void ErrorDialog::startReport() {
  reply_ = {ErrorDecision::Report, toCp1252(describe_->toPlainText())};
  accept();
}

void ErrorDialog::lookAtReport() {
  QDesktopServices::openUrl(QUrl::fromLocalFile(reportFolder_));
}

}  // namespace zol
