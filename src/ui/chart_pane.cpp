#include "ui/chart_pane.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QHorizontalBarSeries>
#include <QLegendMarker>
#include <QPieSeries>
#include <QPieSlice>
#include <QValueAxis>

#include <algorithm>

#include "ui/qt_text.h"

namespace zol {

namespace {

// Series colours: one per compared session, the first for a single table.
const QColor kSeriesColours[] = {QColor(0x2f, 0x6f, 0xd0), QColor(0xef, 0x8a, 0x1f),
                                 QColor(0x2e, 0x9d, 0x4f), QColor(0xd2, 0x3f, 0x3f),
                                 QColor(0x8a, 0x4f, 0xc9), QColor(0x16, 0x9c, 0x9c),
                                 QColor(0x9c, 0x7a, 0x3c), QColor(0x60, 0x6a, 0x78)};

QColor SeriesColour(std::size_t i) {
  return kSeriesColours[i % std::size(kSeriesColours)];
}

QFont TitleFont() {
  QFont f;
  f.setBold(true);
  f.setPointSizeF(f.pointSizeF() * 1.1);
  return f;
}

}  // namespace

ChartPane::ChartPane(QWidget* parent) : QChartView(parent) {
  setObjectName("MSChart1");
  setRenderHint(QPainter::Antialiasing);
  setMinimumHeight(60);
  Draw(ResetChart());
}

void ChartPane::Draw(const ChartDescription& d) {
  shown_ = d;
  auto* chart = new QChart();
  chart->setTitleFont(TitleFont());
  chart->setAnimationOptions(QChart::NoAnimation);
  chart->setMargins(QMargins(4, 4, 4, 4));
  if (d.IsReset || d.ChartType == 0 || d.Items.empty()) {
    DrawEmpty(chart, d);
  } else if (d.ChartType == kChartTypePie2d) {
    DrawPie(chart, d);
  } else {
    DrawBar(chart, d);
  }
  QChart* old = this->chart();
  setChart(chart);
  delete old;
}

void ChartPane::DrawEmpty(QChart* chart, const ChartDescription& d) {
  const QString title =
      d.Title.empty() ? QString(kNoAvailableChart) : Q(d.Title) + "\n" + QString(kNoAvailableChart);
  chart->setTitle(title);
  chart->legend()->hide();
}

void ChartPane::DrawPie(QChart* chart, const ChartDescription& d) {
  chart->setTitle(Q(d.Title));
  auto* series = new QPieSeries();
  std::size_t i = 0;
  for (const ChartRow& item : d.Items) {
    const double value = item.Values.empty() ? 0.0 : item.Values.front();
    QPieSlice* slice = series->append(Q(item.Name), value);
    slice->setColor(item.Name == kOtherItem ? QColor(0xb8, 0xbe, 0xc8) : SeriesColour(i++));
    slice->setBorderColor(Qt::white);
  }
  series->setPieSize(0.8);
  chart->addSeries(series);
  chart->legend()->setAlignment(Qt::AlignRight);
  chart->legend()->show();
}

void ChartPane::DrawBar(QChart* chart, const ChartDescription& d) {
  QString title = Q(d.Title);
  if (d.ScaledToMicroseconds) title += tr(" (values in microseconds)");
  chart->setTitle(title);
  auto* series = new QHorizontalBarSeries();
  const std::size_t nSeries = std::max<std::size_t>(1, d.SeriesNames.size());
  for (std::size_t s = 0; s < nSeries; ++s) {
    auto* set = new QBarSet(s < d.SeriesNames.size() ? Q(d.SeriesNames[s]) : tr("Value"));
    set->setColor(SeriesColour(s));
    set->setBorderColor(SeriesColour(s).darker(115));
    for (const ChartRow& item : d.Items) set->append(s < item.Values.size() ? item.Values[s] : 0.0);
    series->append(set);
  }
  // Few items get slim bars rather than blocks that fill the plot.
  series->setBarWidth(std::min(0.8, 0.15 + 0.05 * static_cast<double>(d.Items.size())));
  QStringList categories;
  for (const ChartRow& item : d.Items) categories << Q(item.Name);
  chart->addSeries(series);
  auto* names = new QBarCategoryAxis();
  names->append(categories);
  // Every item keeps its name, in a smaller type when there are many.
  names->setTruncateLabels(false);
  QFont labels = names->labelsFont();
  if (d.Items.size() > 12) labels.setPointSizeF(std::max(6.5, labels.pointSizeF() * 0.85));
  names->setLabelsFont(labels);
  chart->addAxis(names, Qt::AlignLeft);
  series->attachAxis(names);
  auto* values = new QValueAxis();
  values->setRange(0, d.AxisTop > 0 ? d.AxisTop : 1);
  values->setLabelFormat("%.10g");  // 1000000, not 1e+06
  values->setTickCount(6);
  chart->addAxis(values, Qt::AlignBottom);
  series->attachAxis(values);
  chart->legend()->setVisible(d.SeriesNames.size() > 1);
  chart->legend()->setAlignment(Qt::AlignBottom);
}

}  // namespace zol
