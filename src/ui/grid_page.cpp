#include "ui/grid_page.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QSplitter>
#include <QVBoxLayout>

#include "ui/chart_pane.h"
#include "ui/flow_layout.h"
#include "ui/grid_view.h"
#include "ui/session_header_bar.h"
#include "ui/window_options.h"

namespace zol {

GridPage::GridPage(QWidget* parent)
    : QWidget(parent),
      grid_(new GridView(this)),
      headers_(new SessionHeaderBar(grid_, this)),
      chart_(new ChartPane(this)),
      split_(new QSplitter(Qt::Vertical, this)) {
  setObjectName("gridPage");
  auto* gridBox = new QWidget(split_);
  auto* gridLayout = new QVBoxLayout(gridBox);
  // The header of headers stands right on the grid's upper edge, its first
  // section starting where the grid's columns start.
  gridLayout->setContentsMargins(0, 0, 0, 0);
  gridLayout->setSpacing(0);
  auto* headerRow = new QHBoxLayout();
  headerRow->setContentsMargins(grid_->frameWidth(), 0, grid_->frameWidth(), 0);
  headerRow->addWidget(headers_);
  gridLayout->addLayout(headerRow);
  gridLayout->addWidget(grid_, 1);
  split_->setObjectName("gridChartSplitter");
  split_->addWidget(gridBox);
  split_->addWidget(chart_);
  split_->setChildrenCollapsible(false);
  connect(split_, &QSplitter::splitterMoved, this, [this] {
    ratio_ = graphRatio();
    emit graphRatioChanged(ratio_);
  });

  strip_ = makeOptionStrip();
  // The strip wraps onto a second row on a narrow page.
  strip_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(strip_);
  layout->addWidget(split_, 1);
  setGraphRatio(0.5);
}

QWidget* GridPage::makeOptionStrip() {
  auto* strip = new QWidget(this);
  strip->setObjectName("chartOptions");
  auto* row = new FlowLayout(strip);
  typeGroup_ = new QButtonGroup(strip);
  const char* types[] = {"Hide Graphic (Grid Only)", "Show Bar-Type Graphic",
                         "Show Pie-Type Graphic"};
  for (int i = 0; i < 3; ++i) {
    auto* b = new QRadioButton(tr(types[i]), strip);
    b->setObjectName(QString("chartType%1").arg(i));
    typeGroup_->addButton(b, i);
    row->addWidget(b);
  }
  row->addSpacing(12);
  sortGroup_ = new QButtonGroup(strip);
  const char* sorts[] = {"Sort by Name", "Sort by Value"};
  for (int i = 0; i < 2; ++i) {
    auto* b = new QRadioButton(tr(sorts[i]), strip);
    b->setObjectName(QString("chartOrder%1").arg(i + 1));
    sortGroup_->addButton(b, i + 1);
    row->addWidget(b);
  }
  row->addSpacing(12);
  // The label and its spin box wrap as one, never apart.
  auto* limit = new QWidget(strip);
  auto* limitRow = new QHBoxLayout(limit);
  limitRow->setContentsMargins(0, 0, 0, 0);
  limitRow->setSpacing(4);
  auto* limitLabel = new QLabel(tr("Max Items:"), limit);
  maxItems_ = new QSpinBox(limit);
  limitLabel->setBuddy(maxItems_);
  limitRow->addWidget(limitLabel);
  limitRow->addWidget(maxItems_);
  row->addWidget(limit);
  maxItems_->setObjectName("chartMaxItems");
  maxItems_->setRange(0, kGraphMaxItemsLimit);
  maxItems_->setToolTip(tr("Limit the number of items to plot (0: unlimited)"));
  maxItems_->setSpecialValueText(tr("all"));
  auto* save = new QPushButton(tr("Export..."), strip);
  save->setObjectName("saveGrid");
  save->setToolTip(tr("Save the table as comma- or tab-separated text"));
  auto* excel = new QPushButton(tr("View in Spreadsheet"), strip);
  excel->setObjectName("openGridInSpreadsheet");
  excel->setToolTip(tr("Open the table in the desktop's spreadsheet program"));
  row->addWidget(save);
  row->addWidget(excel);
  showDifferences_ = new QCheckBox(tr("Show differences"), strip);
  showDifferences_->setObjectName("showDifferences");
  showDifferences_->setToolTip(
      tr("After each later session, its change against the first one: slower in red, faster "
         "in green, within the noise in grey"));
  changedOnly_ = new QCheckBox(tr("Changed only"), strip);
  changedOnly_->setObjectName("changedOnly");
  changedOnly_->setToolTip(tr("Keep only the rows that changed beyond the noise"));
  showDifferences_->setEnabled(false);
  changedOnly_->setEnabled(false);
  row->addWidget(showDifferences_);
  row->addWidget(changedOnly_);
  connect(showDifferences_, &QCheckBox::toggled, this, [this] { onDifferencesChanged(); });
  connect(changedOnly_, &QCheckBox::toggled, this, [this] { onDifferencesChanged(); });
  search_ = new QLineEdit(strip);
  search_->setObjectName("gridSearch");
  search_->setPlaceholderText(tr("Find module, procedure, line..."));
  search_->setToolTip(
      tr("Keeps the rows whose module, procedure or line holds all the words (Ctrl+F)"));
  search_->setClearButtonEnabled(true);
  search_->setMinimumWidth(search_->fontMetrics().averageCharWidth() * 28);
  row->addWidget(search_);
  connect(search_, &QLineEdit::textChanged, grid_, &GridView::setSearch);
  connect(search_, &QLineEdit::returnPressed, grid_, [this] { grid_->setFocus(); });
  connect(save, &QPushButton::clicked, this, &GridPage::exportRequested);
  connect(excel, &QPushButton::clicked, this, &GridPage::viewInSpreadsheetRequested);
  connect(typeGroup_, &QButtonGroup::idClicked, this, [this](int) { onOptionChanged(false); });
  connect(sortGroup_, &QButtonGroup::idClicked, this, [this](int) { onOptionChanged(true); });
  connect(maxItems_, &QSpinBox::valueChanged, this, [this](int) { onOptionChanged(false); });
  return strip;
}

void GridPage::focusSearch() {
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

void GridPage::setGraphOptions(const GraphOptions& options) {
  options_ = options;
  settingOptions_ = true;
  if (QAbstractButton* b = typeGroup_->button(options.GraphType)) b->setChecked(true);
  if (QAbstractButton* b = sortGroup_->button(options.GraphSortKey)) b->setChecked(true);
  maxItems_->setValue(options.GraphMaxItems);
  settingOptions_ = false;
  applyChartVisibility();
}

void GridPage::onOptionChanged(bool sortOnly) {
  if (settingOptions_) return;
  options_.GraphType = typeGroup_->checkedId();
  options_.GraphSortKey = sortGroup_->checkedId();
  options_.GraphMaxItems = maxItems_->value();
  applyChartVisibility();
  if (sortOnly) {
    DoChartSortOnly(description_, options_.GraphSortKey);
  } else if (description_.IsReset && !arrays_.HasBarItems() && !arrays_.HasPieItems()) {
    // Nothing to plot: the empty chart stays.
  } else {
    description_ = DoChart(arrays_, options_, activeTab_, measure_);
  }
  if (options_.GraphType != kGraphTypeNone) chart_->draw(description_);
  emit graphOptionsChanged();
}

void GridPage::applyChartVisibility() {
  chart_->setVisible(options_.GraphType != kGraphTypeNone);
  if (options_.GraphType != kGraphTypeNone) setGraphRatio(ratio_);
}

void GridPage::showBuild(GridBuild build, Tab activeTab, Measure measure) {
  activeTab_ = activeTab;
  measure_ = measure;
  const bool comparable = build.Headers.SessionNames.size() >= 2;
  showDifferences_->setEnabled(comparable);
  changedOnly_->setEnabled(comparable && differences_.Show);
  if (comparable) {
    compared_ = build;
    compared_.Chart = ChartUpdate::None;
    ShowDifferences(build, differences_);
  } else {
    compared_ = GridBuild();
  }
  present(std::move(build));
}

void GridPage::onDifferencesChanged() {
  differences_.Show = showDifferences_->isChecked();
  differences_.ChangedOnly = changedOnly_->isChecked();
  changedOnly_->setEnabled(showDifferences_->isEnabled() && differences_.Show);
  if (compared_.Headers.SessionNames.size() < 2) return;
  GridBuild build = compared_;
  ShowDifferences(build, differences_);
  present(std::move(build));
}

void GridPage::present(GridBuild build) {
  const bool compared = !build.Headers.SessionNames.empty();
  grid_->setCompared(compared);
  // The columns before the sessions' runs (module, procedure, line) stay in
  // view while the sessions' columns scroll.
  grid_->setFrozenColumns(compared ? build.Headers.FirstColumn : 0);
  UpdateChart(build, arrays_, description_, options_, activeTab_, measure_);
  grid_->showTable(std::move(build.Grid));
  if (compared) {
    headers_->prepareFakeHeaders(build.Headers);
  } else {
    headers_->release();
  }
  if (options_.GraphType != kGraphTypeNone && build.Chart != ChartUpdate::None) {
    chart_->draw(description_);
  }
}

void GridPage::resetChart(bool eraseArrays) {
  description_ = zol::ResetChart(arrays_, eraseArrays);
  chart_->draw(description_);
}

double GridPage::graphRatio() const {
  const QList<int> sizes = split_->sizes();
  const int total = sizes.value(0) + sizes.value(1);
  return total > 0 ? static_cast<double>(sizes.value(0)) / total : ratio_;
}

void GridPage::setGraphRatio(double ratio) {
  ratio_ = clampRatio(ratio);
  const int total = 10000;
  split_->setSizes({static_cast<int>(total * ratio_), static_cast<int>(total * (1 - ratio_))});
}

}  // namespace zol
