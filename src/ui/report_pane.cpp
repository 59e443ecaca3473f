#include "ui/report_pane.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QStackedWidget>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <exception>

#include "ui/qt_text.h"

namespace zol {

namespace {

constexpr const char* kScopeTexts[] = {"Current Session", "All Sessions", "All Sessions + Merged"};
constexpr const char* kDataTexts[] = {"Coverage", "Time", "Children time"};
constexpr const char* kDataKeys[] = {"COVERAGE", "NORMALTIME", "CHILDTOTALTIME"};
constexpr const char* kExportTexts[] = {"Export Modules data", "Export Procedures data",
                                        "Export Lines data", "But don't export unexecuted lines"};
// "&&" shows one ampersand on a button.
constexpr const char* kReportTexts[] = {"Session summary && Top rankings", "HTML source code view"};
constexpr const char* kColumnTexts[] = {"Hits", "Avg. Time", "Total Time", "Avg. Child",
                                        "Total Child"};
constexpr const char* kColorTexts[] = {"No Color", "Color By %", "Color By Value"};
constexpr const char* kTargetTexts[] = {"Session folder", "Subfolder of session folder",
                                        "Temp folder (to be deleted on exit)", "User defined:"};

QLabel* heading(const char* text, QWidget* parent) {
  auto* label = new QLabel(QObject::tr(text), parent);
  QFont font = label->font();
  font.setBold(true);
  label->setFont(font);
  return label;
}

}  // namespace

ReportPane::ReportPane(Workspace& ws, QWidget* parent) : QWidget(parent), ws_(ws) {
  setObjectName("reportsPage");
  options_ = DefaultReportOptions(ws_.appFolder);
  openFile = [](const std::string& file) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QPath(file)));
  };

  auto* outer = new QVBoxLayout(this);
  outer->setContentsMargins(0, 0, 0, 0);
  auto* scroll = new QScrollArea(this);
  scroll->setWidgetResizable(true);
  scroll->setFrameShape(QFrame::NoFrame);
  outer->addWidget(scroll);
  auto* body = new QWidget(scroll);
  scroll->setWidget(body);
  auto* steps = new QVBoxLayout(body);

  // Step 1: which sessions.
  QGroupBox* step1 = step("Step 1: Select sessions to report");
  scope_ = new QComboBox(step1);
  scope_->setObjectName("reportScope");
  for (const char* text : kScopeTexts) scope_->addItem(tr(text));
  step1->layout()->addWidget(scope_);
  steps->addWidget(step1);

  // Step 2: which data.
  QGroupBox* step2 = step("Step 2: Select the type of data to report");
  auto* dataRow = new QHBoxLayout;
  for (int i = 0; i < 3; ++i) {
    data_[i] = new QToolButton(step2);
    data_[i]->setObjectName(kDataKeys[i]);
    data_[i]->setText(tr(kDataTexts[i]));
    data_[i]->setCheckable(true);
    data_[i]->setToolButtonStyle(Qt::ToolButtonTextOnly);
    dataRow->addWidget(data_[i]);
  }
  dataRow->addStretch(1);
  static_cast<QVBoxLayout*>(step2->layout())->addLayout(dataRow);
  // A pressed data button must read as pressed in every style.
  step2->setStyleSheet(
      "QToolButton { padding: 3px 10px; }"
      "QToolButton:checked { background: #cfe0f7; border: 1px solid #4a7cc4; border-radius: 3px; "
      "}");
  steps->addWidget(step2);

  // Step 3: export or report.
  QGroupBox* step3 = step("Step 3: Select Excel export or HTML report");
  reportType_ = new QButtonGroup(this);
  auto* exportButton = new QRadioButton(tr("Export raw data to Excel compatible format"), step3);
  auto* htmlButton = new QRadioButton(tr("Create detailed report in HTML format"), step3);
  reportType_->addButton(exportButton, 1);
  reportType_->addButton(htmlButton, 0);
  step3->layout()->addWidget(exportButton);
  step3->layout()->addWidget(htmlButton);
  steps->addWidget(step3);

  // Step 4: the export frame or the HTML frame.
  QGroupBox* step4 = step("Step 4: Fine tune report ");
  frames_ = new QStackedWidget(step4);
  auto* exportFrame = new QWidget(frames_);
  auto* exportLayout = new QVBoxLayout(exportFrame);
  exportLayout->addWidget(heading("What to export:", exportFrame));
  for (int i = 0; i < 4; ++i) {
    exportWhat_[i] = new QCheckBox(tr(kExportTexts[i]), exportFrame);
    exportLayout->addWidget(exportWhat_[i]);
  }
  exportWhat_[kExportSkipUnexecuted]->setContentsMargins(20, 0, 0, 0);
  exportLayout->addWidget(heading("Options:", exportFrame));
  separate_ = new QCheckBox(tr("Create separate files for mod/proc/line data"), exportFrame);
  exportLayout->addWidget(separate_);
  exportLayout->addStretch(1);

  auto* htmlFrame = new QWidget(frames_);
  auto* htmlLayout = new QVBoxLayout(htmlFrame);
  htmlLayout->addWidget(heading("What to report:", htmlFrame));
  for (int i = 0; i < 2; ++i) {
    reportWhat_[i] = new QCheckBox(tr(kReportTexts[i]), htmlFrame);
    htmlLayout->addWidget(reportWhat_[i]);
  }
  auto* topRow = new QHBoxLayout;
  topRow->addWidget(new QLabel(tr("Items in Top rankings:"), htmlFrame));
  topItems_ = new QSpinBox(htmlFrame);
  topItems_->setObjectName("reportTopItems");
  topItems_->setRange(kTopItemsMin, kTopItemsMax);
  topRow->addWidget(topItems_);
  topRow->addStretch(1);
  htmlLayout->addLayout(topRow);
  auto* columnRow = new QHBoxLayout;
  for (int i = 0; i < 5; ++i) {
    columns_[i] = new QCheckBox(tr(kColumnTexts[i]), htmlFrame);
    columnRow->addWidget(columns_[i]);
  }
  columnRow->addStretch(1);
  htmlLayout->addLayout(columnRow);
  auto* colorRow = new QHBoxLayout;
  colorRow->addWidget(new QLabel(tr("Color scheme:"), htmlFrame));
  colors_ = new QButtonGroup(this);
  for (int i = 0; i < 3; ++i) {
    auto* button = new QRadioButton(tr(kColorTexts[i]), htmlFrame);
    colors_->addButton(button, i + 1);
    colorRow->addWidget(button);
  }
  colorRow->addStretch(1);
  htmlLayout->addLayout(colorRow);
  auto* note = new QLabel(tr("\"Based on\": switch analyzis to change this"), htmlFrame);
  note->setEnabled(false);
  htmlLayout->addWidget(note);
  htmlLayout->addWidget(heading("Select format:", htmlFrame));
  auto* formatRow = new QHBoxLayout;
  htm_ = new QCheckBox(tr("HTM"), htmlFrame);
  chm_ = new QCheckBox(tr("CHM (compiled html)"), htmlFrame);
  formatRow->addWidget(htm_);
  formatRow->addWidget(chm_);
  formatRow->addStretch(1);
  htmlLayout->addLayout(formatRow);
  htmlLayout->addStretch(1);
  frames_->addWidget(exportFrame);
  frames_->addWidget(htmlFrame);
  step4->layout()->addWidget(frames_);
  steps->addWidget(step4);

  // Step 5: where.
  QGroupBox* step5 = step("Step 5: Select Target Folder");
  target_ = new QButtonGroup(this);
  for (int i = 0; i < 4; ++i) {
    auto* button = new QRadioButton(tr(kTargetTexts[i]), step5);
    target_->addButton(button, i);
    if (i < 3) step5->layout()->addWidget(button);
  }
  auto* folderRow = new QHBoxLayout;
  folderRow->addWidget(target_->button(3));
  folder_ = new QLineEdit(step5);
  folder_->setObjectName("reportFolder");
  folderRow->addWidget(folder_, 1);
  auto* browse = new QPushButton(tr("..."), step5);
  browse->setFixedWidth(32);
  folderRow->addWidget(browse);
  static_cast<QVBoxLayout*>(step5->layout())->addLayout(folderRow);
  connect(browse, &QPushButton::clicked, this, [this] {
    const QString dir =
        QFileDialog::getExistingDirectory(this, tr("Target folder"), folder_->text());
    if (!dir.isEmpty()) {
      folder_->setText(dir);
      target_->button(3)->setChecked(true);
      readControls();
    }
  });
  steps->addWidget(step5);

  // Step 6: afterwards.
  QGroupBox* step6 = step("Step 6: Miscellaneous");
  step6->layout()->addWidget(new QLabel(tr("After process:"), step6));
  open_ = new QCheckBox(tr("Open report"), step6);
  step6->layout()->addWidget(open_);
  steps->addWidget(step6);

  // Step 7: go.
  QGroupBox* step7 = step("Step 7: Generate");
  go_ = new QPushButton(tr("GO!"), step7);
  go_->setObjectName("reportGo");
  QFont bold = go_->font();
  bold.setBold(true);
  go_->setFont(bold);
  go_->setMinimumWidth(120);
  step7->layout()->addWidget(go_);
  steps->addWidget(step7);
  steps->addStretch(1);

  showOptions(options_);
  connectControls();
}

