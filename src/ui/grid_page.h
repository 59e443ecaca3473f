#pragma once

// The page of the grid tabs: the grid with its header of headers
// for compared sessions, the chart below it behind a splitter, and the option
// strip: chart kind, chart order, most items, export and the
// spreadsheet. A build is shown whole: table, headers and chart together.

#include <QWidget>

#include "grid/chart.h"
#include "grid/grid_build.h"
#include "grid/grid_differences.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;
class QSpinBox;
class QSplitter;
class QPushButton;

namespace zol {

class ChartPane;
class GridView;
class SessionHeaderBar;

class GridPage : public QWidget {
  Q_OBJECT

 public:
  explicit GridPage(QWidget* parent = nullptr);

  GridView* grid() const { return grid_; }
  ChartPane* chart() const { return chart_; }
  SessionHeaderBar* headers() const { return headers_; }
  QWidget* optionStrip() const { return strip_; }
  // The search over the grid's rows (Ctrl+F puts the cursor there).
  QLineEdit* searchBox() const { return search_; }
  void focusSearch();

  // Shows a build made for tab `activeTab` and `measure`.
  void showBuild(GridBuild build, Tab activeTab, Measure measure);
  // The difference columns of compared grids ("Show differences", "Changed
  // only"); ticking a box shows the last compared build again with them.
  const DifferenceOptions& differenceOptions() const { return differences_; }

  // The empty chart (ResetChart), the arrays erased or kept.
  void resetChart(bool eraseArrays);

  const GraphOptions& graphOptions() const { return options_; }
  void setGraphOptions(const GraphOptions& options);

  double graphRatio() const;
  void setGraphRatio(double ratio);

 signals:
  void graphOptionsChanged();
  void graphRatioChanged(double ratio);
  void exportRequested();
  void viewInSpreadsheetRequested();

 private:
  QWidget* makeOptionStrip();
  void onOptionChanged(bool sortOnly);
  // GraphType 0 hides the chart and lets the grid fill the page.
  void applyChartVisibility();
  // Shows a build as it stands, with the chart it asks for.
  void present(GridBuild build);
  void onDifferencesChanged();

  GridView* grid_;
  SessionHeaderBar* headers_;
  ChartPane* chart_;
  QSplitter* split_;
  QWidget* strip_;
  QButtonGroup* typeGroup_ = nullptr;
  QButtonGroup* sortGroup_ = nullptr;
  QSpinBox* maxItems_ = nullptr;
  QLineEdit* search_ = nullptr;
  QCheckBox* showDifferences_ = nullptr;
  QCheckBox* changedOnly_ = nullptr;

  GraphOptions options_;
  DifferenceOptions differences_;
  // The last compared build as it was made, before any difference columns.
  GridBuild compared_;
  ChartArrays arrays_;
  ChartDescription description_;
  Tab activeTab_ = Tab::Procedures;
  Measure measure_ = Measure::Total;
  double ratio_ = 0.5;
  bool settingOptions_ = false;
};

}  // namespace zol
