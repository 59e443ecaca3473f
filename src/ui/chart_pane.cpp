#include "ui/chart_pane.h"

#include <QBarCategoryAxis>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QCursor>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QHorizontalBarSeries>
#include <QLegendMarker>
#include <QPieSeries>
#include <QPieSlice>
#include <QScrollArea>
#include <QTableView>
#include <QToolTip>
#include <QValueAxis>
#include <algorithm>
#include <cmath>

#include "ui/chart_legend_model.h"
#include "ui/qt_text.h"

namespace zol {

namespace {

// Series colours: one per compared session, the first for a single table.
const QColor kSeriesColours[] = {QColor(0x2f, 0x6f, 0xd0), QColor(0xef, 0x8a, 0x1f),
                                 QColor(0x2e, 0x9d, 0x4f), QColor(0xd2, 0x3f, 0x3f),
                                 QColor(0x8a, 0x4f, 0xc9), QColor(0x16, 0x9c, 0x9c),
                                 QColor(0x9c, 0x7a, 0x3c), QColor(0x60, 0x6a, 0x78)};

QColor seriesColour(std::size_t i) {
  if (i < std::size(kSeriesColours)) return kSeriesColours[i];
  return ChartPane::sliceColour(i, i + 1);
}

QFont TitleFont() {
  QFont f;
  f.setBold(true);
  f.setPointSizeF(f.pointSizeF() * 1.1);
  return f;
}

// The widest a bar's label may be, in average characters of its font.
constexpr int kLabelChars = 46;

// A pie slice shows its share on itself from this share up; smaller ones are
// named in the legend list only.
constexpr double kLabelledSlice = 0.04;

}  // namespace

QColor ChartPane::sliceColour(std::size_t i, std::size_t count) {
  // The eight series colours first; beyond them hues spread by the golden
  // angle, in three steps of lightness, so that neighbours always differ.
  if (count <= std::size(kSeriesColours)) return kSeriesColours[i % std::size(kSeriesColours)];
  const double hue = std::fmod(0.58 + static_cast<double>(i) * 0.6180339887, 1.0);
  static const double kSat[] = {0.70, 0.50, 0.85};
  static const double kVal[] = {0.85, 0.70, 0.60};
  const std::size_t band = i % 3;
  return QColor::fromHsvF(static_cast<float>(hue), static_cast<float>(kSat[band]),
                          static_cast<float>(kVal[band]));
}

QString ChartPane::elideLabel(const QString& text, const QFontMetrics& metrics, int width) {
  return metrics.elidedText(text, Qt::ElideMiddle, width);
}

ChartPane::ChartPane(QWidget* parent)
    : QWidget(parent),
      scroller_(new QScrollArea(this)),
      view_(new QChartView(scroller_)),
      legend_(new QTableView(this)),
      legendModel_(new ChartLegendModel(this)) {
  setObjectName("chart");
  view_->setRenderHint(QPainter::Antialiasing);
  view_->setObjectName("chartView");
  scroller_->setWidget(view_);
  scroller_->setWidgetResizable(true);
  scroller_->setFrameShape(QFrame::NoFrame);
  scroller_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  legend_->setObjectName("chartLegend");
  legend_->setModel(legendModel_);
  legend_->verticalHeader()->hide();
  legend_->setSelectionMode(QAbstractItemView::NoSelection);
  legend_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  legend_->setShowGrid(false);
  legend_->setWordWrap(false);
  legend_->setTextElideMode(Qt::ElideMiddle);
  legend_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  legend_->verticalHeader()->setDefaultSectionSize(legend_->fontMetrics().height() + 4);
  legend_->horizontalHeader()->setSectionResizeMode(ChartLegendModel::kName, QHeaderView::Stretch);
  legend_->horizontalHeader()->setSectionResizeMode(ChartLegendModel::kValue,
                                                    QHeaderView::ResizeToContents);
  legend_->horizontalHeader()->setSectionResizeMode(ChartLegendModel::kShare,
                                                    QHeaderView::ResizeToContents);
  legend_->hide();
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  row->addWidget(scroller_, 3);
  row->addWidget(legend_, 2);
  setMinimumHeight(60);
  draw(ResetChart());
}

void ChartPane::draw(const ChartDescription& d) {
  shown_ = d;
  barLabels_.clear();
  auto* chart = new QChart();
  chart->setTitleFont(TitleFont());
  chart->setAnimationOptions(QChart::NoAnimation);
  chart->setMargins(QMargins(4, 4, 4, 4));
  view_->setMinimumHeight(0);
  legend_->hide();
  legendModel_->setEntries({});
  if (d.IsReset || d.ChartType == 0 || d.Items.empty()) {
    drawEmpty(chart, d);
  } else if (d.ChartType == kChartTypePie2d) {
    drawPie(chart, d);
  } else {
    drawBar(chart, d);
  }
  QChart* old = view_->chart();
  view_->setChart(chart);
  delete old;
}

void ChartPane::drawEmpty(QChart* chart, const ChartDescription& d) {
  // The caption and the notice on lines of their own.
  QString title = plainForRichText(kNoAvailableChart);
  if (!d.Title.empty()) title = plainForRichText(Q(d.Title)) + "<br>" + title;
  chart->setTitle(title);
  chart->legend()->hide();
}

void ChartPane::drawPie(QChart* chart, const ChartDescription& d) {
  chart->setTitle(plainForRichText(Q(d.Title)));
  auto* series = new QPieSeries();
  std::vector<LegendEntry> entries;
  double total = 0;
  for (const ChartRow& item : d.Items) {
    const double value = item.Values.empty() ? 0.0 : item.Values.front();
    if (std::isfinite(value) && value > 0) total += value;
  }
  const std::size_t count = d.Items.size();
  for (std::size_t i = 0; i < count; ++i) {
    const ChartRow& item = d.Items[i];
    const double value = item.Values.empty() ? 0.0 : item.Values.front();
    const QString name = Q(item.Name);
    const QColor colour =
        item.Name == kOtherItem ? QColor(0xb8, 0xbe, 0xc8) : sliceColour(i, count);
    const double share = total > 0 && value > 0 ? value / total : 0;
    QPieSlice* slice = series->append(plainForRichText(name), value);
    slice->setColor(colour);
    slice->setBorderColor(Qt::white);
    // Large slices carry their share; every slice has its name, value and
    // share in its tooltip and in the legend list.
    slice->setLabel(QString::number(share * 100, 'f', 1) + "%");
    slice->setLabelVisible(share >= kLabelledSlice);
    slice->setLabelPosition(QPieSlice::LabelInsideNormal);
    slice->setLabelColor(Qt::white);
    const QString tip = plainToolTip(
        QString("%1\n%2 (%3%)").arg(name, chartValueText(value)).arg(share * 100, 0, 'f', 1));
    connect(slice, &QPieSlice::hovered, this, [slice, tip](bool on) {
      slice->setExploded(on);
      if (on) {
        QToolTip::showText(QCursor::pos(), tip);
      } else {
        QToolTip::hideText();
      }
    });
    entries.push_back({name, value, colour});
  }
  series->setPieSize(0.85);
  chart->addSeries(series);
  chart->legend()->hide();
  legendModel_->setEntries(std::move(entries));
  legend_->show();
}

void ChartPane::drawBar(QChart* chart, const ChartDescription& d) {
  QString title = Q(d.Title);
  if (d.ScaledToMicroseconds) title += tr(" (values in microseconds)");
  chart->setTitle(plainForRichText(title));
  auto* series = new QHorizontalBarSeries();
  const std::size_t seriesCount = std::max<std::size_t>(1, d.SeriesNames.size());
  for (std::size_t s = 0; s < seriesCount; ++s) {
    const QString setName = s < d.SeriesNames.size() ? Q(d.SeriesNames[s]) : tr("Value");
    auto* set = new QBarSet(plainForRichText(setName));
    set->setColor(seriesColour(s));
    set->setBorderColor(seriesColour(s).darker(115));
    for (const ChartRow& item : d.Items) set->append(s < item.Values.size() ? item.Values[s] : 0.0);
    series->append(set);
    // The whole name and the value under the pointer.
    connect(set, &QBarSet::hovered, this, [this, s, setName, seriesCount](bool on, int index) {
      if (!on || index < 0 || index >= static_cast<int>(shown_.Items.size())) {
        QToolTip::hideText();
        return;
      }
      const ChartRow& item = shown_.Items[static_cast<std::size_t>(index)];
      const double value = s < item.Values.size() ? item.Values[s] : 0.0;
      QString text = Q(item.Name) + "\n";
      if (seriesCount > 1) text += setName + ": ";
      text += chartValueText(value);
      QToolTip::showText(QCursor::pos(), plainToolTip(text));
    });
  }
  const int n = static_cast<int>(d.Items.size());
  // Few items get slim bars rather than blocks that fill the plot.
  series->setBarWidth(std::min(0.8, 0.15 + 0.05 * n * static_cast<int>(seriesCount)));

  auto* names = new QBarCategoryAxis();
  QFont labelFont = names->labelsFont();
  const QFontMetrics metrics(labelFont);
  const int labelWidth = kLabelChars * std::max(5, metrics.averageCharWidth());
  QStringList categories;
  for (int i = 0; i < n; ++i) {
    const QString label =
        elideLabel(Q(d.Items[static_cast<std::size_t>(i)].Name), metrics, labelWidth);
    barLabels_ << label;
    // The axis refuses a name it already holds; equal names (two lines of
    // the same text) are told apart by invisible marks.
    QString category = plainForRichText(label);
    while (categories.contains(category)) category += QChar(0x200B);
    categories << category;
  }
  chart->addSeries(series);
  names->append(categories);
  names->setTruncateLabels(false);
  chart->addAxis(names, Qt::AlignLeft);
  series->attachAxis(names);
  auto* values = new QValueAxis();
  values->setRange(0, d.AxisTop > 0 ? d.AxisTop : 1);
  values->setLabelFormat("%.10g");  // 1000000, not 1e+06
  values->setTickCount(6);
  chart->addAxis(values, Qt::AlignBottom);
  series->attachAxis(values);
  const bool legend = d.SeriesNames.size() > 1;
  chart->legend()->setVisible(legend);
  chart->legend()->setAlignment(Qt::AlignBottom);

  // Each label needs a line of its own: the axis hides a label that would
  // touch the one before it. When the pane is too low, the chart grows and
  // the pane scrolls.
  const int line = metrics.height() + 3;
  const int slot = std::max(line, 3 * static_cast<int>(seriesCount) + 4);
  const int titleHeight = QFontMetrics(TitleFont()).height() * 2 + 12;
  const int axisHeight = metrics.height() * 2 + 16;
  const int legendHeight = legend ? metrics.height() + 24 : 0;
  view_->setMinimumHeight(n * slot + titleHeight + axisHeight + legendHeight + 16);
}

}  // namespace zol