QGroupBox* ReportPane::step(const char* caption) {
  auto* box = new QGroupBox(tr(caption), this);
  new QVBoxLayout(box);
  return box;
}

QRadioButton* ReportPane::reportTypeButton(bool exportData) const {
  return static_cast<QRadioButton*>(reportType_->button(exportData ? 1 : 0));
}

QRadioButton* ReportPane::colorButton(int scheme) const {
  return static_cast<QRadioButton*>(colors_->button(scheme));
}

QRadioButton* ReportPane::targetButton(ReportTarget target) const {
  return static_cast<QRadioButton*>(target_->button(static_cast<int>(target)));
}

void ReportPane::connectControls() {
  const auto changed = [this] { readControls(); };
  connect(scope_, &QComboBox::currentIndexChanged, this, changed);
  for (QToolButton* b : data_) connect(b, &QToolButton::toggled, this, changed);
  connect(reportType_, &QButtonGroup::idToggled, this, changed);
  for (QCheckBox* b : exportWhat_) connect(b, &QCheckBox::toggled, this, changed);
  connect(separate_, &QCheckBox::toggled, this, changed);
  for (QCheckBox* b : reportWhat_) connect(b, &QCheckBox::toggled, this, changed);
  connect(topItems_, &QSpinBox::valueChanged, this, changed);
  for (QCheckBox* b : columns_) connect(b, &QCheckBox::toggled, this, changed);
  connect(colors_, &QButtonGroup::idToggled, this, changed);
  connect(htm_, &QCheckBox::toggled, this, changed);
  connect(chm_, &QCheckBox::toggled, this, changed);
  connect(target_, &QButtonGroup::idToggled, this, changed);
  connect(folder_, &QLineEdit::editingFinished, this, changed);
  connect(open_, &QCheckBox::toggled, this, changed);
  connect(go_, &QPushButton::clicked, this, [this] { generate(); });
}

