#pragma once

// The chart beside the grid (MSChart1), drawn with Qt Charts from the chart
// description that the core's DoChart makes: what is plotted, in which order,
// with which title, is all decided there; this pane only draws it.

#include <QChartView>

#include "grid/chart.h"

namespace zol {

class ChartPane : public QChartView {
  Q_OBJECT

 public:
  explicit ChartPane(QWidget* parent = nullptr);

  void Draw(const ChartDescription& chart);
  const ChartDescription& Shown() const { return shown_; }

 private:
  void DrawBar(QChart* chart, const ChartDescription& d);
  void DrawPie(QChart* chart, const ChartDescription& d);
  void DrawEmpty(QChart* chart, const ChartDescription& d);

  ChartDescription shown_;
};

}  // namespace zol
