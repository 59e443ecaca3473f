// The chart as it is drawn: names from a session shown as they stand (never
// read as markup), a label for every bar, pies whose slices and legend
// entries can be told apart.

#include "ui/chart_pane.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBarCategoryAxis>
#include <QChartView>
#include <QGraphicsScene>
#include <QGraphicsTextItem>
#include <QScrollArea>
#include <QSet>
#include <QTableView>

#include "ui/chart_legend_model.h"
#include "ui/qt_text.h"
#include "ui/ui_test_support.h"

namespace zol {
namespace {

ChartDescription Bars(const std::vector<std::string>& names, std::size_t series = 1) {
  ChartDescription d;
  d.ChartType = kChartTypeBar2d;
  d.Title = "Procedures <total time> & more";
  for (std::size_t i = 0; i < names.size(); ++i) {
    d.Items.push_back({names[i], std::vector<double>(series, 10.0 + static_cast<double>(i))});
  }
  if (series > 1) {
    for (std::size_t s = 0; s < series; ++s) d.SeriesNames.push_back("Run <" + std::to_string(s));
  }
  d.AxisTop = 50;
  return d;
}

// The texts of the chart's scene that are drawn, as plain text.
QSet<QString> VisibleTexts(ChartPane& pane) {
  QSet<QString> texts;
  for (QGraphicsItem* item : pane.chartView()->scene()->items()) {
    auto* text = dynamic_cast<QGraphicsTextItem*>(item);
    if (text && text->isVisible()) texts.insert(text->toPlainText());
  }
  return texts;
}

struct ShownPane {
  ChartPane pane;
  explicit ShownPane(QSize size) {
    pane.resize(size);
    pane.show();
    QApplication::processEvents();
  }
  void Draw(const ChartDescription& d) {
    pane.draw(d);
    testing::Pump(50);
  }
};

TEST(ChartPane, SessionTextsWithMarkupCharactersShowWhole) {
  ShownPane shown(QSize(900, 320));
  const std::string statement = "If value < 0 Or value > 1 Then Exit Property";
  shown.Draw(Bars({statement, "a & b", "x<y>z"}));
  const QSet<QString> texts = VisibleTexts(shown.pane);
  EXPECT_TRUE(texts.contains(Q(statement))) << "labels were read as markup";
  EXPECT_TRUE(texts.contains("a & b"));
  EXPECT_TRUE(texts.contains("x<y>z"));
  EXPECT_TRUE(texts.contains("Procedures <total time> & more"));

  // The pie's legend list and the caption of a chart with nothing to show.
  ChartDescription pie;
  pie.ChartType = kChartTypePie2d;
  pie.Title = "Share <of> time";
  pie.Items = {{statement, {3}}, {"{Other}", {1}}};
  shown.Draw(pie);
  EXPECT_EQ(shown.pane.legendModel()->entries().at(0).Name, Q(statement));
  EXPECT_TRUE(VisibleTexts(shown.pane).contains("Share <of> time"));

  ChartDescription caption;
  caption.IsReset = true;
  caption.Title = "Unavailable (Compared sessions) - Select Bar chart";
  shown.Draw(caption);
  EXPECT_TRUE(
      VisibleTexts(shown.pane)
          .contains("Unavailable (Compared sessions) - Select Bar chart\nNo available chart"));
}

TEST(ChartPane, EveryBarOfALongChartKeepsItsLabel) {
  std::vector<std::string> names;
  for (int i = 1; i <= 20; ++i) names.push_back("CInvoice.Procedure" + std::to_string(i));
  // A very long name is shortened in its middle, both ends kept.
  names[7] = "modVeryLongModuleName.AVeryLongProcedureNameThatGoesOnAndOnAndOnUntilTheEnd";
  for (const QSize size : {QSize(960, 250), QSize(1100, 330)}) {
    for (std::size_t series : {std::size_t(1), std::size_t(3)}) {
      ShownPane shown(size);
      shown.Draw(Bars(names, series));
      const QStringList& labels = shown.pane.barLabels();
      ASSERT_EQ(labels.size(), 20);
      const QSet<QString> texts = VisibleTexts(shown.pane);
      for (const QString& label : labels) {
        EXPECT_TRUE(texts.contains(label))
            << label.toStdString() << " hidden at " << size.width() << "x" << size.height();
      }
      EXPECT_TRUE(labels[7].startsWith("modVeryLong"));
      EXPECT_TRUE(labels[7].endsWith("UntilTheEnd"));
      EXPECT_LT(labels[7].size(), static_cast<int>(names[7].size()));
    }
  }
}

TEST(ChartPane, EqualNamesStillGetABarEach) {
  ShownPane shown(QSize(800, 300));
  shown.Draw(Bars({"End If", "End If", "Next"}));
  const QList<QAbstractAxis*> axes = shown.pane.chartView()->chart()->axes(Qt::Vertical);
  ASSERT_EQ(axes.size(), 1);
  auto* names = qobject_cast<QBarCategoryAxis*>(axes.front());
  ASSERT_NE(names, nullptr);
  EXPECT_EQ(names->count(), 3);
  EXPECT_EQ(shown.pane.barLabels(), (QStringList{"End If", "End If", "Next"}));
}

TEST(ChartPane, PieSlicesHaveTheirOwnColoursAndAListedLegend) {
  ChartDescription pie;
  pie.ChartType = kChartTypePie2d;
  pie.Title = "Total time";
  for (int i = 1; i <= 20; ++i) pie.Items.push_back({"Proc" + std::to_string(i), {double(i)}});
  pie.Items.push_back({"{Other}", {40}});
  ShownPane shown(QSize(900, 300));
  ChartLegendModel* model = shown.pane.legendModel();
  QAbstractItemModelTester tester(model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  shown.Draw(pie);

  ASSERT_EQ(model->rowCount(), 21);
  QSet<QRgb> colours;
  double shares = 0;
  for (int r = 0; r < model->rowCount(); ++r) {
    colours.insert(model->entries()[static_cast<std::size_t>(r)].Colour.rgb());
    shares += model->share(r);
  }
  EXPECT_EQ(colours.size(), 21) << "two legend entries share a colour";
  EXPECT_NEAR(shares, 100.0, 1e-9);
  // The "{Other}" entry, last, with its value and its share of 250.
  const int other = 20;
  EXPECT_EQ(model->index(other, ChartLegendModel::kName).data().toString(), "{Other}");
  EXPECT_EQ(model->index(other, ChartLegendModel::kValue).data().toString(), "40");
  EXPECT_EQ(model->index(other, ChartLegendModel::kShare).data().toString(), "16.0%");
  // All 21 entries can be reached: the list scrolls instead of cutting.
  EXPECT_TRUE(shown.pane.legend()->isVisible());
  shown.pane.legend()->scrollTo(model->index(other, 0));
  EXPECT_TRUE(shown.pane.legend()->viewport()->rect().intersects(
      shown.pane.legend()->visualRect(model->index(other, 0))));
  // The "{Other}" slice is large enough to carry its share on itself.
  EXPECT_TRUE(VisibleTexts(shown.pane).contains("16.0%"));

  // Another draw leaves the model consistent, and a bar chart has no list.
  shown.Draw(Bars({"a", "b"}));
  EXPECT_EQ(model->rowCount(), 0);
  EXPECT_FALSE(shown.pane.legend()->isVisible());
}

TEST(ChartPane, SliceColoursStayApartForManySlices) {
  for (std::size_t count : {3u, 8u, 9u, 21u, 60u}) {
    QSet<QRgb> colours;
    for (std::size_t i = 0; i < count; ++i) colours.insert(ChartPane::sliceColour(i, count).rgb());
    EXPECT_EQ(colours.size(), static_cast<int>(count)) << count;
  }
  EXPECT_EQ(chartValueText(0.000123456789), "0.000123457");
  EXPECT_EQ(chartValueText(1234567), "1234567");
  EXPECT_EQ(chartValueText(12.5), "12.5");
}

}  // namespace
}  // namespace zol