void ReportPane::showOptions(const ReportOptions& o) {
  showing_ = true;
  options_ = o;
  scope_->setCurrentIndex(static_cast<int>(o.Scope));
  for (int i = 0; i < 3; ++i) data_[i]->setChecked(o.DataRequested[i]);
  reportTypeButton(o.DoExport)->setChecked(true);
  frames_->setCurrentIndex(o.DoExport ? 0 : 1);
  for (int i = 0; i < 4; ++i) exportWhat_[i]->setChecked(o.ExportWhat[i]);
  separate_->setChecked(o.ExportCreateSeparateFile);
  reportWhat_[0]->setChecked(o.IncludeReportSummary);
  reportWhat_[1]->setChecked(o.IncludeHTMLProject);
  topItems_->setValue(o.TopItems);
  const HtmlPageOptions& page = ws_.view.OptionsHtml[kReportPageOptions];
  for (int i = 0; i < 5; ++i) columns_[i]->setChecked(page.Column[i]);
  if (QAbstractButton* b = colors_->button(page.ColorScheme)) b->setChecked(true);
  htm_->setChecked(o.ReporttoHtm);
  chm_->setChecked(o.ReporttoChm);
  targetButton(o.Target)->setChecked(true);
  folder_->setText(QPath(o.ReportFolder));
  open_->setChecked(o.OpenReport);
  showing_ = false;
}

void ReportPane::readControls() {
  if (showing_) return;
  ReportOptions& o = options_;
  o.Scope = static_cast<ReportScope>(std::max(0, scope_->currentIndex()));
  for (int i = 0; i < 3; ++i) o.DataRequested[i] = data_[i]->isChecked();
  o.DoExport = reportType_->checkedId() == 1;
  frames_->setCurrentIndex(o.DoExport ? 0 : 1);
  for (int i = 0; i < 4; ++i) o.ExportWhat[i] = exportWhat_[i]->isChecked();
  o.ExportCreateSeparateFile = separate_->isChecked();
  o.IncludeReportSummary = reportWhat_[0]->isChecked();
  o.IncludeHTMLProject = reportWhat_[1]->isChecked();
  o.TopItems = topItems_->value();
  HtmlPageOptions& page = ws_.view.OptionsHtml[kReportPageOptions];
  for (int i = 0; i < 5; ++i) page.Column[i] = columns_[i]->isChecked();
  if (colors_->checkedId() >= 1) page.ColorScheme = colors_->checkedId();
  o.ReporttoHtm = htm_->isChecked();
  o.ReporttoChm = chm_->isChecked();
  if (target_->checkedId() >= 0) o.Target = static_cast<ReportTarget>(target_->checkedId());
  o.ReportFolder = fromQPath(folder_->text());
  o.OpenReport = open_->isChecked();
}

void ReportPane::loadOptions(const std::string& iniFile) {
  showOptions(LoadReportOptions(ws_, iniFile));
}

void ReportPane::saveOptions(const std::string& iniFile) const {
  SaveReportOptions(ws_, options_, iniFile);
}

ReportOutcome ReportPane::generate() {
  readControls();
  ReportRequest request;
  request.options = options_;
  const Selection selection = currentSelection ? currentSelection() : Selection{};
  request.current = selection.session;
  request.measure = selection.measure;
  go_->setEnabled(false);
  ReportOutcome outcome;
  try {
    outcome = CreateReport(ws_, request);
  } catch (const std::exception& e) {
    // The pages written so far stay; the user learns why the rest is missing.
    go_->setEnabled(true);
    ws_.prompter().ShowProgress(false);
    ws_.prompter().ShowMessage(std::string("The report could not be written: ") + e.what(),
                               MessageKind::Critical);
    return outcome;
  }
  go_->setEnabled(true);
  if (outcome.written && options_.OpenReport && openFile) {
    for (const std::string& file : outcome.FileToOpen) openFile(file);
  }
  return outcome;
}

}  // namespace zol
